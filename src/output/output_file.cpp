#include "output/output_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <utility>

#include "ground/failure.h"

namespace trimora::rooms {

namespace {

std::FILE* opened(const std::string& path, [[maybe_unused]] OutputFile::Old old) {
  const char* mode = "wb";
#ifndef _WIN32  // where nobody else can give a name to a file that is open
  if (old == OutputFile::Old::refused) mode = "wbx";
#endif
  errno = 0;
  std::FILE* file = std::fopen(path.c_str(), mode);
  if (file != nullptr) return file;
  throw Failure{.kind = Failure::Kind::not_writable, .file = path, .error = errno != 0 ? errno : EIO};
}

}  // namespace

OutputFile::OutputFile(std::FILE* file, bool stays, std::string* text)
    : buffer_(new char[buffer_size]),  // not filled: it is overwritten
      file_(file),
      stays_(stays),
      text_(text),
      next_(buffer_.get()),
      limit_(buffer_.get() + buffer_size) {}

OutputFile::OutputFile(const std::string& path, Old old) : OutputFile(nullptr, false, nullptr) {
  file_ = opened(path, old);
  std::setvbuf(file_, nullptr, _IONBF, 0);  // the buffer is ours
}

OutputFile::OutputFile(std::FILE* stream) : OutputFile(stream, true, nullptr) {}

OutputFile::OutputFile(std::string* text) : OutputFile(nullptr, false, text) {}

OutputFile::~OutputFile() {
  text_ = nullptr;  // to append to it may fail
  static_cast<void>(close());
}

int OutputFile::close() {
  if (file_ == nullptr && text_ == nullptr) return error_;
  flush();
  text_ = nullptr;
  if (std::FILE* file = std::exchange(file_, nullptr); file != nullptr) {
    errno = 0;
    if (!stays_) {
      if (std::fclose(file) != 0) failed();  // some file systems tell only now
    } else {
      if (std::fflush(file) != 0) failed();
      std::clearerr(file);  // what failed is told here
    }
  }
  return error_;
}

void OutputFile::put_pieces(std::string_view text) {
  for (; !text.empty(); text.remove_prefix(std::min(most_room, text.size()))) put(text.substr(0, most_room));
}

void OutputFile::print(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  va_list again;
  va_copy(again, arguments);
  const auto length = static_cast<std::size_t>(std::max(0, std::vsnprintf(nullptr, 0, format, arguments)));
  va_end(arguments);
  std::string text(length, '\0');
  std::vsnprintf(text.data(), length + 1, format, again);
  va_end(again);
  put(text);
}

void OutputFile::flush() {
  const auto count = static_cast<std::size_t>(next_ - buffer_.get());
  next_ = buffer_.get();
  if (text_ != nullptr) {
    text_->append(buffer_.get(), count);
    return;
  }
  errno = 0;
  if (std::fwrite(buffer_.get(), 1, count, file_) != count) failed();
}

void OutputFile::failed() {
  if (error_ == 0) error_ = errno != 0 ? errno : EIO;  // too few bytes are too few, whatever the system says
}

}  // namespace trimora::rooms
