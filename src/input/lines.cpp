#include "input/lines.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "input/words.h"

namespace trimora::rooms {
bool Lines::refill() {
  const std::string_view block = bytes_->next();
  if (block.empty()) {
    next_ = limit_;
    return false;
  }
  next_ = block.data();
  limit_ = next_ + block.size();
  if (after_carriage_ && *next_ == '\n') ++next_;
  after_carriage_ = false;
  newline_ = carriage_ = nullptr;
  return next_ != limit_ || refill();
}

/// Each byte is looked at once for either end, however many lines end with the other one.
const char* Lines::end_of_line() {
  if (newline_ == nullptr || newline_ < next_) newline_ = found_in(next_, limit_, '\n');
  if (carriage_ == nullptr || carriage_ < next_) carriage_ = found_in(next_, limit_, '\r');
  return std::min(newline_, carriage_);
}

bool Lines::next(Piece& piece) {
  if (next_ == limit_ && !refill()) {
    piece = {{}, false, true};
    return std::exchange(inside_, false);
  }
  const char* end = end_of_line();
  piece = {{next_, static_cast<std::size_t>(end - next_)}, !inside_, end != limit_};
  if (piece.begins) ++number_;
  inside_ = !piece.ends;
  next_ = end;
  if (!piece.ends) return true;
  ++next_;
  if (*end == '\r') {
    if (next_ == limit_) {
      after_carriage_ = true;
    } else if (*next_ == '\n') {
      ++next_;
    }
  }
  return true;
}

bool Lines::next(std::string_view& line) {
  Piece piece;
  if (!next(piece)) return false;
  line = piece.text;
  if (piece.ends) return true;
  whole_ = piece.text;
  while (!piece.ends) {
    next(piece);
    whole_ += piece.text;
  }
  line = whole_;
  return true;
}

bool Lines::next_filled(std::string_view& line) {
  while (next(line)) {
    if (!blank(line)) return true;
  }
  return false;
}

std::string_view Lines::head() {
  for (;;) {
    if (next_ == limit_ && !refill()) return {};
    const char* end = end_of_line();
    const std::string_view line(next_, static_cast<std::size_t>(end - next_));
    if (!blank(line) || end == limit_) return {next_, static_cast<std::size_t>(limit_ - next_)};
    Piece skipped;
    next(skipped);
  }
}

}  // namespace trimora::rooms
