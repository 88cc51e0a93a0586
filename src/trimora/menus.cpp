#include "trimora/menus.h"

#include <cstdio>
#include <optional>
#include <string>

#include "trimora/calculate.h"
#include "trimora/console.h"

namespace trimora::rooms {

void get_blocks(RunState& run) {
  if (!run.filename.empty()) {
    calculate(run, std::nullopt);
  } else {
    std::printf("%s", no_file);
    run.menu = '\n';
  }
}

void ask_exten(RunState& run) {
  std::printf("(Five Characters Maximum)\nFile Extension: ");
  const std::string word = read_word();
  if (word.empty() || word.size() > longest_exten) {  // without a suffix the blocks would replace the input
    std::printf("\n* String too long *");
  } else {
    run.exten = word;
  }
}

}  // namespace trimora::rooms
