// What a person would see in the results and a script would not: notes on standard error, made by trimora-run.
#pragma once
#include "batch/batch_state.h"
#include "ground/table.h"
#include "input/alignment.h"

/// Says of each alignment of a run, when it has been loaded, what makes its results differ from what its file seems to
/// hold: columns that were dropped, characters that count as positions though they are no letters, another format or
/// type of sequence than it is read as, and concatenated sequences of different names.
class Notes {
 public:
  void operator()(const Alignment& ali, const BatchState& run);

 private:
  Table<std::string> firstnames_;  // of the first alignment
};
