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

/// What is concatenated.
enum class Joined {
  blocks,    // the selected blocks
  input,     // the alignments as they were read
  ungapped,  // their positions without any gap
  codons,    // the codons of the selected blocks of proteins
};

class Supermatrix {
 public:
  struct Choice {
    std::array<bool, 4> joined = {};  // which of the four
    bool by_name = false;             // match sequences by name, not by their order
  };
  explicit Supermatrix(const Choice& choice) : choice_(choice) {}

  bool wanted() const { return choice_.joined[0] || choice_.joined[1] || choice_.joined[2] || choice_.joined[3]; }
  bool wanted(Joined joined) const { return choice_.joined[static_cast<std::size_t>(joined)]; }

  /// Append an alignment; `path` names its partition, `keys` tell its species where sequences are matched by name,
  /// `seq_type` is the type of its sequences, `codons` are those of its blocks.
  /// When memory runs out in the middle of one, nothing is appended after it.
  void add(const std::string& path, const Alignment& ali, const Table<std::string>& keys, const Selection& found,
           char seq_type, const Alignment& codons = {});
  /// Whether each alignment was taken in whole.
  bool whole() const { return whole_; }
  /// How many alignments were appended.
  int size() const { return size_; }

  /// The species of all of them, where sequences are matched by name.
  const Species& species() const { return species_; }
  /// How its sequences are called, in the order in which they first appear; as stored, with line ends.
  const Table<std::string>& name() const { return choice_.by_name ? species_.name() : last_names_; }
  /// The row of the sequence `i` in an alignment; 0 where it has none.
  int row(std::size_t alignment, int i) const { return choice_.by_name ? species_.row(alignment, i) : i; }

  /// One of the four with the sequences of `chosen`, called `name`, ready to be written. It lives as long as they do.
  Sheet sheet(Joined joined, const std::vector<int>& chosen, const Table<std::string>& name) const;
  const Partitions& partitions(Joined joined) const { return partitions_[static_cast<std::size_t>(joined)]; }
  long long columns(Joined joined) const { return parts_[static_cast<std::size_t>(joined)].columns(); }

 private:
  Choice choice_;
  bool whole_ = true;
  int size_ = 0;
  bool has_t_ = false, has_u_ = false;  // among the letters of nucleotides
  std::array<Concatenation, 4> parts_ = {Concatenation("letall"), Concatenation("letall_init"),
                                         Concatenation("newletall"), Concatenation("codons")};
  std::array<Partitions, 4> partitions_;
  PartitionNames partition_names_;
  Table<std::string> last_names_;  // in the last alignment, for those that are matched by order
  Species species_;                // in all of them, where sequences are matched by name
};

}  // namespace trimora::rooms
