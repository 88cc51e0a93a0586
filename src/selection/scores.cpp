#include "selection/scores.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <memory>
#include <string_view>

#include "ground/failure.h"
#include "ground/vector_clones.h"
#include "input/letters.h"
#include "selection/similarity_matrix.h"

namespace trimora::rooms {

namespace {

// The residues that score, in the order in which they prevail on a tie, and the gap.
constexpr std::string_view proteins = "ACGTDEFHIKLMNPQRSVWY-";
constexpr std::string_view nucleotides = "UACGT-";
constexpr std::size_t most_letters = proteins.size();

// The alignment is counted a tile of positions at a time, one strip of sequences after another: the letters of a strip
// and the narrow counters of a tile stay in the first cache, and a counter is loaded once per strip.
constexpr int tile = 1024;
constexpr int strip = 8;
constexpr int vector_width = 64;  // widths are rounded up to whole vectors; anything beyond them counts as no letter

using Letters = std::uint8_t[strip][tile];

/// Counters of one tile, for each letter of the alphabet, the gap last, and each position.
struct Counts {
  std::uint8_t narrow[most_letters][tile];  // widened before they can overflow; 0 again afterwards
  std::int32_t wide[most_letters][tile];
};

/// Add the letters of a strip to the narrow counters.
TRIMORA_VECTOR_CLONES
void count_strip(const Letters& letters, std::string_view alphabet, int width, Counts& counts) {
  for (std::size_t a = 0; a < alphabet.size(); ++a) {
    const auto letter = static_cast<std::uint8_t>(alphabet[a]);
    std::uint8_t* narrow = counts.narrow[a];
    for (int c = 0; c < width; ++c) {
      std::uint8_t count = narrow[c];
      for (int k = 0; k < strip; ++k) count = static_cast<std::uint8_t>(count + (letters[k][c] == letter ? 1 : 0));
      narrow[c] = count;
    }
  }
}

/// Move the narrow counters into the wide ones, which begin with them when they are the `first` of a tile.
TRIMORA_VECTOR_CLONES
void widen(std::size_t size, int width, bool first, Counts& counts) {
  for (std::size_t a = 0; a < size; ++a) {
    for (int c = 0; c < width; ++c) counts.wide[a][c] = (first ? 0 : counts.wide[a][c]) + counts.narrow[a][c];
    std::memset(counts.narrow[a], 0, sizeof counts.narrow[a]);
  }
}

/// Count the letters of `alphabet` at positions start .. start + width - 1.
TRIMORA_VECTOR_CLONES
void count_tile(const Alignment& ali, int start, int width, std::string_view alphabet, Counts& counts) {
  Letters letters;
  const int vectors = (width + vector_width - 1) / vector_width * vector_width;
  int counted = 0;  // sequences in the narrow counters
  bool first = true;
  for (int i = 1; i <= ali.numseq; i += strip) {
    for (int k = 0; k < strip; ++k) {
      std::uint8_t* end = letters[k];
      if (i + k <= ali.numseq) {
        const char* text = ali.let[i + k].from(start);
        end = std::transform(text, text + width, end, capital);
      }
      std::fill(end, letters[k] + vectors, std::uint8_t{0});
    }
    count_strip(letters, alphabet, vectors, counts);
    counted += strip;
    if (counted + strip > UINT8_MAX) {
      widen(alphabet.size(), width, first, counts);
      first = false;
      counted = 0;
    }
  }
  widen(alphabet.size(), width, first, counts);
}

/// The scores of one tile, in plain arrays: whole loops over them become vector code.
struct TileScores {
  float val[tile];
  std::int32_t residue[tile];  // val_aa, as wide as the counts beside it
};

/// Score `width` positions by their most frequent residue; one with more than `mostgaps` gaps is not scored.
TRIMORA_VECTOR_CLONES
void score_tile(const Counts& counts, std::string_view alphabet, std::int32_t mostgaps, int width, TileScores& scores) {
  const std::size_t gap = alphabet.size() - 1;
  std::int32_t best[tile];
  std::fill_n(best, width, 0);
  std::fill_n(scores.residue, width, '?');
  for (std::size_t a = 0; a < gap; ++a) {
    const std::int32_t letter = alphabet[a];
    for (int c = 0; c < width; ++c) {
      // As a score holds it: from 2^24 on, neighbouring counts are the same score. Compared as whole numbers, since of
      // floats the compiler would make a masked store, which is slow.
      const auto count = static_cast<std::int32_t>(static_cast<float>(counts.wide[a][c]));
      scores.residue[c] = best[c] < count ? letter : scores.residue[c];  // on a tie the earlier one stays
      best[c] = std::max(best[c], count);
    }
  }
  for (int c = 0; c < width; ++c) {
    const bool scored = counts.wide[gap][c] <= mostgaps;
    scores.val[c] = scored ? static_cast<float>(best[c]) : 0.0F;
    scores.residue[c] = scored ? scores.residue[c] : '?';
  }
}

/// Score the positions that more than half of the sequences agree on anew, by the similarity of all their residues to
/// the most frequent one. Each product is rounded before it is added, in the order of the alphabet: blocks hang on the
/// last bit.
void assingval_similarity(const Counts& counts, int initnegval, int width, TileScores& scores) {
  for (int c = 0; c < width; ++c) {
    if (scores.val[c] < static_cast<float>(initnegval)) continue;
    const float* weights = similarity[proteins.find(static_cast<char>(scores.residue[c]))];
    scores.val[c] = 0;
    for (std::size_t k = 0; k < std::size(similarity); ++k) {
      const float product = weights[k] * static_cast<float>(counts.wide[k][c]);
      scores.val[c] += product;
    }
  }
}

bool is_protein(const SelectionState& run) {
  return run.seq_type == 'P';
}

/// Count the letters of `ali` tile by tile; `take` is called with each tile's counts and width.
template <typename Take>
void for_each_tile(const Alignment& ali, std::string_view alphabet, Take take) {
  const auto counts = allocating("bb", [] { return std::make_unique<Counts>(); });
  for (int start = 1; start <= ali.nupo; start += tile) {
    const int width = std::min(tile, ali.nupo - start + 1);
    count_tile(ali, start, width, alphabet, *counts);
    take(*counts, width);
  }
}

void append_residues(Table<char>& residues, const TileScores& scores, int width) {
  char letters[tile];
  std::copy_n(scores.residue, width, letters);
  residues.append(letters, width);
}

}  // namespace

PositionScores assignval(const Alignment& ali, const SelectionState& run) {
  const std::string_view alphabet = is_protein(run) ? proteins : nucleotides;
  PositionScores scores;
  allocating("val", [&] { scores.val.reserve(ali.nupo); });
  allocating("val_aa", [&] { scores.val_aa.reserve(ali.nupo); });
  for_each_tile(ali, alphabet, [&](const Counts& counts, int width) {
    TileScores of_this_tile;
    score_tile(counts, alphabet, most_gaps(run), width, of_this_tile);
    if (is_protein(run) && run.tog_sim == 1) assingval_similarity(counts, run.initnegval, width, of_this_tile);
    scores.val.append(of_this_tile.val, width);
    append_residues(scores.val_aa, of_this_tile, width);
  });
  return scores;
}

PositionCounts count_positions(const Alignment& ali, const SelectionState& run) {
  const std::string_view alphabet = is_protein(run) ? proteins : nucleotides;
  PositionCounts all;
  allocating("counts", [&] {
    for (Table<int>* numbers : {&all.gaps, &all.most}) numbers->reserve(ali.nupo);
    all.residue.reserve(ali.nupo);
    all.similar.reserve(ali.nupo);
  });
  for_each_tile(ali, alphabet, [&](const Counts& counts, int width) {
    TileScores of_this_tile;
    score_tile(counts, alphabet, run.numseq, width, of_this_tile);  // with any number of gaps
    std::int32_t most[tile];                                        // exact: score_tile() has rounded it as a score is
    std::transform(of_this_tile.val, of_this_tile.val + width, most,
                   [](float v) { return static_cast<std::int32_t>(v); });
    all.most.append(most, width);
    all.gaps.append(counts.wide[alphabet.size() - 1], width);
    append_residues(all.residue, of_this_tile, width);
    if (is_protein(run)) assingval_similarity(counts, run.initnegval, width, of_this_tile);
    all.similar.append(of_this_tile.val, width);
  });
  return all;
}

PositionScores scores_of(const PositionCounts& counts, const SelectionState& run) {
  const bool weighted = is_protein(run) && run.tog_sim == 1;
  const int mostgaps = most_gaps(run), nupo = counts.gaps.size();
  PositionScores scores;
  allocating("val", [&] { scores.val = Table<float>(nupo); });
  allocating("val_aa", [&] { scores.val_aa = Table<char>(nupo, '?'); });
  for (int p = 1; p <= nupo; ++p) {
    if (counts.gaps[p] > mostgaps) continue;
    scores.val[p] = weighted ? counts.similar[p] : static_cast<float>(counts.most[p]);
    scores.val_aa[p] = counts.residue[p];
  }
  return scores;
}

Table<char> conserved_residues(const PositionScores& scores, const SelectionState& run) {
  Table<char> residues = allocating("val_aa", [&] { return Table<char>(scores.val.size(), no_capital); });
  for (int p = 1; p <= scores.val.size(); ++p) {
    if (conserved(scores, p, run)) residues[p] = scores.val_aa[p];
  }
  return residues;
}

}  // namespace trimora::rooms
