// What the named file is: an alignment, in which format and of what type of sequence, or a paths file.
#pragma once
#include "input/input_state.h"

namespace trimora::rooms {

/// Find out what `run.filename` is. A paths file is known by its first non-empty line, which names a file that can be
/// opened.
/// A file that cannot be opened is reported, and `filename` is empty afterwards. Fails when the alignment, or the first
/// alignment of a paths file, is in neither format.
void checkfiletype(InputState& run);

}  // namespace trimora::rooms
