// How a run of trimora ends early, in its settled words.
#pragma once
#include <new>
#include <string>

#include "ground/failure.h"

namespace trimora::rooms {

/// Standard input has ended where the menus wait for an answer: the run ends without another word.
struct AnswersEnded {};

/// Print why the run has failed, and that it is over. If the system refused something, standard error says so too.
void errfunc(const Failure& failure);

/// Report on standard error that `file` is incomplete, and why.
void name_incomplete(const std::string& file, const char* reason);

/// Carry out `run`; when it fails, say why.
template <typename Run>
void go_through(Run run) {
  try {
    run();
  } catch (const Failure& failure) {
    errfunc(failure);
  } catch (const std::bad_alloc&) {  // where no buffer has a name
    errfunc({.kind = Failure::Kind::out_of_memory});
  } catch (const AnswersEnded&) {
  }
}

}  // namespace trimora::rooms
