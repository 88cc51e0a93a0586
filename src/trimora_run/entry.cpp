#include "trimora_run/entry.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <new>

#include "ground/failure.h"
#include "ground/version.h"
#include "trimora_run/options.h"
#include "trimora_run/run.h"
#include "trimora_run/settings.h"

namespace trimora::rooms {

namespace {

int answer(const Settings& settings) {
  switch (settings.asked) {
    case Asked::help: std::fputs(help().c_str(), stdout); return exit_done;
    case Asked::version: std::printf("trimora-run %s\n", version_text); return exit_done;
    case Asked::run: return carry_out(settings);
  }
  return exit_wrong_usage;
}

}  // namespace

int trimora_run_main(int argc, char* argv[]) {
  int status = exit_failed;
  try {
    status = answer(parse_command_line(argc, argv));
  } catch (const WrongUsage& wrong) {
    std::fprintf(stderr, "trimora-run: %s\nNothing was run. Try 'trimora-run --help'.\n", wrong.why.c_str());
    status = exit_wrong_usage;
  } catch (const std::bad_alloc&) {  // where the run itself has no words for it
    std::fprintf(stderr, "trimora-run: %s: there is not enough memory\n", argc > 1 ? argv[1] : "");
  }
  errno = 0;
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return status;
  std::fprintf(stderr, "trimora-run: standard output could not be written completely: %s\n",
               errno != 0 ? std::strerror(errno) : "an earlier write failed");
  return status == exit_done ? exit_failed : status;
}

}  // namespace trimora::rooms
