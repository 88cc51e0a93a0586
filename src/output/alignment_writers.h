// The three alignment files of a run, in the format of the input, each one a choice of positions of the same rows.
#pragma once
#include "input/alignment.h"
#include "output/output_state.h"
#include "selection/blocks.h"
#include "selection/reduced_views.h"

/// Write the selected blocks to fichero1 + exten.
void saveseq(const Alignment& ali, const SelectedBlocks& blocks, const OutputState& run);

/// Write the nonconserved blocks, which is all that was not selected, to fichero1 + exten + "Comp".
void savencb(const Alignment& ali, const SelectedBlocks& blocks, const OutputState& run);

/// Write the ungapped alignment to fichero1 + "--", whatever the suffix: it does not depend on the parameters.
void save_ung(const Alignment& ali, const Ungapped& ungapped, const OutputState& run);
