#include "selection/selection_state.h"

namespace trimora::rooms {

void derive_defaults(SelectionState& run) {
  run.negval = run.initnegval = run.numseq / 2 + 1;
  run.flankval = static_cast<int>(static_cast<long long>(run.numseq) * 85 / 100);
  if (run.flankval == 1) run.flankval = 2;  // two sequences: a flank needs both; 0 stays 0
}

}  // namespace trimora::rooms
