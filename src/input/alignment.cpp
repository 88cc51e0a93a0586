#include "input/alignment.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "ground/failure.h"

namespace trimora::rooms {

namespace {

/// The stretches that are left when the positions that are gaps in every sequence are taken out: the whole alignment as
/// one stretch when there are none. Some may be empty.
/// A tile of positions at a time: few sequences are looked at before each of its positions has a letter.
std::vector<Stretch> kept_positions(const Alignment& ali) {
  constexpr int tile = 4096;
  char all_gap[tile];  // 1 as long as the position is a gap in every sequence looked at
  std::vector<Stretch> kept = {{1, 0}};
  for (int start = 1; start <= ali.nupo; start += tile) {
    const int width = std::min(tile, ali.nupo - start + 1);
    std::fill_n(all_gap, width, '\1');
    char left = 1;
    for (int i = 1; i <= ali.numseq && left != 0; ++i) {
      const char* text = ali.let[i].from(start);
      left = 0;
      for (int c = 0; c < width; ++c) {
        all_gap[c] = text[c] == '-' ? all_gap[c] : '\0';
        left = std::max(left, all_gap[c]);
      }
    }
    for (int c = 0; c < width && left != 0; ++c) {
      if (all_gap[c] == 0) continue;
      kept.back().last = start + c - 1;
      kept.push_back({start + c + 1, 0});
    }
  }
  kept.back().last = ali.nupo;
  return kept;
}

}  // namespace

void Rows::keep(const std::vector<Stretch>& kept) {
  const std::size_t numseq = nupo_ == 0 ? 0 : letters_->size() / width();
  const int left = total_length(kept);
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

int total_length(const std::vector<Stretch>& stretches) {
  int length = 0;
  for (const Stretch& stretch : stretches) length += stretch.length();
  return length;
}

Alignment without_gap_columns(Alignment ali) {
  if (ali.numseq < 2) throw Failure{.kind = Failure::Kind::too_few_sequences, .length = ali.numseq};
  std::vector<Stretch> kept = allocating("let", [&] { return kept_positions(ali); });
  if (!ali.inserts.empty()) kept = allocating("let", [&] { return common(kept, complement(ali.inserts, ali.nupo)); });
  if (total_length(kept) < ali.nupo) {
    ali.dropped = allocating("let", [&] { return complement(kept, ali.nupo); });
    ali.let.keep(kept);
    ali.nupo = total_length(kept);
  }
  if (ali.nupo < 2) throw Failure{.kind = Failure::Kind::too_few_positions, .length = ali.nupo};
  return ali;
}

std::vector<Stretch> common(const std::vector<Stretch>& a, const std::vector<Stretch>& b) {
  std::vector<Stretch> both;
  for (auto left = a.begin(), right = b.begin(); left != a.end() && right != b.end();) {
    const Stretch stretch = {std::max(left->first, right->first), std::min(left->last, right->last)};
    if (stretch.length() > 0) both.push_back(stretch);
    if (left->last < right->last) {
      ++left;
    } else {
      ++right;
    }
  }
  return both;
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

ColumnNumbers::ColumnNumbers(const Alignment& ali) {
  long long left_out = 0;
  for (const Stretch& stretch : ali.dropped) {
    const long long before = stretch.first - 1 - left_out;  // positions
    left_out += stretch.length();
    shifts_.emplace_back(static_cast<int>(before) + 1, left_out);
  }
}

long long ColumnNumbers::operator()(int p) const {
  const auto next = std::upper_bound(shifts_.begin(), shifts_.end(), p,
                                     [](int position, const auto& shift) { return position < shift.first; });
  return p + (next == shifts_.begin() ? 0 : std::prev(next)->second);
}

std::string without_line_end(const std::string& name) {
  return name.substr(0, name.empty() ? 0 : name.size() - 1);
}

}  // namespace trimora::rooms
