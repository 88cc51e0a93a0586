// What a person would see in the report and a script would not: notes on standard error, made by trimora-run.
#pragma once
#include "driver/run_state.h"
#include "input/alignment.h"

/// Say of a loaded alignment what makes its results differ from what its file seems to hold: columns that were dropped,
/// carriage returns that count as positions, nucleotides that are taken for protein.
void notes(const Alignment& ali, const RunState& run);
