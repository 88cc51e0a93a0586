// Why a run has failed, in the words of a person who looks at the file.
#pragma once
#include <string>
#include <string_view>

#include "batch/batch_state.h"
#include "ground/failure.h"

namespace trimora::rooms {

/// Why `path` cannot be the input of a run at all, whatever it holds: a folder, a pipe. Empty when it can.
std::string unfit(const std::string& path);

/// Why `path` could not be opened.
std::string whynotopened(const std::string& path);

/// Why `line` of the paths file `list` names no file though something like it is there, or empty.
std::string whynopath(const std::string& line, const std::string& list);

/// What the beginning of a file shows it to be, when it does not begin like an alignment.
std::string whatitis(std::string_view bytes, const std::string& path);

/// What `end` means for the alignment `path`; `first` is the first alignment of the batch. The file is looked at again
/// when it is in no known format. Empty when standard error has told already.
std::string diagnose(const ExecutionTerminated& end, const std::string& path, const std::string& first);

/// A file name as it is typed into a shell: quoted where it has to be, standard input by its name.
std::string typed(const std::string& path);

}  // namespace trimora::rooms
