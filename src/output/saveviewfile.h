// The results and parameters report, as HTML, text or short text.
#pragma once
#include "input/alignment.h"
#include "output/output_state.h"
#include "selection/blocks.h"
#include "selection/scores.h"

/// Write the report to fichero1 + exten + ".htm", ".txt" or ".txts", as tog_viewfile says. The short report has no
/// display of the alignment.
void saveviewfile(const Alignment& ali, const PositionScores& scores, const SelectedBlocks& blocks,
                  const OutputState& run);
