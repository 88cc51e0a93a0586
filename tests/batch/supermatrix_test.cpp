#include "batch/supermatrix.h"

#include <numeric>

#include "batch/name_keys.h"
#include "batch/names.h"
#include "ground/failure.h"
#include "support.h"

namespace trimora::rooms {
namespace {

/// The keys of names, with a rule that ends them at one of `ends`.
Table<std::string> keys(const Table<std::string>& name, const std::string& ends) {
  Table<std::string> all;
  for (int i = 1; i <= name.size(); ++i) all.append(std::string(key_of(name[i], KeyRule{.end = ends})));
  return all;
}

TEST(Species, KeysOfNames) {
  const char* const cases[][3] = {
      {"Mus_musculus gene1\n", "", "Mus_musculus"},
      {"Mus\tgene1\n", "", "Mus"},
      {" Mus \r\n", "", "Mus"},
      {"Mus\n", "|@", "Mus"},
      {"Mus musculus|g1\n", "|@", "Mus_musculus"},
      {"Mus @g1|x\n", "|@", "Mus"},
      {"|Mus\n", "|", ""},
      {"Mus", "", "Mus"},
      {"\n", "", ""},
  };
  for (const auto& [name, ends, key] : cases) EXPECT_EQ(key_of(name, KeyRule{.end = ends}), key) << name;
}

TEST(Species, KeysThatDoNotTellThemApart) {
  const struct {
    std::vector<std::string> name;
    const char *ends, *words;
  } cases[] = {
      {{"a 1\n", "b 1\n"}, "", ""},
      {{"a|1\n", "a|2\n"}, "", ""},
      {{"c\n", "a|1\n", "a|2\n"}, "|", "two sequences are called a, sequences 2 (a|1) and 3 (a|2) "},
      {{"c\n", "|2\n"}, "|", "the name of sequence 2 (|2) does not tell its species"},
  };
  for (const auto& [name, ends, expected] : cases) {
    std::string found;
    try {
      check_keys(names(name), keys(names(name), ends));
    } catch (const Failure& failure) {
      found = words(failure);
    }
    EXPECT_EQ(found.substr(0, std::string_view(expected).size()), expected) << found;
    EXPECT_EQ(found.empty(), *expected == '\0');
  }
}

struct Gene {
  std::vector<std::string> name, rows;
  std::vector<Stretch> blocks;
};

/// A supermatrix of all three kinds.
Supermatrix together(const std::vector<Gene>& genes, bool by_name, char seq_type) {
  Supermatrix all({.joined = {true, true, true}, .by_name = by_name});
  for (const Gene& gene : genes) {
    Alignment ali = alignment(gene.rows);
    ali.name = names(gene.name);
    Selection found;
    found.blocks.newpos = gene.blocks;
    found.ungapped = ungap(ali);
    all.add("gene", ali, keys(ali.name, ""), found, seq_type);
  }
  return all;
}

std::string text(const Supermatrix& all, Joined joined) {
  std::vector<int> chosen(static_cast<std::size_t>(all.name().size()));
  std::iota(chosen.begin(), chosen.end(), 1);
  return written_by([&](OutputFile& out) { write_form(out, all.sheet(joined, chosen, all.name()), Form::phylip, {}); });
}

TEST(Supermatrix, SpeciesAreWhereTheyFirstAppear) {
  const std::vector<Gene> genes = {{{"b x\n", "a y\n"}, {"AAC", "A-D"}, {{1, 1}, {3, 3}}},
                                   {{"c\n", "b\n", "a\n"}, {"CEF", "CEG", "CEH"}, {{1, 1}, {3, 3}}},
                                   {{"d\n", "c\n"}, {"IT", "KU"}, {{1, 1}}}};
  const Supermatrix all = together(genes, true, 'P');
  EXPECT_EQ(text(all, Joined::blocks), "4 5\nb  ACCG?\na  ADCH?\nc  ??CFK\nd  ????I\n");
  EXPECT_EQ(text(all, Joined::input), "4 8\nb  AACCEG??\na  A-DCEH??\nc  ???CEFKU\nd  ??????IT\n");
  EXPECT_EQ(text(all, Joined::ungapped), "4 7\nb  ACCEG??\na  ADCEH??\nc  ??CEFKU\nd  ?????IT\n");
  EXPECT_EQ(
      written_by([&](OutputFile& out) { all.partitions(Joined::ungapped).write_raxml(out, "LG", Division::genes); }),
      "LG, gene = 1-2\nLG, gene_2 = 3-5\nLG, gene_3 = 6-7\n");
}

// The names are those of the last alignment. Where one alignment has T and another one U, all is DNA.
TEST(Supermatrix, ByOrder) {
  std::vector<Gene> genes = {{{"a\n", "b\n"}, {"GGU", "ggu"}, {{1, 3}}}, {{"c\n", "d\n"}, {"AA", "AC"}, {{2, 2}}}};
  EXPECT_EQ(text(together(genes, false, 'D'), Joined::blocks), "2 4\nc  GGUA\nd  gguC\n");
  genes[1].rows[1] = "tC";
  genes[0].rows[0] = "GGG";
  EXPECT_EQ(text(together(genes, false, 'D'), Joined::blocks), "2 4\nc  GGGA\nd  ggtC\n");
  EXPECT_EQ(text(together(genes, false, 'P'), Joined::blocks), "2 4\nc  GGGA\nd  gguC\n");
}

}  // namespace
}  // namespace trimora::rooms
