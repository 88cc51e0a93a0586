// The entry: menus when there is nothing but a file name, one run without a question when there are options.
#include <new>
#include <optional>
#include <utility>

#include "driver/errfunc.h"
#include "driver/menus.h"
#include "driver/options.h"
#include "driver/run_state.h"
#include "input/alignment.h"
#include "selection/calculate.h"

namespace {

void trimora(int argc, char* argv[]) {
  RunState run;
  std::optional<Alignment> loaded;
  if (argc > 1) {
    run.filename = argv[1];
    loaded = openfile(run);
  }
  if (argc > 2) {
    parseoptions(argc, argv, 2, run);
    calculate(run, std::move(loaded));
    return;
  }
  loaded.reset();  // from here on the file is read again for each run
  while (run.menu != 'q') menu_main(run);
}

}  // namespace

/// The exit status is 1 at every end, a good one included: scripts have come to rely on it.
int main(int argc, char* argv[]) {
  constexpr int status = 1;
  try {
    trimora(argc, argv);
  } catch (const ExecutionTerminated&) {
    return status;
  } catch (const std::bad_alloc&) {
    try {
      errfunc("\nMemory allocation failure\n");
    } catch (const ExecutionTerminated&) {
      return status;
    }
  }
  return status;
}
