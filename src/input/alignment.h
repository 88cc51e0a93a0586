// The alignment as the whole program holds it, and the stretches of positions into which later steps cut it.
// Counting  sequences 1..numseq, positions 1..nupo; a stretch holds both of its ends
#pragma once
#include <cassert>
#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "ground/table.h"
#include "input/input_file.h"
#include "input/input_state.h"

namespace trimora::rooms {

/// Positions first to last, both included; empty when last < first.
struct Stretch {
  int first = 0;
  int last = 0;
  int length() const { return last - first + 1; }
};

/// The positions of all stretches together.
int total_length(const std::vector<Stretch>& stretches);

/// What the stretches leave of 1..nupo, from left to right; none of it is empty.
std::vector<Stretch> complement(const std::vector<Stretch>& stretches, int nupo);

/// The positions that are in both.
std::vector<Stretch> common(const std::vector<Stretch>& a, const std::vector<Stretch>& b);

/// One sequence of the alignment: a view that lives as long as the alignment does.
class Row {
 public:
  Row(const char* first, int nupo) : first_(first), nupo_(nupo) {}
  char operator[](int p) const { return *from(p); }
  /// Pointer to position p; the positions up to nupo follow it. p = nupo + 1 is the end.
  const char* from(int p) const {
    assert(p >= 1 && p <= nupo_ + 1);
    return first_ + (p - 1);
  }

 private:
  const char* first_;          // points to position 1
  [[maybe_unused]] int nupo_;  // for the check alone
};

/// The rows of an alignment, one after another in a single block of memory. Copies share the letters.
class Rows {
 public:
  Rows() = default;
  Rows(std::vector<char> letters, int nupo)
      : letters_(std::make_shared<std::vector<char>>(std::move(letters))), nupo_(nupo) {}
  Row operator[](int i) const { return {letters_->data() + (static_cast<std::size_t>(i) - 1) * width(), nupo_}; }
  /// Keep only the positions of `kept`: in place, or in a copy where others share the letters.
  void keep(const std::vector<Stretch>& kept);

 private:
  std::size_t width() const { return static_cast<std::size_t>(nupo_); }
  std::shared_ptr<std::vector<char>> letters_;  // numseq x nupo
  int nupo_ = 0;
};

/// One alignment. A reader makes it; every later step only reads it.
struct Alignment {
  int numseq = 0;           // sequences, at least 2
  int nupo = 0;             // positions, at least 2; none is a gap in every sequence
  Rows let;                 // let[i][p]: the letter of sequence i at position p, as in the file but for '.' read as '-'
  Table<std::string> name;  // [1..numseq] the rest of the name line as it was read, its line end included
  std::vector<Stretch> dropped;  // columns that were left out, counted as in the file: gaps in every sequence, inserts
  std::vector<Stretch> inserts;  // of these, the insert columns
};

/// An alignment without the columns that are gaps in every sequence and without its insert columns.
/// Fails    too_few_sequences, too_few_positions: below two
Alignment without_gap_columns(Alignment ali);

/// The column of the file that a position is, from 1.
class ColumnNumbers {
 public:
  explicit ColumnNumbers(const Alignment& ali);
  long long operator()(int p) const;

 private:
  std::vector<std::pair<int, long long>> shifts_;  // from this position on, so many columns are left out before it
};

/// Read the alignment `run.fichero1`, whose format is `run.fileformat`, and drop the positions that are gaps in every
/// sequence. Fails on every error in the file, with a Failure: nothing is salvaged.
Alignment load(const InputState& run);
/// The same from a file that is open already, from its unread part on.
Alignment load(InputFile& file, const InputState& run);

/// The readers that load() calls. They return the alignment as it is in the file.
Alignment load_pir(InputFile& file);
Alignment load_fasta(InputFile& file);

/// A stored name without its last character: the line end of its name line or, where a NUL byte cut the line before
/// that, whatever is there. An empty name stays empty.
std::string without_line_end(const std::string& name);

}  // namespace trimora::rooms
