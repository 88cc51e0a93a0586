// Concatenations across the alignments of a batch: sequence i of one alignment after sequence i of the one before.
// Sequences are matched by their order alone, whatever their names; a caller that matches them by name reads the parts.
#pragma once
#include <optional>
#include <string>
#include <vector>

#include "batch/batch_state.h"
#include "ground/table.h"
#include "input/alignment.h"
#include "output/output_file.h"
#include "selection/blocks.h"
#include "selection/reduced_views.h"

namespace trimora::rooms {

/// One concatenation. The part of each alignment is kept as it came, so that adding the next one moves nothing.
class Concatenation {
 public:
  /// `buffer` is the name of its rows in the message when memory runs out.
  explicit Concatenation(const char* buffer) : buffer_(buffer) {}

  /// Append the positions of `stretches` of every sequence.
  void append(const Alignment& ali, const std::vector<Stretch>& stretches);

  /// Write the concatenation as one alignment file, whose sequences are called `name`.
  void write(OutputFile& out, const Table<std::string>& name, const InputState& run) const;

  long long columns() const { return columns_; }

  /// What one alignment has added.
  struct Part {
    Rows rows;
    int width;
  };
  const std::vector<Part>& parts() const { return parts_; }

 private:
  const char* buffer_;
  std::vector<Part> parts_;
  long long columns_ = 0;  // appended so far
};

/// The concatenations of a batch, as far as they are switched on.
struct Concatenations {
  std::optional<Concatenation> letall;       // the selected blocks
  std::optional<Concatenation> letall_init;  // the input alignments as loaded
  std::optional<Concatenation> newletall;    // the ungapped alignments
};

/// Whether the ungapped alignments of the input are to be concatenated.
bool concatenates_ungapped(const BatchState& run);

/// Start the concatenations that `run` asks for: none outside a batch, or while the alignments of a batch may differ in
/// their number of sequences.
Concatenations allalloc(const BatchState& run);

/// Append one alignment to each of them.
void allconcat(Concatenations& all, const Alignment& ali, const SelectedBlocks& blocks, const Ungapped& ungapped);

/// The names of their files, which the last alignment of the run, `run.fichero1`, lends its folder.
std::string allfile(const BatchState& run);
std::string allfile_init(const BatchState& run);
std::string allungfile(const BatchState& run);

}  // namespace trimora::rooms
