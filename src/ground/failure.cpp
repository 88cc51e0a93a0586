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

}  // namespace

std::string words(const Failure& failure) {
  using Kind = Failure::Kind;
  const std::string sequence = failure.sequence == 0 ? "a sequence"
                                                     : "sequence " + std::to_string(failure.sequence) +
                                                           (failure.name.empty() ? "" : " (" + failure.name + ")");
  const std::string length = std::to_string(failure.length);
  const std::string expected = std::to_string(failure.expected);
  const std::string& detail = failure.detail;
  const auto refused = [&](std::string_view what) {  // the system's reason or, without one, the detail
    return failure.error != 0 ? filled(what, {std::strerror(failure.error)}) : detail;
  };
  switch (failure.kind) {
    case Kind::not_found: return "there is no such file";
    case Kind::not_readable: return refused("could not be read: {}");
    case Kind::not_writable: return refused("could not be written: {}");
    case Kind::changed: return "has changed while it was read: is it still being written?";
    case Kind::empty: return detail.empty() ? "is empty" : detail;
    case Kind::unknown_format: return filled("is not an alignment in any known format: it begins with '{}'", {detail});
    case Kind::refused_format: return filled("is {}, which is not read", {detail});
    case Kind::ambiguous_format: return filled("can be read in two ways: {}", {detail});
    case Kind::damaged: return filled("is damaged: {}", {detail});
    case Kind::bad_record:
      if (failure.expected > 0) {
        return filled("its line {} has {} characters, where {} are expected", {detail, length, expected});
      }
      return filled("{} does not fit the format: {}", {failure.length > 0     ? "line " + length
                                                       : failure.sequence > 0 ? "a line near " + sequence
                                                                              : "its first line",
                                                       detail});
    case Kind::unfinished_record:
      if (detail.empty()) return filled("{} has a name but no letters", {sequence});
      if (failure.expected > 0) {
        if (failure.length > failure.expected) {
          return filled("has {} {}, where the file says {}", {length, detail, expected});
        }
        const bool of_sequence = detail == "letters";
        return filled("{} too early, with {} of {} {}: was the file cut off?",
                      {of_sequence ? sequence + " ends" : "ends", length, expected, detail});
      }
      return filled("{} {}: was the file cut off?", {failure.sequence > 0 ? sequence + " lacks" : "lacks", detail});
    case Kind::name_too_long:
      return filled("the name line of {} has {} letters, at most {} are read", {sequence, length, expected});
    case Kind::bad_character:
      if (failure.length == 0) return filled("the name of {} contains {}", {sequence, detail});
      return filled("letter {} of {} is {}, which is neither a residue nor a gap", {length, sequence, detail});
    case Kind::unequal_lengths:
      return failure.sequence > 1
                 ? filled("{} has {} letters, the first one {}: is the file aligned?", {sequence, length, expected})
                 : filled("{} has {} letters, where the file says {}", {sequence, length, expected});
    case Kind::too_long: return filled("{} is longer than the {} letters that can be counted", {sequence, expected});
    case Kind::too_few_sequences:
      return failure.length == 1 ? "contains only one sequence: an alignment has two or more" : "contains no sequence";
    case Kind::too_few_positions:
      return filled("has too few columns that are not gaps in every sequence: {}, at least 2 are needed", {length});
    case Kind::undecided_type: return filled("its letters do not tell whether it is protein or DNA{}", {detail});
    case Kind::unfit_name: return filled("the name of {} {}", {sequence, detail});
    case Kind::same_name: return filled("two sequences are called {}{}", {failure.name, detail});
    case Kind::other_sequences:
      if (!detail.empty()) return detail;
      return filled("has {} sequences, the first alignment has {}", {length, expected});
    case Kind::contrary_type:
    case Kind::bad_argument:
    case Kind::would_overwrite: return detail;
    case Kind::out_of_memory:
      return failure.buffer == nullptr ? "there is not enough memory"
                                       : filled("there is not enough memory (to make {})", {failure.buffer});
  }
  return {};  // no other value is ever made
}

}  // namespace trimora::rooms
