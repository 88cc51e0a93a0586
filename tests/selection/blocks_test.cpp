#include "selection/blocks.h"

#include <cmath>
#include <cstring>

#include "selection/reduced_views.h"
#include "support.h"

namespace trimora::rooms {
namespace {

// b1 is 6 and b2 is 8. Columns: F flank and c conserved, each just so; C all but a flank and n all but conserved;
// - gap position.
SelectedBlocks select(int b0, int b3, int b4, char seq_type, const std::string& columns, const std::string& sequence) {
  SelectionState run;
  run.negval = 6;
  run.flankval = 8;
  run.posblen = b0;
  run.negblen = b3;
  run.posblen2 = b4;
  run.seq_type = seq_type;
  PositionScores scores;
  for (const char c : columns) {
    const float limit = c == 'F' || c == 'C' ? 8.0F : 6.0F;
    scores.val.append(c == '-' ? 0.0F : c == 'F' || c == 'c' ? limit : std::nextafter(limit, 0.0F));
  }
  return getpos(scores, alignment({sequence}), run);
}

TEST(Blocks, InitialBlocksAndGapCleaning) {
  // clang-format off
  const struct { const char* name; int b0, b3, b4; const char* columns; const char* blocks; } cases[] = {
    // name                            b0 b3 b4 columns        blocks
    {"begins_at_first_flank",           2, 2, 2, "cCFcFF",      "..####"},
    {"end_is_cut_to_a_flank",           2, 2, 2, "FFcC",        "##.."},
    {"end_before_a_run_is_cut_too",     2, 2, 2, "FFcnnnFF",    "##....##"},
    {"run_of_b3_stays",                 2, 2, 2, "FFnnFF",      "######"},
    {"run_of_b3_plus_1_ends",           2, 2, 2, "FFnnnFF",     "##...##"},
    {"conserved_resets_the_run",        2, 2, 2, "FFnncnnFF",   "#########"},
    {"no_run_allowed",                  2, 0, 2, "FFnFF",       "##.##"},
    {"initial_block_of_b0_minus_1",     3, 2, 2, "FFnnnFFF",    ".....###"},
    {"gap_splits_at_conserved",         2, 2, 2, "FFc-cFF",     "###.###"},
    {"gap_walks_pass_nonconserved",     2, 3, 2, "FFn-nFF",     "##...##"},
    {"gaps_in_a_row",                   2, 2, 2, "FF--FF",      "##..##"},
    {"gap_behind_what_the_walk_passed", 2, 4, 2, "FF-n-FF",     "##...##"},
    {"gap_counts_as_nonconserved",      5, 1, 2, "FF-nFF",      "......"},
    {"b0_counts_before_gap_cleaning",   6, 2, 2, "FF-nFF",      "##..##"},
    {"middle_part_needs_no_flank",      2, 2, 2, "FF-cc-FF",    "##.##.##"},
    {"middle_part_below_b4",            2, 2, 3, "FFF-cc-FFF",  "###....###"},
    {"first_part_below_b4",             2, 2, 3, "FF-FFF",      "...###"},
    {"last_part_below_b4",              2, 2, 3, "FFF-FF",      "###..."},
    {"two_initial_blocks_with_gaps",    2, 1, 2, "FF-FFnnFF-FF", "##.##..##.##"},
  };
  // clang-format on
  for (const auto& c : cases) {
    const int nupo = static_cast<int>(std::strlen(c.columns));
    const Table<char> lettrimora = makelettrimora(select(c.b0, c.b3, c.b4, 'P', c.columns, c.columns), nupo);
    EXPECT_EQ(std::string(&lettrimora[1], std::strlen(c.columns)), c.blocks) << c.name;
  }
}

TEST(Blocks, CodonsShrinkToWholeOnes) {
  const char* const cases[][2] = {
      {"FFFFFF", "1..6 "}, {"nFFFFF", "4..6 "},    {"nnFFFF", "4..6 "},   {"FFFF", "1..3 "},
      {"FFFFF", "1..3 "},  {"nFFFFFFFF", "4..9 "}, {"nnnnnFFn", "7..6 "},  // nothing is left, and still counts as a block
  };
  for (const auto& [columns, blocks] : cases) EXPECT_EQ(listed(select(2, 0, 2, 'C', columns, columns).newpos), blocks);
  EXPECT_EQ(listed(select(2, 0, 2, 'D', "nFFFFF", "AAAAAA").newpos), "2..6 ");
}

TEST(Blocks, CountedOnTheFirstSequence) {
  const char* const cases[][3] = {
      {"nFFFnnFF", "AAAAAAAA", "2..4 7..8 "},
      {"nFFFnnFF", "-AAAA-AA", "1..3 5..6 "},
      {"nFFFnnFF", "AA--A-AA", "2..4 6..7 "},  // gaps inside a block are not taken off, neither there nor behind
      {"nFFFnnFF", "------AA", "1..3 4..5 "},
  };
  for (const auto& [columns, sequence, newposseq] : cases) {
    EXPECT_EQ(listed(select(2, 1, 2, 'P', columns, sequence).newposseq), newposseq);
  }
}

TEST(Ungap, KeepsPositionsWithoutAnyGap) {
  const std::string wide(5000, 'A');  // more than is looked at in one piece
  std::string holed = wide;
  holed[4095] = holed[4096] = '-';
  EXPECT_EQ(listed(ungap(alignment({wide, holed})).newlet), "1..4095 4098..5000 ");
  EXPECT_EQ(listed(ungap(alignment({"-?XDE-", "A~*-EF"})).newlet), "2..3 5..5 ");  // other signs are no gaps
  EXPECT_EQ(listed(ungap(alignment({"-A", "A-"})).newlet), "");
}

}  // namespace
}  // namespace trimora::rooms
