#include "input/row_blocks.h"

#include <algorithm>
#include <utility>

#include "ground/failure.h"

namespace trimora::rooms {

std::string* RowBlocks::add(std::string_view name) {
  if (!first_of_.empty()) first_of_.try_emplace(std::string(name), names_.size());
  names_.emplace_back(name);
  next_ = names_.size();
  return &rows_.emplace_back();
}

void RowBlocks::announce(std::string_view name) {
  add(name);
  announced_ = true;
}

std::string* RowBlocks::row(std::string_view name) {
  if (first_block_ && !announced_) return add(name);
  if (next_ == names_.size()) next_ = 0;
  if (names_[next_] != name) {
    if (first_of_.empty()) {
      for (std::size_t k = 0; k < names_.size(); ++k) first_of_.try_emplace(names_[k], k);
    }
    const auto found = first_of_.find(std::string(name));
    if (found == first_of_.end()) return announced_ ? nullptr : add(name);
    next_ = found->second;
  }
  return &rows_[next_++];
}

std::string* RowBlocks::row() {
  if (next_ == names_.size()) next_ = 0;
  return &rows_[next_++];
}

void RowBlocks::end_block() {
  if (!first_block_ || names_.empty()) return;
  first_block_ = false;
  if (!announced_) check_names();
  // Memory that no letter ever touches costs nothing.
  for (std::string& row : rows_) row.reserve(bytes_ / rows_.size());
}

/// Where all names come again in the same order, nobody can tell more sequences from more of the same ones.
void RowBlocks::check_names() const {
  const auto again = std::find(names_.begin() + 1, names_.end(), names_.front());
  const auto period = static_cast<std::size_t>(again - names_.begin());
  if (again == names_.end() || names_.size() % period != 0) return;
  if (!std::equal(again, names_.end(), names_.begin())) return;
  throw Failure{
      .kind = Failure::Kind::ambiguous_format,
      .sequence = static_cast<int>(period) + 1,
      .name = *again,
      .detail = "the same names again without an empty line before them: further sequences, or more of the same"};
}

void RowBlocks::move_to(Assembly& assembly) {
  if (!rows_.empty()) assembly.reserve(rows_.size(), rows_.front().size());
  for (std::size_t k = 0; k < rows_.size(); ++k) {
    assembly.add(std::move(names_[k]), rows_[k]);
    std::string().swap(rows_[k]);  // assigned, it would keep its memory
  }
}

}  // namespace trimora::rooms
