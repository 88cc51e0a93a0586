// The run driver: carries one alignment, or every alignment of a paths file, from loading to its files.
#pragma once
#include <optional>

#include "input/alignment.h"
#include "trimora/run_state.h"

namespace trimora::rooms {

/// Recognise and load `run.filename`, report what was found, and derive b1 and b2 from it. A paths file switches the
/// concatenations off.
/// Returns  the alignment, or the first one of a paths file; nothing, with `filename` empty, if it cannot be opened.
std::optional<Alignment> openfile(RunState& run);

/// Make one run. `loaded` is the first alignment when it has just been read: a command-line run takes it as it is. From
/// the menus each run reads its file again, since it may have been edited in between.
/// In a batch the run leaves in `run` the path of the last alignment and, as long as they are not fixed, its b1 and b2.
void calculate(BatchState& run, std::optional<Alignment> loaded);

}  // namespace trimora::rooms
