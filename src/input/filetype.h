// What trimora's own readers have to know of a file before they read it: its format and type of sequence, or its paths.
#pragma once
#include <string>

#include "input/input_file.h"
#include "input/input_state.h"

namespace trimora::rooms {

/// Decide format and type of sequence by the first non-empty line of an alignment, or fail: unknown_format, or
/// undecided_type when a NBRF/PIR name line has neither code.
void checkformat(const std::string& line, InputState& run);

/// The path in a line of a paths file.
std::string path_of(const std::string& line);

/// The number of alignments that are processed of a paths file, from its unread part on. Users rely on what follows from
/// how lines are read: the last path counts only with its line end, and without an empty line after it. `line` is what
/// the line buffer held before.
int count_paths(InputFile& paths_file, std::string line);

/// Read the next path of a paths file; empty lines do not count. Returns false, with `path` as it was, at the end.
bool read_path(InputFile& paths_file, std::string& path);

}  // namespace trimora::rooms
