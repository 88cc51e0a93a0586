// Command-line options, -X=VALUE: each sets one variable of the run state, or warns and leaves it as it was.
#pragma once
#include "driver/run_state.h"

/// Apply argv[first] .. argv[argc - 1] from left to right. The bounds of b1 and b2 are those current at that moment.
/// What is not an option is passed over without a word.
void parseoptions(int argc, char* argv[], int first, RunState& run);
