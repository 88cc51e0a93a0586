#include "batch/counts.h"

#include <algorithm>
#include <array>
#include <bit>
#include <string_view>

#include "ground/vector_clones.h"
#include "input/letter_vectors.h"
#include "input/letters.h"

namespace trimora::rooms {

namespace {

constexpr int tile = 1024;  // positions looked at together: their states fit into the first cache

/// Counts one sequence, stretch by stretch.
class Counter {
 public:
  explicit Counter(char seq_type) : letter_(seq_type == 'P' ? 'x' : 'n') {}

  void add(const char* text, int width) {
    const auto found = count_letters(
        {text, static_cast<std::size_t>(width)},
        [this](LetterVector c) { return between(c | 0x20, 'a', 'z') & ~where(c | 0x20, letter_); },
        [this](LetterVector c) { return where(c | 0x20, letter_) | where(c, '?') | where(c, '*') | where(c, '!'); });
    const auto letters = static_cast<std::uint32_t>(found[0]), unknown = static_cast<std::uint32_t>(found[1]);
    const std::uint32_t gap = static_cast<std::uint32_t>(width) - letters - unknown;
    counts_.letters += letters;
    counts_.unknown += unknown;
    counts_.gaps += gap;
    if (letters == 0) {
      since_letter_ += gap;
      return;
    }
    const auto is_letter = [&](char c) {
      return c != '-' && c != '?' && c != '*' && c != '!' && (c | 0x20) != letter_;
    };
    const char* end = text + width;
    if (counts_.letters == letters) {  // the first ones
      counts_.end_gaps += since_letter_ + gaps(text, std::find_if(text, end, is_letter));
    }
    const char* last = end;
    while (!is_letter(last[-1])) --last;
    since_letter_ = gaps(last, end);
  }
  RowCounts finish() {
    counts_.end_gaps += since_letter_;
    return counts_;
  }

 private:
  static std::uint32_t gaps(const char* first, const char* last) {
    return static_cast<std::uint32_t>(std::count(first, last, '-'));
  }

  char letter_;  // the small one for an unknown residue
  RowCounts counts_;
  std::uint32_t since_letter_ = 0;  // gaps after the last letter, or from the beginning
};

/// The bit of each state.
using Bits = std::array<std::uint32_t, 256>;
constexpr Bits bits_of(std::string_view states) {
  Bits bits{};
  for (std::size_t k = 0; k < states.size(); ++k) {
    bits[static_cast<unsigned char>(states[k])] = bits[static_cast<unsigned char>(lower(states[k]))] = 1U << k;
  }
  return bits;
}
constexpr Bits amino_acids = bits_of("ACDEFGHIKLMNPQRSTVWY");

/// Add the states of a row to those that occur at its positions, and to those that occur twice.
void add_states(const char* text, int width, const Bits& bits, std::uint32_t* once, std::uint32_t* twice) {
  for (int k = 0; k < width; ++k) {
    const std::uint32_t state = bits[static_cast<unsigned char>(text[k])];
    twice[k] |= once[k] & state;
    once[k] |= state;
  }
}

/// The same for nucleotides, in vector code.
TRIMORA_VECTOR_CLONES
void add_nucleotide_states(const char* text, int width, std::uint8_t* once, std::uint8_t* twice) {
  for (int k = 0; k < width; ++k) {
    const char c = static_cast<char>(text[k] | 0x20);
    const int state = (c == 'a' ? 1 : 0) | (c == 'c' ? 2 : 0) | (c == 'g' ? 4 : 0) | (c == 't' || c == 'u' ? 8 : 0);
    twice[k] = static_cast<std::uint8_t>(twice[k] | (once[k] & state));
    once[k] = static_cast<std::uint8_t>(once[k] | state);
  }
}

template <typename Mask, typename AddRow>
Variation variation_of(const Alignment& ali, const std::vector<Stretch>& stretches, AddRow add_row) {
  Variation found;
  std::array<Mask, tile> once, twice;
  for (const Stretch& stretch : stretches) {
    for (int start = stretch.first; start <= stretch.last; start += tile) {
      const int width = std::min(tile, stretch.last - start + 1);
      std::fill_n(once.begin(), width, Mask{0});
      std::fill_n(twice.begin(), width, Mask{0});
      for (int i = 1; i <= ali.numseq; ++i) add_row(ali.let[i].from(start), width, once.data(), twice.data());
      for (std::size_t k = 0; k < static_cast<std::size_t>(width); ++k) {
        found.variable += std::popcount(once[k]) >= 2 ? 1 : 0;
        found.informative += std::popcount(twice[k]) >= 2 ? 1 : 0;
      }
    }
  }
  return found;
}

}  // namespace

RowCounts count(const Row& row, const std::vector<Stretch>& stretches, char seq_type) {
  Counter counter(seq_type);
  for (const Stretch& stretch : stretches) {
    if (stretch.length() > 0) counter.add(row.from(stretch.first), stretch.length());
  }
  return counter.finish();
}

Table<RowCounts> count(const Alignment& ali, const std::vector<Stretch>& stretches, char seq_type) {
  Table<RowCounts> rows;
  rows.reserve(ali.numseq);
  for (int i = 1; i <= ali.numseq; ++i) rows.append(count(ali.let[i], stretches, seq_type));
  return rows;
}

Counts sum(const Table<RowCounts>& rows) {
  Counts all;
  for (int i = 1; i <= rows.size(); ++i) all.add(rows[i]);
  return all;
}

Variation variation(const Alignment& ali, const std::vector<Stretch>& stretches, char seq_type) {
  if (seq_type != 'P') return variation_of<std::uint8_t>(ali, stretches, add_nucleotide_states);
  return variation_of<std::uint32_t>(ali, stretches, [](const char* text, int width, auto* once, auto* twice) {
    add_states(text, width, amino_acids, once, twice);
  });
}

}  // namespace trimora::rooms
