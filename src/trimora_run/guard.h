// No result is ever written over an input, nor over another result.
#pragma once
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "batch/batch_state.h"
#include "output/forms.h"

namespace trimora::rooms {

/// The files that a run with these settings writes for the alignment `run.fichero1`.
std::vector<std::string> resultsof(const OutputState& run, const Forms& forms, bool columns);

/// The concatenations that it writes behind it, when it is the last one, and their partitions.
std::vector<std::string> concatenationsof(const BatchState& run, const Forms& forms, bool partitions);

/// Two paths with the same last part, whose results would have the same names in one folder.
std::optional<std::pair<std::string, std::string>> samebasename(const std::vector<std::string>& paths);

/// A result that would be written over an input or over another result.
struct Clash {
  std::string result;
  std::string input;  // empty: another result
};

/// The first clash of a run; also through links. Nothing is opened, and an input that is not there cannot be written over.
std::optional<Clash> overwritten(const std::vector<std::string>& results, const std::vector<std::string>& inputs);

}  // namespace trimora::rooms
