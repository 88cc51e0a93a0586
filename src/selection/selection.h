// What is found in one alignment: its scores, its blocks and, where someone asks for it, its ungapped view.
#pragma once
#include "input/alignment.h"
#include "selection/blocks.h"
#include "selection/reduced_views.h"
#include "selection/scores.h"

namespace trimora::rooms {

struct Selection {
  PositionScores scores;
  SelectedBlocks blocks;
  Ungapped ungapped;  // only when it was asked for
};

/// All positions as one block.
inline SelectedBlocks every_position(int nupo) {
  SelectedBlocks blocks;
  blocks.pos = blocks.newpos = blocks.newposseq = {{1, nupo}};
  blocks.nupo3 = nupo;
  blocks.nupo3per = 100;
  return blocks;
}

/// Score the positions of `ali` and select its blocks.
inline Selection find_blocks(const Alignment& ali, const SelectionState& run, bool needs_ungapped) {
  Selection found;
  found.scores = assignval(ali, run);
  found.blocks = run.every ? every_position(ali.nupo) : getpos(found.scores, ali, run);
  if (needs_ungapped) found.ungapped = ungap(ali);
  return found;
}

}  // namespace trimora::rooms
