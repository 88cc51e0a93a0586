#include "output/record.h"

#include <algorithm>
#include <cstring>

namespace {
constexpr int group = 10;
constexpr int linelength = 60;
constexpr int groups = linelength / group;
constexpr int laidout = linelength + groups;  // bytes of a whole line: a blank or the line end behind each group
}  // namespace

const char* pirprefix(const RunState& run) {
  return run.seq_type == 'P' ? ">P1;" : ">DL;";
}

void Body::add(const char* text, std::ptrdiff_t count) {
  while (count > 0) {
    if (column_ == 0 && count >= linelength) {
      char* to = out_.room(laidout);
      for (int k = 0; k < groups; ++k) {
        std::memcpy(to, text, group);
        to[group] = k + 1 < groups ? ' ' : '\n';
        text += group;
        to += group + 1;
      }
      out_.filled(to);
      count -= linelength;
      continue;
    }
    const auto piece = std::min<std::ptrdiff_t>(group - column_ % group, count);
    char* to = out_.room(group + 1);
    std::memcpy(to, text, static_cast<std::size_t>(piece));
    to += piece;
    text += piece;
    count -= piece;
    column_ += static_cast<int>(piece);
    if (column_ == linelength) {
      *to++ = '\n';
      column_ = 0;
    } else if (column_ % group == 0) {
      *to++ = ' ';
    }
    out_.filled(to);
  }
}

void addstretches(Body& body, const Row& row, const std::vector<Stretch>& stretches) {
  for (const Stretch& stretch : stretches) body.add(row.from(stretch.first), stretch.length());
}
