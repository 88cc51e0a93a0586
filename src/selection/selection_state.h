// The block parameters, in sequences or in positions, and what bounds them.
// Words     b0 .. b6: the block parameters, under the letters of their options
#pragma once
#include "input/input_state.h"

namespace trimora::rooms {

/// Values of SelectionState::tog_gaps.
inline constexpr int nogaps = 1;
inline constexpr int withhalf = 2;
inline constexpr int allgaps = 3;

struct SelectionState : InputState {
  int posblen = 10;       // b0: minimum length of an initial block, before gap cleaning; 2 to 32000
  int negval = 0;         // b1: minimum number of sequences for a conserved position; initnegval to flankval
  int flankval = 0;       // b2: minimum number of sequences for a flank position; negval to numseq
  int negblen = 8;        // b3: maximum number of contiguous nonconserved positions; 0 to 32000
  int posblen2 = 10;      // b4: minimum length of a block after gap cleaning; 2 to 32000
  int tog_gaps = nogaps;  // b5: allowed gap positions: none, with half, all
  int tog_sim = 1;        // b6: use the similarity matrix, for proteins only
  int initnegval = 0;     // half the number of sequences + 1: lower bound of b1; never set by the user
  int numseq = 0;         // sequences of the alignment loaded last; bounds b2, and b1 and b2 are derived from it
};

/// The values that a parameter may take, both ends included. Numbers typed by a user are wider than any parameter.
struct Range {
  long long least;
  long long most;
  constexpr bool holds(long long value) const { return least <= value && value <= most; }
};

inline constexpr Range posblenrange = {2, 32000};       // b0 and b4
inline constexpr Range codonposblenrange = {5, 32000};  // b4 in the menus, for codons: one whole codon remains
inline constexpr Range negblenrange = {0, 32000};       // b3

/// The ranges of b1 and b2, which depend on each other and on the alignment.
inline Range negvalrange(const SelectionState& run) {
  return {run.initnegval, run.flankval};
}
inline Range flankvalrange(const SelectionState& run) {
  return {run.negval, run.numseq};
}

/// Derive b1 and b2 (and the lower bound of b1) from `run.numseq`: more than half and 85 % of the sequences.
void derivedefaults(SelectionState& run);

}  // namespace trimora::rooms
