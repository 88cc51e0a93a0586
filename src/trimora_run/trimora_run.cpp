#include "trimora_run/trimora_run.h"

#include <algorithm>
#include <cstdio>
#include <new>
#include <string>
#include <string_view>

#include "ground/failure.h"
#include "ground/speaker.h"
#include "ground/version.h"
#include "output/output_file.h"
#include "trimora_run/arguments.h"
#include "trimora_run/diagnosis.h"
#include "trimora_run/help.h"
#include "trimora_run/messages.h"
#include "trimora_run/run.h"

namespace trimora::rooms {

namespace {

constexpr int done = 0;
constexpr int failed = 1;
constexpr int wrongusage = 2;

/// The run, with what is to be said when it fails.
int carryout(Arguments& arguments) {
  Messages messages;
  prints = arguments.filter ? stderr : stdout;
  if (const std::string why = arguments.filter ? "" : unfit(arguments.file); !why.empty()) {
    messages.error(arguments.file, why);
    return failed;
  }
  Run run(arguments, messages);
  bool complete = false;
  try {
    complete = run.carryout();
  } catch (const ExecutionTerminated& end) {
    try {
      run.explain(end);
    } catch (const std::bad_alloc&) {
      Messages::outofmemory(run.culprit().c_str());
    }
    throw;
  } catch (const std::bad_alloc&) {
    Messages::outofmemory(run.culprit().c_str());
    errfunc("\nMemory allocation failure\n");
  }
  return complete && !messages.failed() && !(arguments.strict && messages.noted()) ? done : failed;
}

}  // namespace

int trimora_run(int argc, char* argv[]) {
  speaker = "trimora-run";
  prints = stdout;
  const int incompletebefore = OutputFile::incomplete();
  const auto asked = [&](std::string_view word) { return std::find(argv, argv + argc, word) != argv + argc; };
  int status = failed;
  wentthrough([&] {
    try {
      Arguments arguments;
      if (asked("--help") || asked("-h")) {
        std::printf("%s", help);
        status = done;
      } else if (asked("--version")) {
        std::printf("trimora-run %s\n", version);
        status = done;
      } else if (const std::string wrong = takeapart(argc, argv, arguments); !wrong.empty()) {
        throw WrongUsage{wrong};
      } else {
        checkbeforehand(arguments);
        status = carryout(arguments);
      }
    } catch (const WrongUsage& wrong) {
      std::fprintf(stderr, "%s: %s\nNothing was run. Try 'trimora-run --help'.\n", speaker, wrong.why.c_str());
      status = wrongusage;
    } catch (const std::bad_alloc&) {  // before the run has begun
      Messages::outofmemory(argc > 1 ? argv[1] : "");
      throw;
    }
  });
  OutputFile::flushstandardoutput();
  return OutputFile::incomplete() == incompletebefore ? status : failed;
}

}  // namespace trimora::rooms
