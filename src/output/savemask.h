// The mask file: the alignment with a mask behind each sequence.
#pragma once
#include "driver/run_state.h"
#include "input/alignment.h"
#include "input/table.h"
#include "selection/scores.h"

/// Write the mask to fichero1 + exten + "Mask", always as NBRF/PIR: each sequence, followed by a record that marks
/// where it carries the residue of a conserved position ('@', elsewhere '?'), and in the end one record with
/// `lettrimora`.
void savemask(const Alignment& ali, const PositionScores& scores, const Table<char>& lettrimora, const RunState& run);
