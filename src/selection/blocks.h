// Selected blocks: from the score of every position to the stretches worth keeping.
// Words     flank: score >= flankval | conserved: score >= negval | nonconserved: the rest | gap position: score 0
// Counting  positions 1..nupo; a block holds both of its ends; scores are in sequences
#pragma once
#include <vector>

#include "input/alignment.h"
#include "selection/scores.h"
#include "selection/selection_state.h"  // posblen b0, negval b1, flankval b2, negblen b3, posblen2 b4

namespace trimora::rooms {

/// The blocks of one alignment. getpos() makes it; every later step only reads it.
struct SelectedBlocks {
  std::vector<Stretch> pos;        // the initial blocks, before gap positions are cut out
  std::vector<Stretch> newpos;     // the blocks, from left to right; a codon block may be empty (last = first - 1)
  std::vector<Stretch> newposseq;  // the same, counted on the first sequence; exact only where its blocks hold no gap
  int nupo3 = 0;                   // positions selected
  int nupo3per = 0;                // the same as a whole per cent of nupo, truncated
};

/// Select the blocks of `ali`.
/// Needs    scores made by assignval() from this same alignment.
/// Returns  the blocks, owned by the caller; none when no position reaches flankval.
/// Fails    only when memory runs out, with a Failure.
SelectedBlocks getpos(const PositionScores& scores, const Alignment& ali, const SelectionState& run);
/// The same without the letters, but for `newposseq`.
SelectedBlocks getpos(const PositionScores& scores, const SelectionState& run);

}  // namespace trimora::rooms
