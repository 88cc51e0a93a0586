// What the public header makes of several alignments, and of proteins with their coding sequences.
#include <gtest/gtest.h>
#include <trimora/trimora.h>

#include <string>
#include <vector>

namespace trimora {
namespace {

using Texts = std::vector<std::string>;

/// "name=row name=row", then what else there is to tell.
std::string told(const Alignment& ali) {
  std::string text;
  for (std::size_t k = 0; k < ali.size(); ++k) {
    text += (k > 0 ? " " : "") + std::string(ali.name(k)) + '=' + std::string(ali.row(k));
  }
  return text;
}

/// What `make` returns as text, or the kind of its error.
template <typename Make>
std::string result(Make make) {
  try {
    return make();
  } catch (const Error& error) {
    return name_of(error.kind);
  }
}

TEST(Library, PutsAlignmentsTogether) {
  const Alignment one({"Mus a", "Homo a"}, {"ACGT", "AC-T"}, Kind::dna),
      two({"Pan", "Homo b"}, {"GG", "GA"}, Kind::dna);
  Selection nothing;
  nothing.kind = Kind::dna;
  const struct {
    std::vector<Alignment> all;
    std::string expected;
  } cases[] = {
      {{one, two}, "Mus=ACGT?? Homo=AC-TGA Pan=????GG 0-4 4-6"},
      {{one}, "Mus=ACGT Homo=AC-T 0-4"},
      {{one, trim(one, nothing), two}, "Mus=ACGT?? Homo=AC-TGA Pan=????GG 0-4 4-4 4-6"},
      {{one, Alignment({"Mus", "Pan"}, {"UU", "GU"}, Kind::dna)}, "Mus=ACGTTT Homo=AC-T?? Pan=????GT 0-4 4-6"},
      {{Alignment({"a", "b"}, {"--", "--"}), Alignment({"b", "a"}, {"MK", "ML"}, Kind::protein)},
       "a=--ML b=--MK 0-2 2-4"},
      {{}, "bad_argument"},
      {{Alignment({"a", ""}, {"A", "A"})}, "unfit_name"},
      {{Alignment({"a 1", "a 2"}, {"A", "A"})}, "same_name"},
      {{one, Alignment({"Mus", "Homo"}, {"MK", "ML"}, Kind::protein)}, "contrary_type"},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(result([&] {
                const Supermatrix found = supermatrix(each.all);
                std::string text = told(found.alignment);
                for (const auto& [first, end] : found.parts) {
                  text += ' ' + std::to_string(first) + '-' + std::to_string(end);
                }
                return text;
              }),
              each.expected);
  }
}

TEST(Library, TakesProteinsBackToTheirCodons) {
  const struct {
    const char *protein, *coding, *codons;
    int code = 1;
  } cases[] = {
      {"M-K", "ATGAAA", "ATG---AAA"},
      {"M-K", "AT-GA.AA", "ATG---AAA"},        // its own gaps do not count
      {"MKL", "ATGAAACTGTAA", "ATGAAACTG"},    // a final stop codon
      {"MKL", "ATGAAACTGTAAGC", "ATGAAACTG"},  // and what is left after it
      {"KLW", "GAAACTGTGG", "AAACTGTGG"},      // one frame fits
      {"M*L", "ATGTAACTG", "ATGNNNCTG"},       // a stop codon inside
      {"MWL", "ATATGACTG", "ATATGACTG", 2},
      {"MWL", "ATATGACTG", "other_sequences"},      // under another code
      {"MKL", "GTGAAACTG", "GTGAAACTG", 11},        // another start codon
      {"LML", "CTGGTGCTG", "other_sequences", 11},  // which is none inside
      {"MBX", "atgaaYnnn", "atgaaYnnn"},            // ambiguity codes
      {"MKL", "ATGAAA", "other_sequences"},
      {"MKL", "ATGAAACTGAAACTG", "other_sequences"},
      {"MKL", "ATGAAACTG", "bad_argument", 7},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(
        result([&] {
          const Alignment proteins({"s 1", "t"}, {each.protein, std::string(std::string(each.protein).size(), '-')});
          return std::string(codons(proteins, {"t", "s 2"}, {"", each.coding}, each.code).row(0));
        }),
        each.codons)
        << each.protein << ' ' << each.coding;
  }
  const Alignment one({"s", "t"}, {"M", "-"});
  EXPECT_EQ(result([&] { return told(codons(one, {"x", "t"}, {"ATG", ""})); }), "other_sequences");
  EXPECT_EQ(result([&] { return told(codons(one, {"s", "t"}, {})); }), "bad_argument");
  EXPECT_EQ(codons(one, {"s", "t"}, {"ATG", ""}).kind(), Kind::codons);
}

}  // namespace
}  // namespace trimora
