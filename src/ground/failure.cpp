#include "ground/failure.h"

#include <cstring>
#include <initializer_list>
#include <string_view>

namespace trimora::rooms {

namespace {

/// `text` with its places, each a "{}", taken by `values` from left to right.
std::string filled(std::string_view text, std::initializer_list<std::string> values) {
  std::string all;
  for (const std::string& value : values) {
    const std::size_t place = text.find("{}");
    all.append(text.substr(0, place)).append(value);
    text.remove_prefix(place + 2);
  }
  return all.append(text);
}

/// A line of a file, short enough for a message and without what a terminal would act on.
std::string shown(std::string_view line) {
  constexpr std::size_t longest = 60;
  std::string text = "'";
  for (const char c : line.substr(0, longest)) {
    if (c != '\n' && c != '\r') text += static_cast<unsigned char>(c) < ' ' ? '?' : c;
  }
  return text + (line.size() > longest ? "...'" : "'");
}

}  // namespace

std::string words(const Failure& failure) {
  using Kind = Failure::Kind;
  const std::string sequence = failure.sequence == 0 ? "a sequence"
                                                     : "sequence " + std::to_string(failure.sequence) +
                                                           (failure.name.empty() ? "" : " (" + failure.name + ")");
  const std::string length = std::to_string(failure.length);
  const std::string expected = std::to_string(failure.expected);
  const std::string reason = failure.error != 0 ? std::strerror(failure.error) : failure.detail;
  const std::string& detail = failure.detail;
  switch (failure.kind) {
    case Kind::not_found:
      return detail.empty() ? "there is no such file" : filled("there is no such file in {}", {detail});
    case Kind::not_readable: return filled("could not be read: {}", {reason});
    case Kind::not_writable: return filled("could not be written: {}", {reason});
    case Kind::changed: return "was changed while it was used: run it again";
    case Kind::empty: return "is empty";
    case Kind::unknown_format:
      return filled("is no alignment in a format that is known: its first line is {}", {shown(detail)});
    case Kind::refused_format: return filled("is {}, which is not read", {detail});
    case Kind::ambiguous_format: return filled("can be read in two ways: {}", {detail});
    case Kind::damaged: return filled("is compressed and damaged: {}", {detail});
    case Kind::bad_record:
      return filled("the line {} is in a place where {} is expected", {shown(detail), "the name of " + sequence});
    case Kind::unfinished_record: return filled("{} {}", {sequence, detail.empty() ? "has no end" : detail});
    case Kind::name_too_long:
      return filled("the name line of {} has {} letters, at most {} are read", {sequence, length, expected});
    case Kind::bad_character: return filled("{} holds {}, which is no residue and no gap", {sequence, detail});
    case Kind::unequal_lengths:
      return filled("{} has {} letters, the first one {}: is the file aligned?", {sequence, length, expected});
    case Kind::too_long: return filled("{} is longer than the {} letters that can be counted", {sequence, expected});
    case Kind::too_few_sequences:
      return failure.length == 1 ? "holds one sequence only: an alignment has two or more" : "holds no sequence";
    case Kind::too_few_positions:
      return filled("has {} columns that are not gaps in every sequence: at least two are needed", {length});
    case Kind::undecided_type: return filled("its letters do not tell whether it is protein or DNA{}", {detail});
    case Kind::contrary_type: return filled("is {}", {detail});
    case Kind::other_sequences:
      return detail.empty() ? filled("has {} sequences, the first alignment has {}", {length, expected}) : detail;
    case Kind::unfit_name: return filled("the name of {} {}", {sequence, detail});
    case Kind::same_name: return filled("two sequences are called {}{}", {failure.name, detail});
    case Kind::bad_argument: return detail;
    case Kind::would_overwrite: return filled("the result {} would replace {}", {failure.file, detail});
    case Kind::out_of_memory:
      return failure.buffer == nullptr ? "the memory is not enough"
                                       : filled("the memory is not enough (while making {})", {failure.buffer});
  }
  return {};  // no other value is ever made
}

}  // namespace trimora::rooms
