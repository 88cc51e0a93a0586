#include "input/input_file.h"

#include <algorithm>
#include <cerrno>

#include "ground/failure.h"
#include "input/offsets.h"

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

namespace trimora::rooms {

namespace {
constexpr std::size_t block_size = 65536;  // stays in the second cache while it is copied to its place
constexpr std::size_t line_length = 189;
}  // namespace

InputFile::InputFile(const std::string& path) : file_(std::fopen(path.c_str(), "rb")) {
  begin();
}

InputFile::InputFile() : file_(stdin) {
#ifdef _WIN32
  _setmode(_fileno(stdin), _O_BINARY);  // every byte counts, as in a file
#endif
  begin();
}

InputFile::InputFile(std::string_view text) : next_(text.data()), limit_(text.data() + text.size()) {
  if (next_ == nullptr) next_ = limit_ = "";
}

void InputFile::begin() {
  if (!file_) return;
  std::setvbuf(file_.get(), nullptr, _IONBF, 0);  // the block is the buffer
  block_.reset(new char[block_size]);             // not filled: it is overwritten
  next_ = block_.get();
  limit_ = next_ + std::fread(block_.get(), 1, block_size, file_.get());
  if (std::ferror(file_.get()) == 0) return;
  file_.reset();
  next_ = limit_ = nullptr;
}

bool InputFile::refill() {
  if (!file_) {
    end_met_ = true;
    return false;
  }
  next_ = block_.get();
  limit_ = next_ + std::fread(block_.get(), 1, block_size, file_.get());
  if (std::ferror(file_.get()) != 0) {  // half an alignment must not pass for a whole one
    throw Failure{.kind = Failure::Kind::not_readable, .error = errno != 0 ? errno : EIO};
  }
  end_met_ = next_ == limit_;
  return !end_met_;
}

std::size_t InputFile::size() const {
  if (!file_) return static_cast<std::size_t>(limit_ - next_);
  const auto here = tell_offset(file_.get());
  if (here < 0 || seek_offset(file_.get(), 0, SEEK_END) != 0) return 0;
  const auto bytes = tell_offset(file_.get());
  seek_offset(file_.get(), here, SEEK_SET);
  return bytes < 0 ? 0 : static_cast<std::size_t>(bytes);
}

void InputFile::read_line(std::string& line) {
  std::string text;
  do {
    if (next_ == limit_ && !refill()) break;
    const std::size_t most = std::min(line_length - text.size(), static_cast<std::size_t>(limit_ - next_));
    const void* newline = std::memchr(next_, '\n', most);
    const char* last = newline != nullptr ? static_cast<const char*>(newline) + 1 : next_ + most;
    text.append(next_, last);
    next_ = last;
  } while (text.size() < line_length && text.back() != '\n');
  if (!text.empty()) line = text.substr(0, text.find('\0'));
}

void InputFile::read_nonempty(std::string& line) {
  do {
    read_line(line);
  } while (!end_met_ && is_empty_line(line));
}

bool is_empty_line(const std::string& line) {
  return line.starts_with('\n');
}

std::string without_newline(const std::string& line) {
  return line.ends_with('\n') ? line.substr(0, line.size() - 1) : line;
}

}  // namespace trimora::rooms
