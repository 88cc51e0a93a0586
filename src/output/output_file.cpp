#include "output/output_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <exception>

#include "ground/errfunc.h"
#include "ground/speaker.h"

int OutputFile::incomplete_ = 0;

OutputFile::OutputFile(const std::string& path)
    : path_(path),
      buffer_(new char[buffersize]),  // not filled: it is overwritten
      file_(std::fopen(path.c_str(), "wb")),
      next_(buffer_.get()),
      exceptions_(std::uncaught_exceptions()) {
  if (file_ == nullptr) {
    std::fprintf(stderr, "%s: %s could not be opened for writing: %s\n", speaker, path.c_str(), std::strerror(errno));
    Culprit culprit;
    culprit.told = true;
    errfunc(culprit, "\nFile not opened\n");
  }
  std::setvbuf(file_, nullptr, _IONBF, 0);  // the buffer is ours
}

OutputFile::~OutputFile() {
  flush();
  errno = 0;
  if (std::fclose(file_) != 0) failed();  // some file systems tell only now
  if (error_ != 0) {
    nameincomplete(path_.c_str(), std::strerror(error_));
  } else if (std::uncaught_exceptions() > exceptions_) {
    nameincomplete(path_.c_str(), "the run ended early");
  }
}

void OutputFile::flushstandardoutput() {
  errno = 0;
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return;
  nameincomplete("standard output", errno != 0 ? std::strerror(errno) : "an earlier write failed");
}

void OutputFile::nameincomplete(const char* file, const char* reason) {
  ++incomplete_;
  std::fprintf(stderr, "%s: %s could not be written completely: %s\n", speaker, file, reason);
}

void OutputFile::putpieces(std::string_view text) {
  for (; !text.empty(); text.remove_prefix(std::min(mostroom, text.size()))) put(text.substr(0, mostroom));
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
  errno = 0;
  if (std::fwrite(buffer_.get(), 1, count, file_) != count) failed();
  next_ = buffer_.get();
}

void OutputFile::failed() {
  if (error_ == 0) error_ = errno != 0 ? errno : EIO;  // too few bytes are too few, whatever the system says
}
