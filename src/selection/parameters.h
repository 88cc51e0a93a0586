// The block parameters as they are asked for, made into those that are in force for one alignment.
#pragma once
#include "selection/selection_state.h"
#include "trimora/trimora.h"  // Parameters

namespace trimora::rooms {

inline char seq_type_of(Kind kind) {
  return kind == Kind::protein ? 'P' : kind == Kind::dna ? 'D' : 'C';
}

/// As many sequences as a share or a number asks for, of `numseq`.
int number_of(const Sequences& sequences, int numseq);

/// Set b0 to b6 for an alignment of `run.numseq` sequences. Shares are truncated, and b1 and b2 are at least what they have
/// to be; b2 is as many as b1 when it is not given and its default is below b1, and when it is given as 0.
/// Fails    bad_argument, for a value out of its range
void set_parameters(const Parameters& parameters, SelectionState& run);

}  // namespace trimora::rooms
