// The supermatrix of a batch: sequences put together by their order or by their names, and which columns of it are of
// which alignment.
#pragma once
#include <array>
#include <string>

#include "batch/concatenation.h"
#include "batch/partitions.h"
#include "batch/species.h"
#include "ground/table.h"
#include "input/alignment.h"
#include "output/forms.h"
#include "selection/selection.h"

namespace trimora::rooms {

/// What is put together.
enum class Joined {
  blocks,    // the selected blocks
  input,     // the alignments as they were read
  ungapped,  // their positions without any gap
};

class Supermatrix {
 public:
  struct Choice {
    std::array<bool, 3> joined = {};  // which of the three
    bool by_name = false;             // match sequences by name, not by their order
    std::string name_end = {};        // what ends the name of a species
  };
  explicit Supermatrix(const Choice& choice) : choice_(choice), species_(choice.name_end) {}

  bool wanted() const { return choice_.joined[0] || choice_.joined[1] || choice_.joined[2]; }
  bool wanted(Joined joined) const { return choice_.joined[static_cast<std::size_t>(joined)]; }

  /// Append an alignment; `path` names its partition, `seq_type` is the type of its sequences.
  /// When memory runs out in the middle of one, nothing is appended after it.
  void add(const std::string& path, const Alignment& ali, const Selection& found, char seq_type);
  /// Whether each alignment was taken in whole.
  bool whole() const { return whole_; }
  /// How many alignments were appended.
  int size() const { return size_; }

  /// One of the three, ready to be written. It lives as long as this does.
  Sheet sheet(Joined joined) const;
  const Partitions& partitions(Joined joined) const { return partitions_[static_cast<std::size_t>(joined)]; }
  long long columns(Joined joined) const { return parts_[static_cast<std::size_t>(joined)].columns(); }

 private:
  Choice choice_;
  bool whole_ = true;
  int size_ = 0;
  bool has_t_ = false, has_u_ = false;  // among the letters of nucleotides
  std::array<Concatenation, 3> parts_ = {Concatenation("letall"), Concatenation("letall_init"),
                                         Concatenation("newletall")};
  std::array<Partitions, 3> partitions_;
  PartitionNames partition_names_;
  Table<std::string> last_names_;  // in the last alignment, for those that are matched by order
  Species species_;                // in all of them, where sequences are matched by name
};

}  // namespace trimora::rooms
