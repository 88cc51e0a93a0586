// What is being written, through one large buffer: a file, a stream that is open already, or text in memory.
#pragma once
#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

namespace trimora::rooms {

class OutputFile {
 public:
  /// What becomes of a file that is there already.
  enum class Old { emptied, refused };

  /// Create the file `path`. Fails when it cannot be opened: not_writable, with EEXIST where an old one is refused.
  explicit OutputFile(const std::string& path, Old old = Old::emptied);
  /// A stream that stays open, such as standard output.
  explicit OutputFile(std::FILE* stream);
  /// Text in memory, which has to outlive this.
  explicit OutputFile(std::string* text);
  /// Closes the file if it is still open, because a run ended early. Whether all bytes were written is not known then.
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  /// Write what is left, and close the file.
  /// Returns  0, or the errno of the first write that failed: the file is then incomplete.
  [[nodiscard]] int close();

  /// Append text as it is.
  void put(std::string_view text) {
    if (text.size() > most_room) return put_pieces(text);
    filled(std::copy(text.begin(), text.end(), room(text.size())));
  }
  void put(char c) {
    *room(1) = c;
    ++next_;
  }

  /// Append text made as printf() makes it.
  [[gnu::format(printf, 2, 3)]] void print(const char* format, ...);

  /// Room for `count` bytes (at most `most_room`), to be filled from the returned place on and taken by filled().
  char* room(std::size_t count) {
    assert(count <= most_room);
    if (static_cast<std::size_t>(limit_ - next_) < count) flush();
    return next_;
  }
  void filled(const char* end) { next_ += end - next_; }
  static constexpr std::size_t most_room = 65536;

 private:
  OutputFile(std::FILE* file, bool stays, std::string* text);
  void put_pieces(std::string_view text);
  void flush();
  void failed();  // takes the reason from errno

  // Large: the fewer and longer the writes, the less each page costs the system.
  static constexpr std::size_t buffer_size = 524288;

  std::unique_ptr<char[]> buffer_;
  std::FILE* file_;    // null: the bytes go to `text_`, or it is closed
  bool stays_;         // open after the end
  std::string* text_;  // null: they go to `file_`
  char* next_;         // where the next byte goes
  char* limit_;        // the end of the buffer
  int error_ = 0;      // errno of the first write that failed
};

}  // namespace trimora::rooms
