#include "selection/scores.h"

#include <cmath>

#include "selection/similarity_matrix.h"
#include "support.h"

namespace trimora::rooms {
namespace {

SelectionState parameters(int numseq, char seq_type, int b5, int b6) {
  SelectionState run;
  run.numseq = numseq;
  derive_defaults(run);
  run.negval = numseq;  // b1 decides on conserved positions, not on scores
  run.seq_type = seq_type;
  run.tog_gaps = b5;
  run.tog_sim = b6;
  return run;
}

using Letters = std::string;

TEST(Scores, OfOneColumn) {
  // clang-format off
  const struct { const char* name; char seq_type; int b5, b6; std::string column; float val; char val_aa; } cases[] = {
    // name                          type b5 b6 column                              score                residue
    {"tie_goes_to_first_in_alphabet", 'P', 1, 0, "SSSSAAAA",                         4,                   'A'},
    {"T_stands_before_D",             'P', 1, 0, "DDTT",                             2,                   'T'},
    {"lower_case_counts",             'P', 1, 0, "aAcyY",                            2,                   'A'},
    {"others_count_nowhere",          'P', 1, 0, "X?X*XBZJUUA",                      1,                   'A'},
    {"none_one_gap",                  'P', 1, 0, "AAA-",                             0,                   '?'},
    {"half_5_of_10_gaps",             'P', 2, 0, "AAAAC-----",                       4,                   'A'},
    {"half_6_of_10_gaps",             'P', 2, 0, "AAAA------",                       0,                   '?'},
    {"half_3_of_5_gaps",              'P', 2, 0, "AA---",                            0,                   '?'},
    {"all_gaps_allowed",              'P', 3, 0, "A-----",                           1,                   'A'},
    {"matrix_row_A",                  'P', 1, 1, "SAASASA",                          4 + 3 * 0.2712F,     'A'},
    {"matrix_row_S",                  'P', 1, 1, "ASSASAS",                          4 + 3 * 0.2667F,     'S'},
    {"matrix_needs_more_than_half",   'P', 1, 1, "SSSSAAAA",                         4,                   'A'},
    {"matrix_from_half_plus_1",       'P', 1, 1, "IIIIIVVV",                         5 + 3 * 0.5833F,     'I'},
    {"matrix_for_proteins_alone",     'D', 1, 1, "AAAATTT",                          4,                   'A'},
    {"dna_U_before_A",                'D', 1, 1, "AAUU",                             2,                   'U'},
    {"codons_as_dna",                 'C', 1, 1, "TTGgg",                            3,                   'G'},
    {"sum_rounded_up_to_70",          'P', 1, 1, Letters(61, 'H') + Letters(20, 'Q') + Letters(25, 'Y'), 70,       'H'},
    {"sum_rounded_up_to_9",           'P', 1, 1, "KKKKKKKKEEEENQ",                   9,                   'K'},
    {"more_than_8_bits",              'P', 1, 0, Letters(700, 'W') + Letters(300, 'Y'),    700,                 'W'},
    {"gaps_of_more_than_8_bits",      'D', 1, 0, Letters(700, 'A') + Letters(512, '-'),    0,                   '?'},
  };
  // clang-format on
  for (const auto& c : cases) {
    std::vector<std::string> rows;
    for (const char letter : c.column) rows.emplace_back(1, letter);
    const auto numseq = static_cast<int>(rows.size());
    const PositionScores scores = assignval(alignment(rows), parameters(numseq, c.seq_type, c.b5, c.b6));
    EXPECT_EQ(scores.val[1], c.val) << c.name;
    EXPECT_EQ(scores.val_aa[1], c.val_aa) << c.name;
  }
}

// Each position of a wide alignment has a residue and a score of its own.
TEST(Scores, OfManyPositions) {
  constexpr char residues[] = "ACGTDEFHIKLMNPQRSVWY";
  constexpr int nupo = 2500, numseq = 21;
  std::vector<std::string> rows(numseq);
  for (int p = 1; p <= nupo; ++p) {
    for (int i = 1; i <= numseq; ++i) rows[static_cast<std::size_t>(i) - 1] += i <= p % 19 ? '?' : residues[p % 20];
  }
  const PositionScores scores = assignval(alignment(rows), parameters(numseq, 'P', 1, 0));
  ASSERT_EQ(scores.val.size(), nupo);
  for (int p = 1; p <= nupo; ++p) {
    ASSERT_EQ(scores.val[p], static_cast<float>(numseq - p % 19)) << p;
    ASSERT_EQ(scores.val_aa[p], residues[p % 20]) << p;
  }
}

// More positions than a tile, with more and fewer gaps than each b5 allows, and residues of equal number.
TEST(Scores, FollowFromCountsForEveryB5AndB6) {
  constexpr int nupo = 1500;
  for (const char type : {'P', 'D'}) {
    for (const int numseq : {2, 7, 24}) {
      std::vector<std::string> rows(static_cast<std::size_t>(numseq));
      for (unsigned p = 0, state = 1; p < nupo; ++p) {
        for (std::string& row : rows) {
          state = state * 1664525U + 1013904223U;
          row += (state >> 16U) % 24 < p % 25 ? "ILVMa-?U"[(state >> 8U) % 8] : 'I';
        }
      }
      const Alignment ali = alignment(rows);
      const PositionCounts counts = count_positions(ali, parameters(numseq, type, no_gaps, 0));
      for (const int b5 : {no_gaps, with_half, all_gaps}) {
        for (const int b6 : {0, 1}) {
          const SelectionState run = parameters(numseq, type, b5, b6);
          const PositionScores scores = assignval(ali, run), same = scores_of(counts, run);
          for (int p = 1; p <= nupo; ++p) {
            ASSERT_EQ(same.val[p], scores.val[p]) << type << numseq << b5 << b6 << ' ' << p;
            ASSERT_EQ(same.val_aa[p], scores.val_aa[p]) << type << numseq << b5 << b6 << ' ' << p;
          }
        }
      }
    }
  }
}

// In ten-thousandths, each weight times a number of its own: a slip of the pen in one of them shows.
TEST(Scores, WeightedSumOfTheMatrix) {
  long sum = 0;
  for (int k = 0; k < 400; ++k) sum += (k + 1) * std::lround(similarity[k / 20][k % 20] * 10000);
  EXPECT_EQ(sum, 72339190);
}

}  // namespace
}  // namespace trimora::rooms
