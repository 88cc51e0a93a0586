#include "driver/entry.h"

#include <optional>
#include <utility>

#include "driver/menus.h"
#include "driver/options.h"
#include "driver/run_state.h"
#include "ground/errfunc.h"
#include "ground/speaker.h"
#include "input/alignment.h"
#include "output/output_file.h"
#include "selection/calculate.h"

int trimora(int argc, char* argv[]) {
  speaker = "trimora";
  wentthrough([&] {
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
  });
  OutputFile::flushstandardoutput();
  return 1;
}
