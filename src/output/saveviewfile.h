// The results and parameters report, as HTML, text or short text.
#pragma once
#include "input/alignment.h"
#include "output/output_file.h"
#include "output/output_state.h"
#include "selection/blocks.h"
#include "selection/scores.h"

namespace trimora::rooms {

/// Write the report as HTML, text or short text, as tog_viewfile says. The short report has no
/// display of the alignment.
void saveviewfile(OutputFile& out, const Alignment& ali, const PositionScores& scores, const SelectedBlocks& blocks,
                  const OutputState& run);

}  // namespace trimora::rooms
