#include "trimora_run/interruption.h"

#include <csignal>

#ifndef _WIN32
#include <unistd.h>
#endif

namespace trimora::rooms {

namespace {

constinit Unfinished open_files;

#ifndef _WIN32
extern "C" void interrupted(int number) {  // calls only what a handler may call
  open_files.each([](const char* path) { ::unlink(path); });
  std::signal(number, SIG_DFL);
  std::raise(number);  // so that the status tells what ended the run
}
#endif

}  // namespace

Unfinished& unfinished() {
  return open_files;
}

void handle_interruptions() {
#ifndef _WIN32
  struct sigaction action {};
  action.sa_handler = interrupted;
  sigfillset(&action.sa_mask);
  for (const int number : {SIGINT, SIGQUIT, SIGTERM, SIGHUP, SIGPIPE, SIGXCPU, SIGUSR1, SIGUSR2}) {
    struct sigaction old {};
    const bool ignored = sigaction(number, nullptr, &old) == 0 && old.sa_handler == SIG_IGN;  // by nohup, for one
    if (!ignored) sigaction(number, &action, nullptr);
  }
  std::signal(SIGXFSZ, SIG_IGN);
#endif
}

}  // namespace trimora::rooms
