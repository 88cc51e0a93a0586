#include "input/read.h"

#include "ground/failure.h"
#include "input/assembly.h"
#include "input/words.h"

namespace trimora::rooms {

/// Carry out `step`; when it fails, say in which file.
template <typename Step>
auto Input::guarded(Step step) {
  try {
    return allocating("let", step);
  } catch (Failure& failure) {
    if (failure.file.empty()) failure.file = path_;
    throw;
  }
}

Input::Input(const std::string& path) : path_(path) {
  guarded([&] { lines_ = std::make_unique<Lines>(text_in(bytes_of_file(path))); });
}

Input::Input(BytesPointer (*bytes)(std::string_view), std::string_view text) {
  guarded([&] { lines_ = std::make_unique<Lines>(text_in(bytes(text))); });
}

Input Input::standard_input() {
  return Input([](std::string_view) { return bytes_of_standard_input(); }, {});
}

Input Input::memory(std::string_view text) {
  return Input(bytes_of_memory, text);
}

const InputFormat* Input::format() {
  return guarded([&] { return format_of(lines_->head()); });
}

Reading Input::read(bool as_it_is) {
  return guarded([&] {
    const std::string_view head = lines_->head();
    if (blank(head)) throw Failure{.kind = Failure::Kind::empty};
    const InputFormat* format = format_of(head);
    if (format == nullptr) {
      throw Failure{.kind = Failure::Kind::unknown_format, .detail = excerpt(first_line(head))};
    }
    if (format->read == nullptr) {
      throw Failure{.kind = Failure::Kind::refused_format, .detail = std::string(format->name)};
    }
    Reading reading = format->read(*lines_);
    reading.format = format->name;
    if (!as_it_is) settle_stars(reading);
    return reading;
  });
}

bool Input::line(std::string_view& line) {
  return guarded([&] { return lines_->next(line); });
}

Reading read(const std::string& path, bool as_it_is) {
  return Input(path).read(as_it_is);
}

Reading read_text(std::string_view text) {
  return Input::memory(text).read();
}

}  // namespace trimora::rooms
