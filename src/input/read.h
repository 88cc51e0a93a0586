// Read an alignment in any format, which is recognised by its content, never by the name of the file.
// Fails     with Failure, its `file` set where there is one: not_found, not_readable, empty, damaged, unknown_format,
//           refused_format and ambiguous_format (detail: the format), bad_record (detail: the line, length: its number),
//           unfinished_record (detail: what is missing), bad_character (detail: the character, length: its position),
//           unequal_lengths, too_long, too_few_sequences, out_of_memory
#pragma once
#include <memory>
#include <string>
#include <string_view>

#include "input/formats.h"
#include "input/lines.h"
#include "input/reading.h"

namespace trimora::rooms {

/// An open input. Its format can be asked for before it is read. It is read once: as an alignment, or line by line as a
/// list.
class Input {
 public:
  /// The file `path`.
  explicit Input(const std::string& path);
  static Input standard_input();
  /// Memory is not copied and has to outlive the input.
  static Input memory(std::string_view text);

  /// The format that its beginning suggests, which may be a refused one; null if it is none that is known.
  const InputFormat* format();

  /// The alignment. `as_it_is`: a '*' after the last residue of a sequence stays one.
  Reading read(bool as_it_is = false);

  /// The next line of a list; false after the last one.
  bool line(std::string_view& line);

 private:
  explicit Input(BytesPointer (*bytes)(std::string_view), std::string_view text);
  template <typename Step>
  auto guarded(Step step);

  std::string path_;
  std::unique_ptr<Lines> lines_;
};

/// Read the alignment in the file `path`.
Reading read(const std::string& path, bool as_it_is = false);

/// The same from memory.
Reading read_text(std::string_view text);

}  // namespace trimora::rooms
