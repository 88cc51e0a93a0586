// Rows that come in blocks, as formats that interleave them write: a name and a part of its letters on each line.
#pragma once
#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "input/assembly.h"

namespace trimora::rooms {

class RowBlocks {
 public:
  /// `bytes`: of the whole input, as far as that is known.
  explicit RowBlocks(std::size_t bytes = 0) : bytes_(bytes) {}

  /// The names are known before the first block.
  void announce(std::string_view name);

  /// Where the next letters of the row called `name` go: to a new row in the first block, later to that of this name, the
  /// next one when there are several. Nothing when all names were announced and this is none of them.
  std::string* row(std::string_view name);
  /// The next row in the order of the first block.
  std::string* row();

  /// The first block has ended, if it had any rows, or all names are announced.
  void end_block();

  bool empty() const { return names_.empty(); }
  int numseq() const { return static_cast<int>(names_.size()); }
  const std::string& name(int i) const { return names_[static_cast<std::size_t>(i) - 1]; }
  std::string& letters(int i) { return rows_[static_cast<std::size_t>(i) - 1]; }
  /// The number of the row that was handed out last.
  int last() const { return static_cast<int>(next_); }

  /// Hand the rows over, one after the other; none is left here.
  void move_to(Assembly& assembly);

 private:
  std::string* add(std::string_view name);
  void check_names() const;

  std::vector<std::string> names_;
  std::vector<std::string> rows_;
  std::unordered_map<std::string, std::size_t> first_of_;  // made when a name is not the one that is due
  std::size_t next_ = 0;                                   // the row that is due, from 0
  std::size_t bytes_;
  bool first_block_ = true;
  bool announced_ = false;
};

}  // namespace trimora::rooms
