// What concerns the alignments of a paths file together.
#pragma once
#include "output/output_state.h"

namespace trimora::rooms {

struct BatchState : OutputState {
  char tog_allfile = 0;       // -a  the concatenated selected blocks
  char tog_allfile_init = 0;  // -c  the concatenated input alignments
  char tog_allungfile = 0;    // -w  the concatenated ungapped alignments
  int tog_sub = 0;  // 1: b1 or b2 is fixed, or a concatenation was asked for: one set of parameters for a whole batch,
                    //    and the same number of sequences in each alignment
};

}  // namespace trimora::rooms
