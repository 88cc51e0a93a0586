#include "selection/blocks.h"

#include <algorithm>

#include "ground/failure.h"

namespace trimora::rooms {

namespace {

bool gap_position(const PositionScores& scores, int p) {
  return scores.val[p] == 0;
}

/// Walk right from `start` until negblen + 1 nonconserved positions are in a row.
/// Returns the position that completes such a run, or nupo + 1 when there is none.
int runstop(const PositionScores& scores, int start, int nupo, const SelectionState& run) {
  int nonconserved = 0;  // length of the run that ends at p
  for (int p = start + 1; p <= nupo; ++p) {
    nonconserved = conserved(scores, p, run) ? 0 : nonconserved + 1;
    if (nonconserved > run.negblen) return p;
  }
  return nupo + 1;
}

/// The initial blocks: they begin and end at flanks, hold no long run of nonconserved positions, and are at least
/// posblen long.
std::vector<Stretch> initial_blocks(const PositionScores& scores, int nupo, const SelectionState& run) {
  std::vector<Stretch> pos;
  for (int start = 1; start < nupo; ++start) {  // no block has less than two positions
    if (!flank(scores, start, run)) continue;
    const int stop = runstop(scores, start, nupo, run);
    int end = stop - 1;
    while (!flank(scores, end, run)) --end;  // at the latest the start itself
    if (const Stretch block{start, end}; block.length() >= run.posblen) pos.push_back(block);
    start = stop;  // which is nonconserved, so no flank
  }
  return pos;
}

/// Cut the gap positions out of the initial blocks. The parts end at conserved positions, flanks or not, and are kept
/// when they are at least posblen2 long.
std::vector<Stretch> clean_gaps(const std::vector<Stretch>& pos, const PositionScores& scores,
                                const SelectionState& run) {
  std::vector<Stretch> newpos;
  for (const Stretch& block : pos) {
    Stretch part{block.first, block.last};
    const auto keep = [&](int last) {
      part.last = last;
      if (part.length() >= run.posblen2) newpos.push_back(part);
    };
    for (int p = block.first; p <= block.last; ++p) {
      if (!gap_position(scores, p)) continue;
      int last = p - 1;  // the flanks at both ends of the block stop the walks
      while (!conserved(scores, last, run)) --last;
      keep(last);
      while (!conserved(scores, p, run)) ++p;
      part.first = p;
    }
    keep(block.last);
  }
  return newpos;
}

/// Shrink a block to whole codons: first to a first codon position, last to a third one. What is left may be nothing.
void snap_to_codons(Stretch& block) {
  if (block.first % 3 == 2) block.first += 2;
  if (block.first % 3 == 0) block.first += 1;
  if (block.last % 3 == 1) block.last -= 1;
  if (block.last % 3 == 2) block.last -= 2;
}

/// The blocks counted on the first sequence: less its gaps before the block, but for those inside earlier blocks.
std::vector<Stretch> on_first_sequence(const std::vector<Stretch>& newpos, const Alignment& ali) {
  std::vector<Stretch> newposseq;
  const Row sequence = ali.let[1];
  int gaps = 0;
  int behind = 0;  // end of the block before
  for (const Stretch& block : newpos) {
    for (int p = behind + 1; p < block.first; ++p) gaps += sequence[p] == '-' ? 1 : 0;
    newposseq.push_back({block.first - gaps, block.last - gaps});
    behind = block.last;
  }
  return newposseq;
}

}  // namespace

SelectedBlocks getpos(const PositionScores& scores, const SelectionState& run) {
  const int nupo = scores.val.size();
  SelectedBlocks blocks;
  blocks.pos = allocating("pos", [&] { return initial_blocks(scores, nupo, run); });
  blocks.newpos = allocating("newpos 1", [&] { return clean_gaps(blocks.pos, scores, run); });
  if (run.seq_type == 'C') std::for_each(blocks.newpos.begin(), blocks.newpos.end(), snap_to_codons);
  blocks.nupo3 = total_length(blocks.newpos);
  blocks.nupo3per = static_cast<int>(static_cast<long long>(blocks.nupo3) * 100 / nupo);
  return blocks;
}

SelectedBlocks getpos(const PositionScores& scores, const Alignment& ali, const SelectionState& run) {
  SelectedBlocks blocks = getpos(scores, run);
  blocks.newposseq = allocating("newposseq 5", [&] { return on_first_sequence(blocks.newpos, ali); });
  return blocks;
}

}  // namespace trimora::rooms
