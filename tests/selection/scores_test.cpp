#include "selection/scores.h"

#include <string>

#include "selection/similarity_matrix.h"
#include "support.h"

namespace {

SelectionState parameters(int numseq, char seq_type, int b5, int b6) {
  SelectionState run;
  run.numseq = numseq;
  derivedefaults(run);
  run.seq_type = seq_type;
  run.tog_gaps = b5;
  run.tog_sim = b6;
  return run;
}

std::string many(std::size_t count, char c) {
  return std::string(count, c);
}

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
    {"sum_rounded_up_to_70",          'P', 1, 1, many(61, 'H') + many(20, 'Q') + many(25, 'Y'), 70,       'H'},
    {"sum_rounded_up_to_9",           'P', 1, 1, "KKKKKKKKEEEENQ",                   9,                   'K'},
    {"more_than_8_bits",              'P', 1, 0, many(700, 'W') + many(300, 'Y'),    700,                 'W'},
    {"gaps_of_more_than_8_bits",      'D', 1, 0, many(700, 'A') + many(512, '-'),    0,                   '?'},
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
  constexpr int nupo = 2500;
  constexpr int numseq = 21;
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

// In ten-thousandths, without the diagonal: a slip of the pen in one weight shows in its row and in its column.
TEST(Scores, SumsOfTheMatrix) {
  // clang-format off
  const int rows[] = {3051, 0, 0, 4376, 7561, 9861, 10588, 5182, 13750, 10435, 13637, 8843, 7000, 0, 10810, 6265, 8667, 10000, 3615, 10270};
  const int columns[] = {2980, 0, 0, 4672, 8246, 9240, 10013, 6389, 13757, 9193, 10939, 11796, 6971, 0, 10091, 7379, 8025, 8856, 5620, 9744};
  // clang-format on
  for (int r = 0; r < 20; ++r) {
    float row = -1;
    float column = -1;
    for (int k = 0; k < 20; ++k) {
      row += similarity[r][k];
      column += similarity[k][r];
    }
    EXPECT_NEAR(row * 10000, rows[r], 0.1F) << r;
    EXPECT_NEAR(column * 10000, columns[r], 0.1F) << r;
  }
}

}  // namespace
