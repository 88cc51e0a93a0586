#include "input/alignment.h"

#include <cstring>

void Rows::keep(const std::vector<Stretch>& kept) {
  char* to = letters_.data();
  const std::size_t numseq = nupo_ == 0 ? 0 : letters_.size() / width();
  for (std::size_t i = 0; i < numseq; ++i) {
    const char* row = letters_.data() + i * width();  // the text moves towards the front, so nothing unread is lost
    for (const Stretch& stretch : kept) {
      const auto length = static_cast<std::size_t>(stretch.length());
      std::memmove(to, row + stretch.first - 1, length);
      to += length;
    }
  }
  nupo_ = totallength(kept);
  letters_.resize(static_cast<std::size_t>(to - letters_.data()));
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
