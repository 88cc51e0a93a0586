#include "output/output_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <exception>
#include <filesystem>
#include <system_error>

#include "ground/errfunc.h"
#include "ground/speaker.h"
#include "ground/system_path.h"

namespace fs = std::filesystem;

int OutputFile::incomplete_ = 0;

namespace {

constexpr const char* beginning = ".part";  // behind the name of a file that is not whole yet

/// Where to write what is to appear whole at `path`: nothing is there yet. Links are followed.
std::string beside(std::string path) {
  std::error_code unknown;
  fs::file_type type = fs::symlink_status(systempath(path), unknown).type();
  if (type == fs::file_type::symlink && !path.starts_with("/dev/")) {
    const fs::path target = fs::canonical(systempath(path), unknown);
    if (!unknown) path = plainpath(target);
    type = fs::status(systempath(path), unknown).type();
  }
  if (type != fs::file_type::regular && type != fs::file_type::not_found) return path;
  int number = 1;
  while (fs::exists(systempath(path + beginning + std::to_string(number)), unknown)) ++number;
  return path + beginning + std::to_string(number);
}

}  // namespace

OutputFile::OutputFile(const std::string& path, Birth birth)
    : path_(path),
      written_(birth == whole ? beside(path) : path),
      beside_(written_ != path_ ? systempath(written_) : fs::path()),
      place_(written_ != path_ ? systempath(written_.substr(0, written_.rfind(beginning))) : fs::path()),
      buffer_(new char[buffersize]),  // not filled: it is overwritten
      file_(std::fopen(written_.c_str(), "wb")),
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

OutputFile::OutputFile()
    : path_("standard output"),
      written_(path_),
      buffer_(new char[buffersize]),
      file_(stdout),
      next_(buffer_.get()),
      exceptions_(std::uncaught_exceptions()) {}

OutputFile::~OutputFile() {
  flush();
  errno = 0;
  if ((file_ == stdout ? std::fflush(file_) : std::fclose(file_)) != 0) failed();  // some file systems tell only now
  if (file_ == stdout) std::clearerr(stdout);                                      // what failed is told here
  const bool endedearly = std::uncaught_exceptions() > exceptions_;
  std::error_code refusal;
  if (error_ == 0 && !endedearly && !beside_.empty()) {
    fs::rename(beside_, place_, refusal);
    if (refusal) error_ = refusal.value();
  }
  if (error_ == 0 && !endedearly) return;
  nameincomplete(path_.c_str(), error_ != 0 ? std::strerror(error_) : "the run ended early");
  if (!beside_.empty()) fs::remove(beside_, refusal);
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
