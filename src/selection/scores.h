// Position scores: how many sequences have the most frequent residue of each position.
// Words     residue: a letter of "ACGTDEFHIKLMNPQRSVWY" (proteins) or "UACGT" (DNA, codons)
//           scored: the position's gaps are allowed (b5)
//           gap position: score 0, because of its gaps or because it has no residue of the alphabet
#pragma once
#include "ground/table.h"
#include "input/alignment.h"
#include "selection/selection_state.h"  // seq_type, negval b1, tog_gaps b5, tog_sim b6, initnegval

namespace trimora::rooms {

/// The scores of one alignment. assignval() makes them; every later step only reads them.
struct PositionScores {
  Table<float> val;    // [1..nupo] score, in sequences; weighted by similarity it need not be a whole number
  Table<char> val_aa;  // [1..nupo] most frequent residue, upper case; '?' where none was chosen
};

/// Score every position of `ali`. Letters count in either case; characters outside the alphabet do not count.
/// Returns  the scores, owned by the caller.
/// Fails    only when memory runs out, with a Failure.
PositionScores assignval(const Alignment& ali, const SelectionState& run);

/// What the letters say of each position, 13 bytes for each: the scores under any b5 and b6 follow without the letters.
struct PositionCounts {
  Table<int> gaps;       // [1..nupo] sequences with a gap
  Table<int> most;       // with the most frequent residue
  Table<char> residue;   // that one, upper case; '?' where there is none
  Table<float> similar;  // `most`, weighted by similarity where assignval() would do that
};

/// Count every position of `ali`; of `run`, the type of sequence and `initnegval` are read.
/// Fails    only when memory runs out, with a Failure.
PositionCounts count_positions(const Alignment& ali, const SelectionState& run);

/// The scores that assignval() gives the alignment that was counted.
/// Needs    counts made with the same type of sequence.
PositionScores scores_of(const PositionCounts& counts, const SelectionState& run);

/// Conserved: at least b1 sequences carry the residue.
inline bool conserved(const PositionScores& scores, int p, const SelectionState& run) {
  return scores.val[p] >= static_cast<float>(run.negval);  // single precision on both sides, on purpose
}

/// Flank: at least b2 do.
inline bool flank(const PositionScores& scores, int p, const SelectionState& run) {
  return scores.val[p] >= static_cast<float>(run.flankval);
}

/// For each position the residue that the report colours and the mask marks in every sequence that carries it: the most
/// frequent one where the position is conserved, elsewhere `no_capital`, which no capital equals.
inline constexpr char no_capital = 'a';
Table<char> conserved_residues(const PositionScores& scores, const SelectionState& run);

}  // namespace trimora::rooms
