// The files of one alignment: one table, from which the faces know what will be written, write it, and tell of it.
#pragma once
#include <span>
#include <string>
#include <vector>

#include "output/output_file.h"
#include "output/output_state.h"
#include "selection/selection.h"

namespace trimora::rooms {

struct Result {
  const char* option;  // that asks for it
  bool (*wanted)(const OutputState& run);
  std::string (*path)(const OutputState& run);
  void (*write)(OutputFile& out, const Alignment& ali, const Selection& found, const OutputState& run);
  /// The positions of an alignment file, which can be written in other forms, too; null for the others.
  std::vector<Stretch> (*positions)(const Alignment& ali, const Selection& found);
};

/// In the order in which they are written.
std::span<const Result> results();

}  // namespace trimora::rooms
