// "Counted from 1": the container for every list with one entry per sequence or position.
#pragma once
#include <cassert>
#include <cstddef>
#include <utility>
#include <vector>

namespace trimora::rooms {

/// Entries 1 to size(); entry 0 exists and is not used. The index is checked in debug builds.
template <typename Entry>
class Table {
 public:
  Table() : entries_(1) {}
  explicit Table(int size, Entry fill = Entry{}) : entries_(static_cast<std::size_t>(size) + 1, fill) {}

  int size() const { return static_cast<int>(entries_.size()) - 1; }
  void reserve(int size) { entries_.reserve(static_cast<std::size_t>(size) + 1); }
  void append(Entry entry) { entries_.push_back(std::move(entry)); }
  /// Append `count` entries from `first` on.
  void append(const Entry* first, int count) { entries_.insert(entries_.end(), first, first + count); }

  Entry& operator[](int index) { return entries_[checked(index)]; }
  const Entry& operator[](int index) const { return entries_[checked(index)]; }

 private:
  std::size_t checked(int index) const {
    assert(index >= 1 && index <= size());
    return static_cast<std::size_t>(index);
  }
  std::vector<Entry> entries_;
};

}  // namespace trimora::rooms
