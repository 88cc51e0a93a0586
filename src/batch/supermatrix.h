// The concatenations of a batch: sequences put together by their order or by their names, and which columns of them are of
// which alignment.
#pragma once
#include "batch/batch_state.h"
#include "batch/concatenation.h"
#include "ground/table.h"
#include "input/alignment.h"
#include "trimora/calculate.h"
#include "trimora_run/arguments.h"
#include "output/forms.h"
#include "trimora_run/messages.h"
#include "batch/partitions.h"
#include "batch/species.h"

namespace trimora::rooms {

class Supermatrix {
 public:
  /// Of the arguments, how sequences are matched and what the partitions are.
  explicit Supermatrix(const Arguments& arguments) : arguments_(arguments), species_(arguments.nameend) {}

  /// Start the concatenations that `run` asks for.
  void start(const BatchState& run) { all_ = allalloc(run); }
  bool wanted() const { return all_.letall || all_.letall_init || all_.newletall; }

  /// Append the alignment in work, `run.fichero1`. Nothing follows one that was taken in by halves.
  void add(const Alignment& ali, const Selection& found, const BatchState& run);
  /// Whether each alignment was taken in whole: not when memory has run out in the middle of one.
  bool whole() const { return whole_; }

  /// Write the files of the concatenations, in each of `forms`, and print the length of the concatenated blocks.
  /// `files` tells where they stand.
  void save(const Forms& forms, const BatchState& files, Messages& messages) const;

 private:
  bool byname() const { return arguments_.match == Match::name; }

  const Arguments& arguments_;
  bool whole_ = true;
  Concatenations all_;
  Table<std::string> lastnames_;  // in the last alignment
  Species species_;               // in all of them, where sequences are matched by name
  PartitionNames partitionnames_;
  Partitions letall_, letall_init_, newletall_;  // of the concatenations of the same names
};

}  // namespace trimora::rooms
