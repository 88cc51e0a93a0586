// A file being written, through one large buffer.
#pragma once
#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

class OutputFile {
 public:
  /// How a file comes into being: under its own name from the start, or whole or not at all, under another name beside it
  /// that is changed in the end. What is there and is no file, such as a terminal, is written to from the start.
  enum Birth { gradual, whole };

  /// Create `path`, or empty it. Fails through errfunc() when it cannot be opened; standard error says why.
  explicit OutputFile(const std::string& path, Birth birth = gradual);
  /// Standard output, which stays open.
  OutputFile();
  /// Write what is left. A file that is incomplete, since a write failed or the run ended in the middle of it, is named
  /// on standard error with the reason; where it was to be whole, nothing of it stays.
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  /// Append text as it stands.
  void put(std::string_view text) {
    if (text.size() > mostroom) return putpieces(text);
    filled(std::copy(text.begin(), text.end(), room(text.size())));
  }
  void put(char c) {
    *room(1) = c;
    ++next_;
  }

  /// Append text made as printf() makes it.
  [[gnu::format(printf, 2, 3)]] void print(const char* format, ...);

  /// Room for `count` bytes (at most `mostroom`), to be filled from the returned place on and taken by filled().
  char* room(std::size_t count) {
    assert(count <= mostroom);
    if (static_cast<std::size_t>(buffer_.get() + buffersize - next_) < count) flush();
    return next_;
  }
  void filled(const char* end) { next_ += end - next_; }
  static constexpr std::size_t mostroom = 65536;

  /// Write what standard output still holds, and name it like a file when it is incomplete.
  static void flushstandardoutput();

  /// How many files have been named as incomplete: by this process, to which standard error belongs.
  static int incomplete() { return incomplete_; }

 private:
  void putpieces(std::string_view text);
  void flush();
  void failed();  // takes the reason from errno

  // Large: the fewer and longer the writes, the less each page costs the system.
  static constexpr std::size_t buffersize = 524288;
  static void nameincomplete(const char* file, const char* reason);
  static int incomplete_;

  std::string path_;
  std::string written_;  // where it is written: `path_`, or beside it as long as it is not whole
  // From there to its place, when it is whole. Made beforehand: at the end there may be no memory.
  std::filesystem::path beside_;
  std::filesystem::path place_;
  std::unique_ptr<char[]> buffer_;
  std::FILE* file_;
  char* next_;      // where the next byte goes
  int error_ = 0;   // errno of the first write that failed
  int exceptions_;  // under way when the file was opened: one more at its end says that the run ended early
};
