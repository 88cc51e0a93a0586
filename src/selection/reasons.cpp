#include "selection/reasons.h"

#include <algorithm>
#include <vector>

namespace trimora::rooms {

namespace {

/// Give the positions of `stretch` that have no other verdict yet this one.
void give(Table<Verdict>& all, const Stretch& stretch, Reason reason, int number = 0) {
  for (int p = stretch.first; p <= stretch.last; ++p) {
    if (all[p].reason == Reason::selected) all[p] = {reason, number};
  }
}

/// The sequences that have a gap at each position.
Table<int> count_gaps(const Alignment& ali) {
  constexpr int tile = 4096;
  Table<int> all;
  all.reserve(ali.nupo);
  int gaps[tile];
  for (int start = 1; start <= ali.nupo; start += tile) {
    const int width = std::min(tile, ali.nupo - start + 1);
    std::fill_n(gaps, width, 0);
    for (int i = 1; i <= ali.numseq; ++i) {
      const char* text = ali.let[i].from(start);
      for (int c = 0; c < width; ++c) gaps[c] += text[c] == '-' ? 1 : 0;
    }
    all.append(gaps, width);
  }
  return all;
}

/// The positions with score 0: too many gaps, or no residue.
void judge_gaps(Table<Verdict>& all, const Table<int>& gaps, const PositionScores& scores, const SelectionState& run) {
  for (int p = 1; p <= gaps.size(); ++p) {
    if (scores.val[p] != 0) continue;
    all[p] = gaps[p] > most_gaps(run) ? Verdict{Reason::gaps, gaps[p]} : Verdict{Reason::unknown, 0};
  }
}

/// What lies outside the initial blocks, which may be too short.
void judge_segments(Table<Verdict>& all, const PositionScores& scores, int nupo, const SelectionState& run) {
  const auto is_flank = [&](int p) { return flank(scores, p, run); };
  int first_flank = 1, last_flank = nupo;
  while (first_flank <= nupo && !is_flank(first_flank)) ++first_flank;
  give(all, {1, first_flank - 1}, Reason::before_flanks);
  while (last_flank >= first_flank && !is_flank(last_flank)) --last_flank;
  give(all, {last_flank + 1, nupo}, Reason::after_flanks);

  const auto judge_segment = [&](const Stretch& segment) {
    Stretch block = segment;
    while (block.first <= segment.last && !is_flank(block.first)) ++block.first;
    while (block.last > block.first && !is_flank(block.last)) --block.last;
    give(all, {segment.first, block.first - 1}, Reason::cut_back);
    give(all, {block.last + 1, segment.last}, Reason::cut_back);
    if (block.length() < run.posblen) give(all, block, Reason::short_initial, block.length());
  };
  int segment = first_flank;  // where it begins
  for (int p = first_flank; p <= last_flank;) {
    int end = p;
    while (end <= last_flank && !conserved(scores, end, run)) ++end;
    if (end - p > run.negblen) {
      judge_segment({segment, p - 1});
      give(all, {p, end - 1}, Reason::long_run);
      segment = end;
    }
    p = end + 1;
  }
  if (segment <= last_flank) judge_segment({segment, last_flank});
}

/// What is lost when the gap positions are cut out of an initial block.
void judge_parts(Table<Verdict>& all, const Stretch& block, const PositionScores& scores, const SelectionState& run) {
  const auto judge_part = [&](const Stretch& part) {
    if (part.length() < run.posblen2) give(all, part, Reason::short_part, part.length());
  };
  int first = block.first;  // of the part
  int gap = 0;              // the one cut out before p
  for (int p = block.first; p <= block.last; ++p) {
    if (scores.val[p] != 0) continue;
    int last = p - 1;
    while (!conserved(scores, last, run)) --last;
    judge_part({first, last});
    give(all, {last + 1, p - 1}, Reason::beside_gap, p);
    for (gap = p; !conserved(scores, p, run); ++p) {
      if (scores.val[p] == 0) gap = p;
      give(all, {p, p}, Reason::beside_gap, gap);
    }
    first = p;
  }
  judge_part({first, block.last});
}

}  // namespace

Table<Verdict> verdicts(const Table<int>& gaps, const PositionScores& scores, const SelectedBlocks& blocks,
                        const SelectionState& run) {
  const int nupo = gaps.size();
  Table<Verdict> all(nupo);
  judge_gaps(all, gaps, scores, run);
  judge_segments(all, scores, nupo, run);
  for (const Stretch& block : blocks.pos) judge_parts(all, block, scores, run);
  for (const Stretch& left : complement(blocks.newpos, nupo)) give(all, left, Reason::codon_frame);
  return all;
}

Table<Verdict> verdicts(const Alignment& ali, const PositionScores& scores, const SelectedBlocks& blocks,
                        const SelectionState& run) {
  return verdicts(count_gaps(ali), scores, blocks, run);
}

}  // namespace trimora::rooms
