// The three menus. Each shows the run state, reads a choice and acts on it, again and again.
#pragma once
#include "trimora/run_state.h"

namespace trimora::rooms {

inline constexpr char not_allowed[] = "\n* Value not allowed *\n";
inline constexpr char no_file[] = "* Please enter first an alignment in NBRF/PIR or FASTA format *";

/// The main menu, until a run has been made or the user quits: `run.menu` is then 'g' or 'q'.
void menu_main(RunState& run);

/// The block parameters menu, until the user leaves it.
void menu_block_options(RunState& run);

/// The saving options menu, until the user leaves it.
void menu_saving_options(RunState& run);

// Choices that are in more than one menu.

/// Choice g: start a run. Without a file, ask for one first; the menu then follows a blank line.
void get_blocks(RunState& run);

/// Choice e: ask for a new suffix, and refuse one that is too long, or that a NUL byte makes empty.
void ask_exten(RunState& run);

}  // namespace trimora::rooms
