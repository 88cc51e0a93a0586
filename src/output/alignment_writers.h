// The three alignment files of a run, in the format of the input, each one a choice of positions of the same rows.
#pragma once
#include "input/alignment.h"
#include "output/output_file.h"
#include "selection/blocks.h"
#include "selection/reduced_views.h"

namespace trimora::rooms {

/// Write the selected blocks.
void saveseq(OutputFile& out, const Alignment& ali, const SelectedBlocks& blocks, const InputState& run);

/// Write the nonconserved blocks, which is all that was not selected.
void savencb(OutputFile& out, const Alignment& ali, const SelectedBlocks& blocks, const InputState& run);

/// Write the ungapped alignment.
void save_ung(OutputFile& out, const Alignment& ali, const Ungapped& ungapped, const InputState& run);

}  // namespace trimora::rooms
