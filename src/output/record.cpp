#include "output/record.h"

#include <algorithm>
#include <cstring>

namespace trimora::rooms {

namespace {
constexpr int group = 10;
}  // namespace

const char* pir_prefix(const InputState& run) {
  return run.seq_type == 'P' ? ">P1;" : ">DL;";
}

void Body::add(const char* text, std::ptrdiff_t count) {
  while (column_ + count >= line_length) {
    const int missing = line_length - column_;
    if (column_ == 0) {
      put_line(text);
    } else {
      std::memcpy(line_ + column_, text, static_cast<std::size_t>(missing));
      put_line(line_);
      column_ = 0;
    }
    text += missing;
    count -= missing;
  }
  if (count <= 0) return;
  std::memcpy(line_ + column_, text, static_cast<std::size_t>(count));
  column_ += static_cast<int>(count);
}

void Body::put_line(const char* text) {
  constexpr int groups = line_length / group;
  char* to = out_.room(line_length + groups);
  for (int k = 0; k < groups; ++k) {
    std::memcpy(to, text, group);  // of known length: a few moves, no call
    to[group] = k + 1 < groups ? ' ' : '\n';
    text += group;
    to += group + 1;
  }
  out_.filled(to);
}

void Body::end() {
  for (int c = 0; c < column_; ++c) {
    out_.put(line_[c]);
    if (c % group == group - 1) out_.put(' ');
  }
  column_ = 0;
}

void add_stretches(Body& body, const Row& row, const std::vector<Stretch>& stretches) {
  for (const Stretch& stretch : stretches) body.add(row.from(stretch.first), stretch.length());
}

}  // namespace trimora::rooms
