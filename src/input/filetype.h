// What the named file is: an alignment, in which format and of what type of sequence, or a paths file.
#pragma once
#include <optional>
#include <string>
#include <vector>

#include "input/input_file.h"
#include "input/input_state.h"

/// Find out what `run.filename` is. A paths file is known by its first non-empty line, which names a file that can be
/// opened.
/// A file that cannot be opened is reported, and `filename` is empty afterwards. Fails through errfunc() when the
/// alignment, or the first alignment of a paths file, is in neither format.
void checkfiletype(InputState& run);

/// Decide format and type of sequence by the first non-empty line of an alignment, or fail through errfunc().
void checkformat(const std::string& line, InputState& run);

/// The number of alignments that are processed of a paths file, from its unread part on. Users rely on what follows from
/// how lines are read: the last path counts only with its line end, and without an empty line behind it. `line` is what
/// the line buffer held before.
int countpaths(InputFile& pathsfile, std::string line);

/// Read the next path of a paths file; empty lines do not count. Returns false, with `path` as it was, at the end.
bool readpath(InputFile& pathsfile, std::string& path);

/// The paths that the paths file `filename` lists, those that are not processed included; nothing when it cannot be opened.
std::optional<std::vector<std::string>> listedpaths(const std::string& filename);
