// The run state: what the user has set, and what is known about the input. Options, menus, file-type detection and the run
// driver write it, everyone else reads the slice that concerns it: InputState < SelectionState < OutputState < BatchState.
#pragma once
#include "batch/batch_state.h"

namespace trimora::rooms {

/// All of it: what the menus keep comes last.
struct RunState : BatchState {
  char menu = ' ';      // the last menu choice, lower-cased; a line end shows the menu again after a blank line
  int warn = 1;         // 1: the warning about settings that concern all alignments of a batch has not been shown yet
  int tog_expmen = 0;   // 1: the saving options menu shows its extended lines
  int tog_expmenb = 0;  // 1: the block parameters menu shows its extended lines
};

}  // namespace trimora::rooms
