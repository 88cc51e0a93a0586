// What a sequence is made of, and what the columns of an alignment tell a tree program.
// Words     letter: a residue or an ambiguity code | unknown: N in DNA, X in proteins, and ? * ! | gap: -
//           state: a nucleotide or an amino acid, neither ambiguous nor unknown; T and U are one
// Counting  sequences 1..numseq, positions 1..nupo
#pragma once
#include <cstdint>
#include <vector>

#include "ground/table.h"
#include "input/alignment.h"

namespace trimora::rooms {

/// Of one sequence. An alignment has at most as many positions as an int counts.
struct RowCounts {
  std::uint32_t letters = 0;
  std::uint32_t unknown = 0;
  std::uint32_t gaps = 0;
  std::uint32_t end_gaps = 0;  // of the gaps, those before the first and after the last letter
};

/// Of many.
struct Counts {
  long long letters = 0, unknown = 0, gaps = 0, end_gaps = 0;
  long long absent = 0;  // cells of species that an alignment lacks
  long long cells() const { return letters + unknown + gaps + absent; }
  void add(const RowCounts& row) {
    letters += row.letters;
    unknown += row.unknown;
    gaps += row.gaps;
    end_gaps += row.end_gaps;
  }
};

/// Count the positions `stretches` of one sequence; `seq_type` is P, D or C.
RowCounts count(const Row& row, const std::vector<Stretch>& stretches, char seq_type);
/// The same of all sequences.
Table<RowCounts> count(const Alignment& ali, const std::vector<Stretch>& stretches, char seq_type);
Counts sum(const Table<RowCounts>& rows);

/// Whether n is at least `percent` of `total`; nothing is rounded.
constexpr bool at_least(long long n, int percent, long long total) {
  return n * 100 >= percent * total;
}

struct Variation {
  int variable = 0;     // columns with two states or more
  int informative = 0;  // with two states or more, each in two sequences or more
};
Variation variation(const Alignment& ali, const std::vector<Stretch>& stretches, char seq_type);

}  // namespace trimora::rooms
