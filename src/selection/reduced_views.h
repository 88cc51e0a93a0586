// Two reduced views of an alignment: the map of its selected positions, and the alignment without its gapped positions.
#pragma once
#include <vector>

#include "ground/table.h"
#include "input/alignment.h"
#include "selection/blocks.h"

namespace trimora::rooms {

/// The map of the selected positions: [1..nupo] '#' inside a block, '.' outside.
Table<char> makelettrimora(const SelectedBlocks& blocks, int nupo);

/// The ungapped alignment: a view of the alignment's own rows.
struct Ungapped {
  std::vector<Stretch> newlet;  // the positions without a gap in any sequence, from left to right
  int nupoung = 0;              // how many they are
};

/// Find the positions of `ali` where no sequence has a gap, whatever b5 says of gaps and wherever the blocks lie.
Ungapped ungap(const Alignment& ali);

}  // namespace trimora::rooms
