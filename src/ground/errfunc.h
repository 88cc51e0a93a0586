// How a run ends early.
#pragma once
#include <new>
#include <stdexcept>

/// The run has failed. Thrown by errfunc() after it has printed; caught by wentthrough(), and on the way there by
/// trimora-run, which says what file it was. Buffers and files are released on the way, and a test or a fuzzer can call
/// any part without losing its process.
struct ExecutionTerminated {
  char message[200] = "";  // what errfunc() has printed; an array, since memory may have run out
};

/// Standard input has ended where the menus wait for an answer: the run ends without another word.
struct AnswersEnded {};

/// End the run: print the message, of which there are 199 bytes at most (add "\n" where a whole line is meant), then the
/// closing line.
[[noreturn, gnu::format(printf, 1, 2)]] void errfunc(const char* format, ...);

/// Run `step` and return its result; when memory runs out in it, end the run with the name of the buffer it was
/// making, as a line: "let", "newpos 1".
template <typename Step>
auto allocating(const char* buffer, Step step) -> decltype(step()) {
  try {
    return step();
  } catch (const std::bad_alloc&) {
  } catch (const std::length_error&) {  // more than any memory could hold
  }
  errfunc("\nMemory allocation failure in %s\n", buffer);
}

/// Carry out `run` and tell whether it came to its end. When memory runs out where no buffer has a name, that is said.
template <typename Run>
bool wentthrough(Run run) {
  try {
    try {
      run();
      return true;
    } catch (const std::bad_alloc&) {
      errfunc("\nMemory allocation failure\n");
    }
  } catch (const ExecutionTerminated&) {
  } catch (const AnswersEnded&) {
  }
  return false;
}
