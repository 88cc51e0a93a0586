#include "trimora_run/messages.h"

#include <cassert>
#include <cstdio>
#include <utility>

#include "ground/speaker.h"
#include "trimora_run/words.h"

namespace trimora::rooms {

void Messages::note(std::string_view file, std::string_view words) {
  noted_ = true;
  say(file, words);
}

void Messages::error(std::string_view file, std::string_view words) {
  failed_ = true;
  say(file, words);
}

void Messages::outofmemory(const char* file) {
  std::fprintf(stderr, "%s: %s: %s\n", speaker, file, words::outofmemory.data());
}

std::string Messages::since() {
  return std::exchange(since_, {});
}

void Messages::say(std::string_view file, std::string_view words) {
  std::string line = std::string(speaker) + ": ";
  line.append(file).append(": ").append(words);
  for (char& c : line) c = c == '\n' ? ' ' : c;  // a name may hold anything
  line += '\n';
  std::fputs(line.c_str(), stderr);  // in one piece: other processes may write there as well
  std::fflush(stderr);               // at once, also where it has a buffer
  since_.append(since_.empty() ? "" : "; ").append(words);
}

std::string filled(std::string_view words, std::initializer_list<std::string_view> values) {
  std::string text;
  for (const std::string_view value : values) {
    const std::size_t open = words.find('{');
    assert(open != std::string_view::npos);
    text.append(words.substr(0, open)).append(value);
    words.remove_prefix(words.find('}', open) + 1);
  }
  assert(words.find('{') == std::string_view::npos);
  return text.append(words);
}

}  // namespace trimora::rooms
