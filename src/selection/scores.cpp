#include "selection/scores.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>

#include "driver/errfunc.h"
#include "selection/similarity_matrix.h"

// One source, several instruction sets: the compiler makes a version of the function for each and the loader picks.
// Integer counts alone are made this way, so that every machine finds the same numbers.
#if defined(__x86_64__) && defined(__gnu_linux__) && !defined(__SANITIZE_ADDRESS__) && !defined(__clang__)
#define TRIMORA_VECTOR_CLONES __attribute__((target_clones("avx2", "default")))
#else
#define TRIMORA_VECTOR_CLONES
#endif

namespace {

constexpr std::string_view proteins = "ACGTDEFHIKLMNPQRSVWY";  // on a tie the first in this order prevails
constexpr std::string_view nucleotides = "UACGT";
constexpr int mostletters = 21;  // the protein alphabet and the gap

// The alignment is counted a tile of positions at a time, a strip of sequences after the other: the letters of a strip
// and the narrow counters of a tile stay in the first cache, and a counter is loaded once per strip.
constexpr int tile = 1024;
constexpr int strip = 8;
constexpr int vectorwidth = 64;  // widths are rounded up to whole vectors; what stands behind counts as no letter

using Letters = std::uint8_t[strip][tile];

/// Counters of one tile, for each letter of the alphabet, the gap last, and each position.
struct Counts {
  std::uint8_t narrow[mostletters][tile];  // widened before they can overflow
  std::int32_t wide[mostletters][tile];
};

/// Add the letters of a strip to the narrow counters.
TRIMORA_VECTOR_CLONES
void countstrip(const Letters& letters, std::string_view alphabet, int width, Counts& counts) {
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

/// Move the narrow counters into the wide ones.
void widen(std::size_t size, int width, Counts& counts) {
  for (std::size_t a = 0; a < size; ++a) {
    for (int c = 0; c < width; ++c) counts.wide[a][c] += counts.narrow[a][c];
    std::memset(counts.narrow[a], 0, static_cast<std::size_t>(width));
  }
}

/// Count the letters of `alphabet` at positions start .. start + width - 1.
void counttile(const Alignment& ali, int start, int width, std::string_view alphabet, Counts& counts) {
  Letters letters;
  const int vectors = (width + vectorwidth - 1) / vectorwidth * vectorwidth;
  for (std::size_t a = 0; a < alphabet.size(); ++a) {
    std::memset(counts.narrow[a], 0, sizeof counts.narrow[a]);
    std::memset(counts.wide[a], 0, sizeof counts.wide[a]);
  }
  int counted = 0;  // sequences in the narrow counters
  for (int i = 1; i <= ali.numseq; i += strip) {
    for (int k = 0; k < strip; ++k) {
      const int filled = i + k <= ali.numseq ? width : 0;
      if (filled > 0)
        std::transform(ali.let[i + k].from(start), ali.let[i + k].from(start) + width, letters[k], capital);
      std::memset(letters[k] + filled, 0, static_cast<std::size_t>(vectors - filled));
    }
    countstrip(letters, alphabet, vectors, counts);
    counted += strip;
    if (counted + strip > UINT8_MAX) {
      widen(alphabet.size(), width, counts);
      counted = 0;
    }
  }
  widen(alphabet.size(), width, counts);
}

/// Whether the gaps of a position allow it to be scored.
bool scored(std::int32_t gaps, const RunState& run) {
  switch (run.tog_gaps) {
    case 1: return gaps == 0;
    case 2: return gaps < run.initnegval;
    default: return true;
  }
}

/// The score of position c of a tile by the similarity of all its residues to the most frequent one, `prevailing`. Each
/// product is rounded before it is added, in the order of the alphabet: blocks hang on the last bit.
float assingval_similarity(const Counts& counts, int c, std::size_t prevailing) {
  float score = 0;
  for (std::size_t k = 0; k < proteins.size(); ++k) {
    const float product = similarity[prevailing][k] * static_cast<float>(counts.wide[k][c]);
    score += product;
  }
  return score;
}

}  // namespace

PositionScores assignval(const Alignment& ali, const RunState& run) {
  const bool protein = run.seq_type == 'P';
  const std::string_view residues = protein ? proteins : nucleotides;
  const std::string_view alphabet = protein ? "ACGTDEFHIKLMNPQRSVWY-" : "UACGT-";
  const std::size_t gap = residues.size();  // its place in the alphabet

  PositionScores scores;
  allocating("val", [&] { scores.val.reserve(ali.nupo); });
  allocating("val_aa", [&] { scores.val_aa.reserve(ali.nupo); });
  const auto counts = allocating("bb", [] { return std::make_unique<Counts>(); });
  float best[tile];
  std::int32_t prevailing[tile];
  char residue[tile];
  for (int start = 1; start <= ali.nupo; start += tile) {
    const int width = std::min(tile, ali.nupo - start + 1);
    counttile(ali, start, width, alphabet, *counts);
    std::fill_n(best, width, 0.0F);
    std::fill_n(prevailing, width, -1);
    for (std::size_t a = 0; a < residues.size(); ++a) {
      for (int c = 0; c < width; ++c) {
        const auto count = static_cast<float>(counts->wide[a][c]);
        prevailing[c] = best[c] < count ? static_cast<std::int32_t>(a) : prevailing[c];
        best[c] = best[c] < count ? count : best[c];
      }
    }
    for (int c = 0; c < width; ++c) {
      if (!scored(counts->wide[gap][c], run)) {
        best[c] = 0;
        prevailing[c] = -1;
      }
      residue[c] = prevailing[c] < 0 ? '?' : residues[static_cast<std::size_t>(prevailing[c])];
      if (protein && run.tog_sim == 1 && prevailing[c] >= 0 && best[c] >= static_cast<float>(run.initnegval)) {
        best[c] = assingval_similarity(*counts, c, static_cast<std::size_t>(prevailing[c]));
      }
    }
    scores.val.append(best, width);
    scores.val_aa.append(residue, width);
  }
  return scores;
}

Table<char> conservedresidues(const PositionScores& scores, const RunState& run) {
  Table<char> residues(scores.val.size(), nocapital);
  for (int p = 1; p <= scores.val.size(); ++p) {
    if (conserved(scores, p, run)) residues[p] = scores.val_aa[p];
  }
  return residues;
}
