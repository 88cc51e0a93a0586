// Genetic codes, and the codons that go below the residues of a protein.
#include "batch/codons.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ground/failure.h"

namespace trimora::rooms {
namespace {

// As NCBI lists them, in the order of TCAG.
TEST(GeneticCode, ResiduesOfEachCodon) {
  const std::pair<int, std::string> codes[] = {
      {1, "FFLLSSSSYY**CC*WLLLLPPPPHHQQRRRRIIIMTTTTNNKKSSRRVVVVAAAADDEEGGGG"},
      {2, "FFLLSSSSYY**CCWWLLLLPPPPHHQQRRRRIIMMTTTTNNKKSS**VVVVAAAADDEEGGGG"},
      {3, "FFLLSSSSYY**CCWWTTTTPPPPHHQQRRRRIIMMTTTTNNKKSSRRVVVVAAAADDEEGGGG"},
      {4, "FFLLSSSSYY**CCWWLLLLPPPPHHQQRRRRIIIMTTTTNNKKSSRRVVVVAAAADDEEGGGG"},
      {5, "FFLLSSSSYY**CCWWLLLLPPPPHHQQRRRRIIMMTTTTNNKKSSSSVVVVAAAADDEEGGGG"},
      {6, "FFLLSSSSYYQQCC*WLLLLPPPPHHQQRRRRIIIMTTTTNNKKSSRRVVVVAAAADDEEGGGG"},
      {9, "FFLLSSSSYY**CCWWLLLLPPPPHHQQRRRRIIIMTTTTNNNKSSSSVVVVAAAADDEEGGGG"},
      {10, "FFLLSSSSYY**CCCWLLLLPPPPHHQQRRRRIIIMTTTTNNKKSSRRVVVVAAAADDEEGGGG"},
      {11, "FFLLSSSSYY**CC*WLLLLPPPPHHQQRRRRIIIMTTTTNNKKSSRRVVVVAAAADDEEGGGG"},
      {12, "FFLLSSSSYY**CC*WLLLSPPPPHHQQRRRRIIIMTTTTNNKKSSRRVVVVAAAADDEEGGGG"},
      {13, "FFLLSSSSYY**CCWWLLLLPPPPHHQQRRRRIIMMTTTTNNKKSSGGVVVVAAAADDEEGGGG"},
      {14, "FFLLSSSSYYY*CCWWLLLLPPPPHHQQRRRRIIIMTTTTNNNKSSSSVVVVAAAADDEEGGGG"},
      {15, "FFLLSSSSYY*QCC*WLLLLPPPPHHQQRRRRIIIMTTTTNNKKSSRRVVVVAAAADDEEGGGG"},
      {16, "FFLLSSSSYY*LCC*WLLLLPPPPHHQQRRRRIIIMTTTTNNKKSSRRVVVVAAAADDEEGGGG"},
      {21, "FFLLSSSSYY**CCWWLLLLPPPPHHQQRRRRIIMMTTTTNNNKSSSSVVVVAAAADDEEGGGG"},
      {22, "FFLLSS*SYY*LCC*WLLLLPPPPHHQQRRRRIIIMTTTTNNKKSSRRVVVVAAAADDEEGGGG"},
      {23, "FF*LSSSSYY**CC*WLLLLPPPPHHQQRRRRIIIMTTTTNNKKSSRRVVVVAAAADDEEGGGG"},
      {24, "FFLLSSSSYY**CCWWLLLLPPPPHHQQRRRRIIIMTTTTNNKKSSSKVVVVAAAADDEEGGGG"},
      {25, "FFLLSSSSYY**CCGWLLLLPPPPHHQQRRRRIIIMTTTTNNKKSSRRVVVVAAAADDEEGGGG"},
      {26, "FFLLSSSSYY**CC*WLLLAPPPPHHQQRRRRIIIMTTTTNNKKSSRRVVVVAAAADDEEGGGG"},
      {27, "FFLLSSSSYYQQCCWWLLLLPPPPHHQQRRRRIIIMTTTTNNKKSSRRVVVVAAAADDEEGGGG"},
      {28, "FFLLSSSSYYQQCCWWLLLLPPPPHHQQRRRRIIIMTTTTNNKKSSRRVVVVAAAADDEEGGGG"},
      {29, "FFLLSSSSYYYYCC*WLLLLPPPPHHQQRRRRIIIMTTTTNNKKSSRRVVVVAAAADDEEGGGG"},
      {30, "FFLLSSSSYYEECC*WLLLLPPPPHHQQRRRRIIIMTTTTNNKKSSRRVVVVAAAADDEEGGGG"},
      {31, "FFLLSSSSYYEECCWWLLLLPPPPHHQQRRRRIIIMTTTTNNKKSSRRVVVVAAAADDEEGGGG"},
      {32, "FFLLSSSSYY*WCC*WLLLLPPPPHHQQRRRRIIIMTTTTNNKKSSRRVVVVAAAADDEEGGGG"},
      {33, "FFLLSSSSYYY*CCWWLLLLPPPPHHQQRRRRIIIMTTTTNNKKSSSKVVVVAAAADDEEGGGG"},
  };
  for (const auto& [number, residues] : codes) {
    const GeneticCode code = *GeneticCode::numbered(number);
    for (std::size_t n = 0; n < residues.size(); ++n) {
      const std::string letters = "TCAG";
      const std::string codon = {letters[n / 16], letters[n / 4 % 4], letters[n % 4]};
      EXPECT_EQ(code.stops(codon), residues[n] == '*') << number << codon;
      EXPECT_TRUE(residues[n] == '*' || code.encodes(codon, residues[n])) << number << codon;
    }
  }
  for (const int none : {0, 7, 8, 17, 20, 34}) EXPECT_FALSE(GeneticCode::numbered(none)) << none;
}

TEST(Codons, BelowTheResidues) {
  const struct {
    const char* name;
    const char *row, *coding, *outcome;
    int code = 1;
  } cases[] = {
      {"gaps", "K-L", "AAACTG", "AAA---CTG"},
      {"stop_inside_and_at_the_end", "K*L", "AAATAACTGTGA", "AAANNNCTG 1 inside, end"},
      {"code_that_also_stops", "KW", "AAATGATGA", "AAATGA end", 27},
      {"one_or_two_left_over", "KL", "AAACTGTGAAC", "AAACTG end 2 left"},
      {"ambiguous", "KBZJX", "AARRAYSARHTARNN", "AARRAYSARHTARNN"},
      {"selenocysteine", "KU", "AAATGAAAA",
       "! its 2 residues leave 3 nucleotides of its coding sequence, from nucleotide 7 on"},
      {"selenocysteine_last", "KU", "AAATGA", "AAANNN 1 inside"},
      {"start", "MM", "CTGATG", "CTGATG"},
      {"start_elsewhere", "MM", "ATGCTG", "! residue 2, M, is not encoded by its codon, CTG, at nucleotide 4"},
      {"second_frame", "KL", "GAAACTG", "AAACTG from 2"},
      {"third_frame", "KL", "GGAAACTGA", "AAACTG from 3 1 left"},
      {"two_frames_fit", "L", "ACTTA", "! residue 1, L, is not encoded by its codon, ACT, at nucleotide 1"},
      {"too_short", "KLK", "AAACTG",
       "! residue 3, K, has no codon: its coding sequence ends before it, after 6 nucleotides"},
      {"too_long", "K", "AAACTG", "! its 1 residues leave 3 nucleotides of its coding sequence, from nucleotide 4 on"},
  };
  for (const auto& c : cases) {
    std::string found;
    try {
      const Backtranslated made = backtranslate(c.row, c.coding, *GeneticCode::numbered(c.code));
      found = made.codons;
      if (made.begins > 1) found += " from " + std::to_string(made.begins);
      if (made.stops > 0) found += " " + std::to_string(made.stops) + " inside";
      if (made.final_stop) found += made.stops > 0 ? ", end" : " end";
      if (made.left_over > 0) found += " " + std::to_string(made.left_over) + " left";
    } catch (const Failure& failure) {
      found = "! " + words(failure);
    }
    EXPECT_EQ(found, c.outcome) << c.name;
  }
  EXPECT_EQ(nucleotides_of("aCgU-u N*\t?1"), "aCgTtN??");
}

// By whole names, where each has one; else by keys, which are one letter here.
TEST(Codons, MatchedByName) {
  const std::vector<std::string> coding = {"a 1", "b 1", "b 2", "c", "c 2"}, keys = {"a", "b", "b", "c", "d"};
  EXPECT_EQ(match_by_name({"a 1", "a", "b 2", "b", "x", "d"}, {"a", "a", "b", "b", "x", "d"}, coding, keys),
            (std::vector<int>{0, 0, 2, -1, -1, 4}));
}

}  // namespace
}  // namespace trimora::rooms
