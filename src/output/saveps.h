// The block map: an Encapsulated PostScript picture of where the selected blocks lie.
#pragma once
#include "input/alignment.h"
#include "output/output_file.h"
#include "output/output_state.h"
#include "selection/blocks.h"

namespace trimora::rooms {

/// Draw the blocks of an alignment of `nupo` positions: one bar for the alignment and beside it one per block, one point
/// per position, with two lines of text.
void saveps(OutputFile& out, const SelectedBlocks& blocks, int nupo, const OutputState& run);

}  // namespace trimora::rooms
