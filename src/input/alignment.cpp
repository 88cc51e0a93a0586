#include "input/alignment.h"

#include <cstring>

namespace trimora::rooms {

void Rows::keep(const std::vector<Stretch>& kept) {
  const std::size_t numseq = nupo_ == 0 ? 0 : letters_->size() / width();
  const int left = totallength(kept);
  const auto into = letters_.use_count() == 1
                        ? letters_
                        : std::make_shared<std::vector<char>>(numseq * static_cast<std::size_t>(left));
  char* to = into->data();
  for (std::size_t i = 0; i < numseq; ++i) {
    const char* row = letters_->data() + i * width();  // in place the text moves to the front: nothing unread is lost
    for (const Stretch& stretch : kept) {
      const auto length = static_cast<std::size_t>(stretch.length());
      std::memmove(to, row + stretch.first - 1, length);
      to += length;
    }
  }
  into->resize(static_cast<std::size_t>(to - into->data()));
  letters_ = into;
  nupo_ = left;
}

int totallength(const std::vector<Stretch>& stretches) {
  int length = 0;
  for (const Stretch& stretch : stretches) length += stretch.length();
  return length;
}

std::vector<Stretch> complement(const std::vector<Stretch>& stretches, int nupo) {
  std::vector<Stretch> left;
  int behind = 0;  // end of the stretch before
  for (const Stretch& stretch : stretches) {
    if (stretch.length() == 0) continue;
    if (stretch.first > behind + 1) left.push_back({behind + 1, stretch.first - 1});
    behind = stretch.last;
  }
  if (behind < nupo) left.push_back({behind + 1, nupo});
  return left;
}

std::string withoutlineend(const std::string& name) {
  return name.substr(0, name.empty() ? 0 : name.size() - 1);
}

}  // namespace trimora::rooms
