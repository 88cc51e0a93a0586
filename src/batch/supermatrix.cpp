#include "batch/supermatrix.h"

#include <algorithm>
#include <cstddef>

namespace trimora::rooms {

namespace {

/// Note which of T and U occur.
void look_for(const Alignment& ali, bool& has_t, bool& has_u) {
  for (int i = 1; i <= ali.numseq && !(has_t && has_u); ++i) {
    const std::string_view row(ali.let[i].from(1), static_cast<std::size_t>(ali.nupo));
    has_t = has_t || row.find_first_of("Tt") != row.npos;
    has_u = has_u || row.find_first_of("Uu") != row.npos;
  }
}

}  // namespace

void Supermatrix::add(const std::string& path, const Alignment& ali, const Table<std::string>& keys,
                      const Selection& found, char seq_type, const Alignment& codons) {
  if (!wanted() || !whole_) return;
  whole_ = false;
  const std::string name = partition_names_.take(path);
  const auto append = [&](Joined joined, const std::vector<Stretch>& stretches, const Alignment& from) {
    if (!wanted(joined)) return;
    const auto k = static_cast<std::size_t>(joined);
    parts_[k].append(from, stretches);
    partitions_[k].add(name, stretches);
  };
  append(Joined::blocks, found.blocks.newpos, ali);
  append(Joined::input, {{1, ali.nupo}}, ali);
  append(Joined::ungapped, found.ungapped.newlet, ali);
  append(Joined::codons, {{1, codons.nupo}}, codons);
  if (choice_.by_name) {
    species_.add(keys);
  } else {
    last_names_ = ali.name;
  }
  if (seq_type != 'P') look_for(ali, has_t_, has_u_);
  ++size_;
  whole_ = true;
}

Sheet Supermatrix::sheet(Joined joined, const std::vector<int>& chosen, const Table<std::string>& name) const {
  const Concatenation& all = parts_[static_cast<std::size_t>(joined)];
  const Sheet sheet = {&name, all.columns(), [this, &all, &chosen](int k, const Sheet::Put& put) {
                         const std::string missing(4096, '?');
                         const int i = chosen[static_cast<std::size_t>(k) - 1];
                         std::size_t alignment = 0;
                         for (const Concatenation::Part& part : all.parts()) {
                           const int at = row(alignment, i);
                           ++alignment;
                           if (at > 0) {
                             put(part.rows[at].from(1), part.width);
                             continue;
                           }
                           const auto at_once = static_cast<int>(missing.size());
                           for (int left = part.width; left > 0; left -= at_once) {
                             put(missing.data(), std::min(left, at_once));
                           }
                         }
                       }};
  if (!has_t_ || !has_u_) return sheet;
  LetterMap letters = same_letters();
  letters['U'] = 'T';
  letters['u'] = 't';
  return mapped(sheet, letters);
}

}  // namespace trimora::rooms
