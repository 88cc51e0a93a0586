// The block parameters, in sequences or in positions, and what bounds them.
// Words     b0 .. b6: the block parameters, under the letters of their options
#pragma once
#include "input/input_state.h"

namespace trimora::rooms {

/// Values of SelectionState::tog_gaps.
inline constexpr int no_gaps = 1;
inline constexpr int with_half = 2;
inline constexpr int all_gaps = 3;

struct SelectionState : InputState {
  int posblen = 10;        // b0: minimum length of an initial block, before gap cleaning; 2 to 32000
  int negval = 0;          // b1: minimum number of sequences for a conserved position; initnegval to flankval
  int flankval = 0;        // b2: minimum number of sequences for a flank position; negval to numseq
  int negblen = 8;         // b3: maximum number of contiguous nonconserved positions; 0 to 32000
  int posblen2 = 10;       // b4: minimum length of a block after gap cleaning; 2 to 32000
  int tog_gaps = no_gaps;  // b5: allowed gap positions: none, with half, all
  int tog_sim = 1;         // b6: use the similarity matrix, for proteins only
  bool every = false;      // no position is left out, whatever the parameters
  int initnegval = 0;      // half the number of sequences + 1: lower bound of b1; never set by the user
  int numseq = 0;          // sequences of the alignment loaded last; bounds b2, and b1 and b2 are derived from it
};

/// The values that a parameter may take, both ends included. Numbers typed by a user are wider than any parameter.
struct Range {
  long long least;
  long long most;
  constexpr bool holds(long long value) const { return least <= value && value <= most; }
};

inline constexpr Range posblen_range = {2, 32000};        // b0 and b4
inline constexpr Range codon_posblen_range = {5, 32000};  // b4 in the menus, for codons: one whole codon remains
inline constexpr Range negblen_range = {0, 32000};        // b3

/// The ranges of b1 and b2, which depend on each other and on the alignment.
inline Range negval_range(const SelectionState& run) {
  return {run.initnegval, run.flankval};
}
inline Range flankval_range(const SelectionState& run) {
  return {run.negval, run.numseq};
}

/// b5 as a number: the most gaps that a position may have to be scored.
inline int most_gaps(const SelectionState& run) {
  switch (run.tog_gaps) {
    case no_gaps: return 0;
    case with_half: return run.initnegval - 1;
    default: return run.numseq;
  }
}

/// Derive b1 and b2 (and the lower bound of b1) from `run.numseq`: more than half and 85 % of the sequences.
void derive_defaults(SelectionState& run);

}  // namespace trimora::rooms
