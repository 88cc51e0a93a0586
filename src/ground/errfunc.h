// How a run ends early.
#pragma once
#include <cstdio>
#include <new>
#include <stdexcept>

#include "ground/speaker.h"

/// Where in the input a failure lies, as far as that is known: for whoever tells a person more than the message does.
struct Culprit {
  int sequence = 0;    // its number, from 1; 0: none
  char name[76] = "";  // the sequence's name, without what does not fit
  long long length =
      0;                // of the sequence or of its name line, in letters; or how many sequences or positions there are
  long long other = 0;  // what it should be, or may be at most
  int error = 0;        // why the system failed, as errno says it
  bool told = false;    // standard error has named the file to blame
};

/// The run has failed. Thrown by errfunc(), told and caught by wentthrough(), on the way there met by trimora-run, which
/// says what file it was. Buffers and files are released on the way, and a test or a fuzzer can call any part without
/// losing its process. Arrays, since memory may have run out.
struct ExecutionTerminated {
  char message[200] = "";
  Culprit culprit;
};

/// Standard input has ended where the menus wait for an answer: the run ends without another word.
struct AnswersEnded {};

/// End the run with this message, of which 199 bytes are kept (add "\n" where a whole line is meant).
[[noreturn, gnu::format(printf, 1, 2)]] void errfunc(const char* format, ...);
[[noreturn, gnu::format(printf, 2, 3)]] void errfunc(const Culprit& culprit, const char* format, ...);

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

/// Carry out `run` and tell whether it came to its end. When it failed, print why: also when memory ran out where no
/// buffer has a name.
template <typename Run>
bool wentthrough(Run run) {
  const char* const closing = "\nExecution terminated\n";
  try {
    run();
    return true;
  } catch (const ExecutionTerminated& end) {
    std::fprintf(prints, "%s%s", end.message, closing);
  } catch (const std::bad_alloc&) {
    std::fprintf(prints, "\nMemory allocation failure\n%s", closing);
  } catch (const AnswersEnded&) {
  }
  return false;
}
