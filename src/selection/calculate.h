// The run driver: carries one alignment, or every alignment of a paths file, from loading to its files.
#pragma once
#include <optional>

#include "driver/run_state.h"
#include "input/alignment.h"
#include "selection/blocks.h"
#include "selection/reduced_views.h"
#include "selection/scores.h"

/// Recognise and load `run.filename`, say what was found, and derive b1 and b2 from it. A paths file switches the
/// concatenations off.
/// Returns  the alignment, or the first one of a paths file; nothing, with `filename` empty, if it cannot be opened.
std::optional<Alignment> openfile(RunState& run);

/// Make one run. `loaded` is the first alignment when it has just been read: a command-line run takes it as it is. From
/// the menus each run reads its file again, since it may have been edited in between.
/// In a batch the run leaves in `run` the path of the last alignment and, as long as they are not fixed, its b1 and b2.
void calculate(BatchState& run, std::optional<Alignment> loaded);

// The steps of a run that trimora-run, which goes its own way in between, takes as well.

/// What a run finds in one alignment.
struct Selection {
  PositionScores scores;
  SelectedBlocks blocks;
  Ungapped ungapped;  // only when a file or a concatenation is made of it
};

/// Take `ali` as the alignment in work, the first of the run or a later one: in a batch b1 and b2 are derived from it,
/// unless they are fixed. `reference` is the number of sequences of the first one, which this sets.
/// Fails through errfunc() when the parameters are fixed and the number of sequences is another one.
void take(const Alignment& ali, bool first, int& reference, BatchState& run);

/// Score the positions of `ali` and select its blocks, and print its name and its summary.
Selection findblocks(const Alignment& ali, const BatchState& run);

/// Write the files of one alignment that `run` asks for.
void savefiles(const Alignment& ali, const Selection& found, const OutputState& run);
