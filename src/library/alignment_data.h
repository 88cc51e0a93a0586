// What an alignment of the public header holds, and how what fails in the rooms reaches those who call.
#pragma once
#include <memory>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "ground/failure.h"
#include "input/alignment.h"
#include "trimora/trimora.h"

namespace trimora {

using rooms::Failure;

/// The sequences of an alignment, as they were read. Shared by copies and never changed.
struct Alignment::Data {
  std::vector<std::string> names;
  rooms::Rows let;
  int nupo = 0;
  std::optional<Kind> kind;        // that the file declares, or that was given
  std::optional<Kind> by_letters;  // where it does not
  std::string format;
  std::vector<rooms::Stretch> inserts;

  int numseq() const { return static_cast<int>(names.size()); }
};

/// Carry out `step`; what fails in it becomes an Error.
template <typename Step>
auto told(Step step) -> decltype(step()) {
  try {
    return step();
  } catch (const Failure& failure) {
    std::string what = failure.file.empty() ? "" : failure.file + ": ";
    throw Error(failure.kind, what + rooms::words(failure), failure.sequence - 1,
                failure.sequence > 0 || failure.file.empty() ? failure.name : failure.file);
  } catch (const std::bad_alloc&) {
    throw Error(Error::Kind::out_of_memory, rooms::words(Failure{}));
  } catch (const std::length_error&) {
    throw Error(Error::Kind::out_of_memory, rooms::words(Failure{}));
  }
}

[[noreturn]] inline void refuse(const std::string& why) {
  throw Failure{.kind = Failure::Kind::bad_argument, .detail = why};
}

}  // namespace trimora
