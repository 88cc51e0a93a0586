// Why each position is selected or not: the first rule of the method that removes it.
// Words     segment: positions between two runs of more than b3 nonconserved ones, or an end of the alignment
//           initial block: from the first to the last flank of a segment | part: a piece of it between cut gaps
#pragma once
#include <string>

#include "ground/table.h"
#include "selection/blocks.h"

namespace trimora::rooms {

/// In the order of the method: a position that several rules would remove has the first one.
enum class Reason : char {
  selected,
  all_gap,        // dropped, as a gap in every sequence
  insert,         // dropped, as an insert column of its file
  gaps,           // more gaps than b5 allows
  unknown,        // no residue of the alphabet
  before_flanks,  // before the first flank of the alignment, or it has none
  after_flanks,   // after the last one
  long_run,       // in a run of more than b3 nonconserved positions
  cut_back,       // between such a run and the nearest flank of its segment, or in a segment without one
  short_initial,  // in an initial block shorter than b0
  beside_gap,     // nonconserved, beside a gap position that was cut out
  short_part,     // in a part shorter than b4
  codon_frame,    // in a part, outside its whole codons
};

struct Verdict {
  Reason reason = Reason::selected;
  int number = 0;  // gaps: how many; beside_gap: the position of that gap; short_initial, short_part: the length
};

/// The verdict on every position, [1..nupo].
Table<Verdict> verdicts(const Alignment& ali, const PositionScores& scores, const SelectedBlocks& blocks,
                        const SelectionState& run);
/// The same without the letters: `gaps` are those of each position.
Table<Verdict> verdicts(const Table<int>& gaps, const PositionScores& scores, const SelectedBlocks& blocks,
                        const SelectionState& run);

/// A verdict in words, as "too many gaps (3 of 12, b5 allows 0)". `column_of` gives the number that a position is told by.
template <typename ColumnOf>
std::string words(const Verdict& verdict, const SelectionState& run, ColumnOf column_of) {
  const auto number = [](long long value) { return std::to_string(value); };
  const auto positions = [](int count) { return std::to_string(count) + (count == 1 ? " position" : " positions"); };
  switch (verdict.reason) {
    case Reason::selected: return "selected";
    case Reason::all_gap: return "all gap, dropped";
    case Reason::insert: return "insert column";
    case Reason::gaps:
      return "too many gaps (" + number(verdict.number) + " of " + number(run.numseq) + ", b5 allows " +
             number(most_gaps(run)) + ")";
    case Reason::unknown: return "no known residue";
    case Reason::before_flanks: return "before the first flank";
    case Reason::after_flanks: return "after the last flank";
    case Reason::long_run: return "in a run of more than b3 nonconserved positions";
    case Reason::cut_back: return "cut back to the nearest flank beside such a run";
    case Reason::short_initial: return "initial block shorter than b0 (" + positions(verdict.number) + ")";
    case Reason::beside_gap: return "nonconserved beside a cut gap (column " + number(column_of(verdict.number)) + ")";
    case Reason::short_part: return "rest shorter than b4 (" + positions(verdict.number) + ")";
    case Reason::codon_frame: return "codon frame";
  }
  return {};  // no other value is ever made
}

}  // namespace trimora::rooms
