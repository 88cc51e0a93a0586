// The run driver: carries one alignment, or every alignment of a paths file, from loading to its files.
#pragma once
#include <functional>
#include <optional>

#include "driver/run_state.h"
#include "input/alignment.h"

/// Recognise and load `run.filename`, say what was found, and derive b1 and b2 from it. A paths file switches the
/// concatenations off.
/// Returns  the alignment, or the first one of a paths file; nothing, with `filename` empty, if it cannot be opened.
std::optional<Alignment> openfile(RunState& run);

/// Make one run. `loaded` is the first alignment when it has just been read: a command-line run takes it as it is. From
/// the menus each run reads its file again, since it may have been edited in between.
/// In a batch the run leaves in `run` the path of the last alignment and, as long as they are not fixed, its b1 and b2.
/// `look` is called with each alignment when it has been loaded.
/// Returns  the number of alignments processed.
using Look = std::function<void(const Alignment&, const BatchState&)>;
int calculate(BatchState& run, std::optional<Alignment> loaded, const Look& look = nullptr);
