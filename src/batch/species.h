// Species by name: which row of each alignment of a batch is whose.
// Counting  species 1..size(), rows 1..numseq, alignments from 0 in the order in which they were added
#pragma once
#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "batch/name_keys.h"
#include "ground/table.h"

namespace trimora::rooms {

/// The keys of names.
Table<std::string> keys_of(const Table<std::string>& name, const KeyRule& rule);

/// Fail when the sequences of one alignment cannot be told apart by their keys: unfit_name when one has none, same_name
/// when two sequences have the same. `rule`, by which the keys were found, decides what is advised.
void check_keys(const Table<std::string>& name, const Table<std::string>& keys, const KeyRule& rule = {});

/// The species of a batch in the order in which they first appear.
class Species {
 public:
  /// Take in the next alignment, whose sequences have these keys.
  /// Needs    check_keys() to find nothing in them.
  void add(const Table<std::string>& keys);

  int size() const { return name_.size(); }
  /// How many alignments were added.
  std::size_t genes() const { return rows_.size(); }
  /// How many of them have the species.
  int genes_of(int species) const { return genes_of_[species]; }
  /// The keys, with a line end, as an alignment stores names.
  const Table<std::string>& name() const { return name_; }
  /// The row of a species in an alignment; 0 where it has none.
  int row(std::size_t alignment, int species) const {
    const std::vector<int>& rows = rows_[alignment];
    const auto s = static_cast<std::size_t>(species);
    return s < rows.size() ? rows[s] : 0;
  }

 private:
  Table<std::string> name_;
  Table<int> genes_of_;
  std::unordered_map<std::string, int> number_;
  std::vector<std::vector<int>> rows_;  // of each alignment, by species; species that came later are not in it
};

}  // namespace trimora::rooms
