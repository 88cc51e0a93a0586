// A whole run of trimora-run: its alignments in turn, the supermatrix, the table, and all messages.
#pragma once
#include "trimora_run/settings.h"

namespace trimora::rooms {

/// Values of the exit status.
inline constexpr int exit_done = 0;
inline constexpr int exit_failed = 1;
inline constexpr int exit_wrong_usage = 2;

/// Carry out what `settings` ask for.
/// Returns  the exit status.
/// Fails    with WrongUsage, when the first alignment shows that a value is out of its range
int carry_out(const Settings& settings);

}  // namespace trimora::rooms
