#include "trimora/entry.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <optional>
#include <utility>

#include "input/alignment.h"
#include "trimora/calculate.h"
#include "trimora/errfunc.h"
#include "trimora/menus.h"
#include "trimora/options.h"
#include "trimora/run_state.h"

namespace trimora::rooms {

int trimora_main(int argc, char* argv[]) {
  go_through([&] {
    RunState run;
    std::optional<Alignment> loaded;
    if (argc > 1) {
      run.filename = argv[1];
      loaded = openfile(run);
    }
    if (argc > 2) {
      parse_options(argc, argv, 2, run);
      calculate(run, std::move(loaded));
      return;
    }
    loaded.reset();  // from here on the file is read again for each run
    while (run.menu != 'q') menu_main(run);
  });
  errno = 0;
  if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
    name_incomplete("standard output", errno != 0 ? std::strerror(errno) : "an earlier write failed");
  }
  return 1;
}

}  // namespace trimora::rooms
