// What can go wrong, as one value: thrown where it is found, put into words by the faces, never parsed back.
#pragma once
#include <new>
#include <stdexcept>
#include <string>
#include <utility>

#include "trimora/trimora.h"  // Error::Kind, told to callers of the library in the same terms

namespace trimora::rooms {

struct Failure {
  using Kind = Error::Kind;

  Kind kind = Kind::out_of_memory;
  std::string file = {};         // its path, as far as it is known where it fails
  int sequence = 0;              // the sequence to blame, from 1; 0: none
  std::string name = {};         // its name
  std::string detail = {};       // what was found there: a line, a character, the name of a format
  long long length = 0;          // found: letters, sequences, positions
  long long expected = 0;        // what it should be, or may be at most
  int error = 0;                 // why the system failed, as errno says it
  const char* buffer = nullptr;  // what was being made when memory ran out: "let", "newpos"
  int number = 0;                // of that buffer; 0: it has none
};

/// The same in words for a person who looks at the file: what happened and what follows, without the file.
std::string words(const Failure& failure);

/// Run `step` and return its result; when memory runs out in it, fail with the buffer that it was making.
template <typename Step>
auto allocating(const char* buffer, int number, Step step) -> decltype(step()) {
  try {
    return step();
  } catch (const std::bad_alloc&) {
  } catch (const std::length_error&) {  // more than any memory could hold
  }
  throw Failure{.kind = Failure::Kind::out_of_memory, .buffer = buffer, .number = number};
}
template <typename Step>
auto allocating(const char* buffer, Step step) -> decltype(step()) {
  return allocating(buffer, 0, std::move(step));
}

}  // namespace trimora::rooms
