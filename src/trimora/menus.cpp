#include "trimora/menus.h"

#include <cstdio>
#include <optional>
#include <string>

#include "trimora/console.h"
#include "trimora/calculate.h"

namespace trimora::rooms {

void getblocks(RunState& run) {
  if (!run.filename.empty()) {
    calculate(run, std::nullopt);
  } else {
    std::printf("%s", nofile);
    run.menu = '\n';
  }
}

void askexten(RunState& run) {
  std::printf("(Five Characters Maximum)\nFile Extension: ");
  const std::string word = readword();
  if (word.empty() || word.size() > longestexten) {  // without a suffix the blocks would replace the input
    std::printf("\n* String too long *");
  } else {
    run.exten = word;
  }
}

}  // namespace trimora::rooms
