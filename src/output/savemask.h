// The mask file: the alignment with a mask after each sequence.
#pragma once
#include "input/alignment.h"
#include "output/output_file.h"
#include "selection/blocks.h"
#include "selection/scores.h"

namespace trimora::rooms {

/// Write the mask, always as NBRF/PIR: each sequence, followed by a record that marks
/// where it carries the residue of a conserved position ('@', elsewhere '?'), and in the end one record with the map of
/// the selected positions.
void savemask(OutputFile& out, const Alignment& ali, const PositionScores& scores, const SelectedBlocks& blocks,
              const SelectionState& run);

}  // namespace trimora::rooms
