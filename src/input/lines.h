// Lines of text, whatever ends them: LF, CR, CR LF, in one file also all of them, and the last one by the end of the text.
#pragma once
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "input/bytes.h"

namespace trimora::rooms {

class Lines {
 public:
  explicit Lines(BytesPointer bytes) : bytes_(std::move(bytes)) {}

  /// The text that is at hand, from the first line on that is not empty; such lines before it are skipped. Before
  /// anything was read that is the beginning of the text. Empty at the end of the text.
  std::string_view head();

  /// A line, or as much of one as is at hand: long lines come in several pieces.
  struct Piece {
    std::string_view text;  // without the line end; lives until the next call
    bool begins = false;    // the first one of its line
    bool ends = false;      // the last one of its line
  };
  bool next(Piece& piece);

  /// The next line whole, which lives until the next call. Returns false at the end of the text.
  bool next(std::string_view& line);
  /// The next line that is not empty but for blanks and tabs.
  bool next_filled(std::string_view& line);

  /// The bytes of the whole input, as far as that is known; else 0.
  std::size_t bytes() const { return bytes_->size(); }

  /// The number of the line that was read last, from 1.
  long long number() const { return number_; }

 private:
  bool refill();
  const char* end_of_line();

  BytesPointer bytes_;
  const char* next_ = nullptr;  // the unread part of the block: next to limit
  const char* limit_ = nullptr;
  const char* newline_ = nullptr;  // the first LF in it, the first CR in it; limit when there is none
  const char* carriage_ = nullptr;
  bool after_carriage_ = false;  // the line before ended with a CR: an LF belongs to it
  bool inside_ = false;          // of a line
  long long number_ = 0;
  std::string whole_;  // a line that came in pieces
};

}  // namespace trimora::rooms
