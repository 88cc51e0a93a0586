// Bytes of a file, of standard input or of memory, read in large blocks and handed out by line or by stretch of text.
#pragma once
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

namespace trimora::rooms {

class InputFile {
 public:
  /// Open `path`. Something that cannot be read, such as a directory, counts as not opened.
  explicit InputFile(const std::string& path);
  /// Standard input.
  InputFile();
  /// Text in memory, which has to outlive this.
  explicit InputFile(std::string_view text);
  explicit operator bool() const { return next_ != nullptr; }

  /// True once a read has met the end of the file: not yet when the last byte has been read.
  bool ended() const { return end_met_; }

  /// The bytes that are already in the buffer: the beginning of the file as long as nothing was read.
  std::string_view unread() const { return {next_, static_cast<std::size_t>(limit_ - next_)}; }

  /// Size of the file in bytes, 0 if unknown.
  std::size_t size() const;

  /// Read the rest of a line, at most 189 characters of it, line end included. The text ends at its first NUL byte.
  /// At the end of the file `line` stays as it is.
  void read_line(std::string& line);

  /// Read lines until one is not empty (does not begin with a line end), or to the end of the file.
  void read_nonempty(std::string& line);

  /// Hand the text up to the next `terminator` to `use(first, last)`, stretch by stretch, and step over the terminator.
  /// Returns false when the file ended first.
  template <typename Use>
  bool read_until(char terminator, Use use) {
    for (;;) {
      const void* found = std::memchr(next_, terminator, static_cast<std::size_t>(limit_ - next_));
      const char* last = found != nullptr ? static_cast<const char*>(found) : limit_;
      use(next_, last);
      next_ = last;
      if (found != nullptr) {
        ++next_;
        return true;
      }
      if (!refill()) return false;
    }
  }

 private:
  void begin();
  bool refill();

  struct Closer {
    void operator()(std::FILE* open) const {
      if (open != stdin) std::fclose(open);
    }
  };
  std::unique_ptr<std::FILE, Closer> file_;
  std::unique_ptr<char[]> block_;  // none: the text is in memory
  const char* next_ = nullptr;     // the unread part of the block: next to limit; null: not opened
  const char* limit_ = nullptr;
  bool end_met_ = false;
};

/// Whether a line read by InputFile::read_line() is empty: it begins with its line end.
bool is_empty_line(const std::string& line);

/// `line` without its final line end, if it has one.
std::string without_newline(const std::string& line);

}  // namespace trimora::rooms
