#include "output/output_file.h"

#include <algorithm>
#include <cstdarg>

#include "driver/errfunc.h"

OutputFile::OutputFile(const std::string& path)
    : path_(path),
      file_(std::fopen(path.c_str(), "w")),
      buffer_(std::make_unique_for_overwrite<char[]>(buffersize)),
      next_(buffer_.get()) {
  if (!file_) errfunc("\nFile not opened\n");
  std::setvbuf(file_.get(), nullptr, _IONBF, 0);  // the buffer is ours
}

OutputFile::~OutputFile() {
  flush();
  if (!complete_) std::fprintf(stderr, "trimora: %s could not be written completely\n", path_.c_str());
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
  if (std::fwrite(buffer_.get(), 1, count, file_.get()) != count) complete_ = false;
  next_ = buffer_.get();
}
