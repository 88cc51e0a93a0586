// Species by name: which row of each alignment of a batch is whose.
// Counting  species 1..size(), rows 1..numseq, alignments from 0 in the order in which they were added
#pragma once
#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "ground/table.h"

namespace trimora::rooms {

/// Fail when the names of one alignment cannot be told apart by their keys: unfit_name when one has none, same_name when
/// two sequences have the same.
void check_keys(const Table<std::string>& name, std::string_view ends);

/// The species of a batch in the order in which they first appear.
class Species {
 public:
  /// `ends` are the characters that end a key; none: blanks do.
  explicit Species(std::string ends) : ends_(std::move(ends)) {}

  /// Take in the next alignment, whose sequences are called `name`.
  /// Needs    check_keys() to find nothing in them.
  void add(const Table<std::string>& name);

  int size() const { return name_.size(); }
  /// The keys, with a line end, as an alignment stores names.
  const Table<std::string>& name() const { return name_; }
  /// The row of a species in an alignment; 0 where it has none.
  int row(std::size_t alignment, int species) const {
    const std::vector<int>& rows = rows_[alignment];
    const auto s = static_cast<std::size_t>(species);
    return s < rows.size() ? rows[s] : 0;
  }

 private:
  std::string ends_;
  Table<std::string> name_;
  std::unordered_map<std::string, int> number_;
  std::vector<std::vector<int>> rows_;  // of each alignment, by species; species that came later are not in it
};

}  // namespace trimora::rooms
