#include "output/columns.h"

#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>
#include <vector>

#include "output/file_names.h"
#include "selection/reasons.h"

namespace trimora::rooms {

namespace {

std::string_view class_of(float score, const SelectionState& run) {
  if (score == 0) return "gap";
  if (score < static_cast<float>(run.negval)) return "nonconserved";
  return score < static_cast<float>(run.flankval) ? "conserved" : "flank";
}

char* put_number(char* to, long long number) {
  return std::to_chars(to, to + 20, number).ptr;
}

/// Finds the stretch that a position is in, for positions that never decrease.
class Counter {
 public:
  explicit Counter(const std::vector<Stretch>& stretches) : stretches_(stretches) {}
  /// The number of the stretch that holds `p`, from 1; 0: none. `p` never decreases.
  int at(long long p) {
    while (next_ < stretches_.size() && p > stretches_[next_].last) ++next_;
    return next_ < stretches_.size() && p >= stretches_[next_].first ? static_cast<int>(next_) + 1 : 0;
  }

 private:
  const std::vector<Stretch>& stretches_;
  std::size_t next_ = 0;
};

}  // namespace

char* put_score(char* to, float score) {
  const auto whole = static_cast<int>(score);
  if (static_cast<float>(whole) == score) return put_number(to, whole);
  static constexpr double scales[] = {1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9};
  const auto value = static_cast<double>(score);
  const float next = std::nextafter(score, std::numeric_limits<float>::infinity());
  const double ulp = static_cast<double>(next) - value;
  int decimals = 1;
  while (decimals < 9 && scales[decimals] * ulp <= 1) ++decimals;  // so many are always enough
  // Fewer are enough if the nearest such number is still read as this score: it differs by less than half an ulp, less
  // a little for those who read it as double precision first. The products are exact, and so are the differences.
  const auto nearest = [&](int k) { return std::llround(value * scales[k]); };
  const auto enough = [&](int k) {
    return std::abs(static_cast<double>(nearest(k)) - value * scales[k]) < 0.4999999 * ulp * scales[k];
  };
  while (decimals > 1 && enough(decimals - 1)) --decimals;
  auto digits = static_cast<std::uint64_t>(nearest(decimals));
  to = put_number(to, whole);
  *to = '.';
  for (int k = decimals; k > 0; --k, digits /= 10) to[k] = static_cast<char>('0' + digits % 10);
  return to + decimals + 1;
}

std::string columns_file(const OutputState& run) {
  return seqfile(run) + ".columns.tsv";
}

void write_columns(OutputFile& out, const Alignment& ali, const Selection& found, const SelectionState& run) {
  out.put("column\tposition\tscore\tresidue\tclass\tblock\tnew\treason\tinitial\n");
  const Table<Verdict> reasons = verdicts(ali, found.scores, found.blocks, run);
  Counter dropped(ali.dropped), inserts(ali.inserts), blocks(found.blocks.newpos), initial(found.blocks.pos);
  const ColumnNumbers numbers(ali);
  const long long columns = static_cast<long long>(ali.nupo) + total_length(ali.dropped);
  int p = 0;
  int selected = 0;
  for (long long column = 1; column <= columns; ++column) {
    char* to = put_number(out.room(128), column);
    const int inserted = inserts.at(column);
    if (dropped.at(column) > 0) {
      out.filled(to);
      out.put("\t\t\t\tdropped\t\t\t");
      out.put(words({inserted > 0 ? Reason::insert : Reason::all_gap, 0}, run, numbers));
      out.put("\t\n");
      continue;
    }
    ++p;
    *to++ = '\t';
    to = put_number(to, p);
    *to++ = '\t';
    to = put_score(to, found.scores.val[p]);
    *to++ = '\t';
    *to++ = found.scores.val_aa[p];
    *to++ = '\t';
    const std::string_view name = class_of(found.scores.val[p], run);
    to += name.copy(to, name.size());
    *to++ = '\t';
    if (const int block = blocks.at(p); block > 0) {
      to = put_number(to, block);
      *to++ = '\t';
      to = put_number(to, ++selected);
    } else {
      *to++ = '\t';
    }
    *to++ = '\t';
    out.filled(to);
    if (reasons[p].reason == Reason::selected) {
      out.put("selected");
    } else {
      out.put(words(reasons[p], run, numbers));
    }
    out.put('\t');
    if (const int number = initial.at(p); number > 0) out.filled(put_number(out.room(20), number));
    out.put('\n');
  }
}

}  // namespace trimora::rooms
