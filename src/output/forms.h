// The forms in which alignment files are written, so that the next program takes them as they are.
// Words     form: the layout of an alignment file | piece: letters that stand side by side in memory
// Counting  sequences 1..numseq, widths in positions
#pragma once
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "batch/concatenation.h"
#include "ground/table.h"
#include "input/alignment.h"
#include "input/input_state.h"
#include "output/output_file.h"

namespace trimora::rooms {

enum class Form {
  trimora,  // records in groups of ten, in the format of the input
  plain,    // FASTA: sixty letters a line, no blanks, no empty line
  phylip,   // relaxed: one line a sequence, a blank behind its name
  nexus,    // a data block
};
using Forms = std::vector<Form>;

/// The forms that `text` names, with commas between them; none of it when one of them is unknown or named twice.
std::optional<Forms> formsof(std::string_view text);

/// What stands behind the usual name of a file: nothing, ".fasta", ".phy" or ".nexus".
std::string_view ending(Form form);

/// The letters of an alignment file before they are laid out. It lives as long as what it was made from.
struct Sheet {
  using Put = std::function<void(const char* text, std::ptrdiff_t count)>;
  const Table<std::string>* name;                  // [1..numseq] as an alignment stores them, line ends included
  long long width;                                 // letters in each row
  std::function<void(int i, const Put& put)> row;  // hands the letters of sequence i to `put`, piece by piece
};

/// The positions of `stretches`.
Sheet sheetof(const Alignment& ali, const std::vector<Stretch>& stretches);

/// A concatenation whose rows are called `name`. `rowof(alignment, i)` is the row of an alignment, counted from 0, that
/// stands in row i; 0: it has none, and '?' fills its columns.
Sheet sheetof(const Concatenation& all, const Table<std::string>& name,
              std::function<int(std::size_t alignment, int i)> rowof);

/// Write `sheet` in one form. `run` tells the format of the input and the type of its sequences.
void writeform(OutputFile& out, const Sheet& sheet, Form form, const InputState& run);

/// Write it in each of the forms, to the usual name `path` and what stands behind it.
void saveforms(const std::string& path, const Sheet& sheet, const Forms& forms, const InputState& run);

/// The first name that a form cannot hold: readers of that form would stumble over it, cut it or take it for another.
/// Returns  what is wrong with it and what to do, for an alignment in the file `path`; empty when every name can be held.
std::string unfitname(const Table<std::string>& name, const Forms& forms, const std::string& path, int fileformat);

}  // namespace trimora::rooms
