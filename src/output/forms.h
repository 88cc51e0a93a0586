// The forms in which alignment files are written, so that the next program takes them as they are.
// Words     form: the layout of an alignment file | piece: letters that are side by side in memory
// Counting  sequences 1..numseq, widths in positions
#pragma once
#include <array>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "ground/table.h"
#include "input/alignment.h"
#include "input/input_state.h"
#include "output/output_file.h"
#include "trimora/trimora.h"  // Form

namespace trimora::rooms {

using Forms = std::vector<Form>;

/// What follows the usual name of a file: nothing, ".fasta", ".phy" or ".nexus".
std::string_view ending(Form form);

/// The letters of an alignment file before they are laid out. It lives as long as what it was made from.
struct Sheet {
  using Put = std::function<void(const char* text, std::ptrdiff_t count)>;
  const Table<std::string>* name = nullptr;             // [1..numseq] as an alignment stores them, line ends included
  long long width = 0;                                  // letters in each row
  std::function<void(int i, const Put& put)> row = {};  // hands the letters of sequence i to `put`, piece by piece
};

/// The positions of `stretches`.
Sheet sheet_of(const Alignment& ali, const std::vector<Stretch>& stretches);

/// What is written for each character.
using LetterMap = std::array<char, 256>;
LetterMap same_letters();

/// The same sheet with its letters changed.
Sheet mapped(const Sheet& sheet, const LetterMap& letters);

/// Names as a form can hold them.
struct FormNames {
  Table<std::string> name;  // [1..numseq]
  int changed = 0;          // that differ from what they were
};

/// The names for a file in `form`. In PHYLIP and NEXUS a name is its first word or, where that would make two names one,
/// the whole with '_' for blanks, in the whole file. Characters that the form cannot hold become '_'.
/// Fails    same_name when two are still one
FormNames names_for(Form form, const Table<std::string>& name);

/// Write `sheet`. `run` tells the format of the input, for Form::trimora, and the type of its sequences.
/// Needs    names that the form can hold.
void write_form(OutputFile& out, const Sheet& sheet, Form form, const InputState& run);

/// A stored name without its line end and without blanks at either end.
std::string_view plain_name(std::string_view name);

}  // namespace trimora::rooms
