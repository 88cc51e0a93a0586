// The table of columns of an alignment: what became of each column of its file, and why.
#pragma once
#include <string>

#include "output/output_file.h"
#include "output/output_state.h"
#include "selection/selection.h"

namespace trimora::rooms {

/// Its name, beside the other files of the alignment `run.fichero1`.
std::string columns_file(const OutputState& run);

/// Write the table, tab-separated, a header and one line for each column of the file:
///   column    its number in the file, from 1
///   position  its number without the columns that are dropped; empty for those, as is all up to class
///   score     sequences that carry the residue, weighted or not; reads back as the same single-precision number
///   residue   the most frequent one, or ?
///   class     dropped, gap, nonconserved, conserved or flank
///   block     number of the selected block that holds it, from 1, or empty
///   new       its position in the selected blocks, or empty
///   reason    the first rule of the method that removes it, or selected
///   initial   number of the initial block that holds it, from 1, or empty
void write_columns(OutputFile& out, const Alignment& ali, const Selection& found, const SelectionState& run);

/// Write a score, with as few decimals as tell it from every other one, the same on every machine.
/// Needs    room for 16 characters.
/// Returns  the end.
char* put_score(char* to, float score);

}  // namespace trimora::rooms
