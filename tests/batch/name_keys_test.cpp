// Rules proposed for names as databases and pipelines write them, and names that look like one another.
#include "batch/name_keys.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "batch/identity.h"
#include "batch/species.h"
#include "output/forms.h"

namespace trimora::rooms {
namespace {

std::string replaced(std::string text, const std::string& from, const std::string& to) {
  for (std::size_t at = 0; (at = text.find(from, at)) != text.npos; at += to.size()) text.replace(at, from.size(), to);
  return text;
}

/// Five genes of six species. In `pattern` {s} is a species with '_', {b} with a blank, {c} its UniProt code, {e} that of
/// Ensembl, {n} a number new in each name, {g} the number of the gene, {v} one of the species.
std::vector<Names> genes_of(const std::string& pattern) {
  const char* const species[][3] = {
      {"Homo_sapiens", "HUMAN", "ENSP"},      {"Pan_troglodytes", "PANTR", "ENSPTRP"},
      {"Macaca_mulatta", "MACMU", "ENSMMUP"}, {"Macaca_fascicularis", "MACFA", "ENSMFAP"},
      {"Mus_musculus", "MOUSE", "ENSMUSP"},   {"Gallus_gallus", "CHICK", "ENSGALP"},
  };
  std::vector<Names> genes(5);
  int number = 10234;
  for (std::size_t g = 0; g < genes.size(); ++g) {
    int v = 0;
    for (const auto& [name, code, ensembl] : species) {
      std::string text = replaced(replaced(pattern, "{s}", name), "{b}", replaced(name, "_", " "));
      text = replaced(replaced(text, "{c}", code), "{e}", ensembl);
      text = replaced(replaced(text, "{n}", std::to_string(number += 7)), "{g}", std::to_string(g + 1));
      genes[g].push_back(replaced(text, "{v}", std::to_string(++v)));
    }
  }
  return genes;
}

TEST(NameKeys, ProposedForTenStylesOfNames) {
  const char* const cases[][2] = {
      {"{s}|gene{g}", "--name-end='|'=Homo_sapiens"},
      {"{s}/1-45{g}", "--name-end='/'=Homo_sapiens"},
      {"{s}@TRINITY_DN{n}_c0_g1_i1", "--name-end='@'=Homo_sapiens"},
      {"{s}_TRINITY_DN{n}_c0_g1_i1", "--name-parts=1-2=Homo_sapiens"},
      {"uce-{g}_{s}", "--name-begin='_'=Homo_sapiens"},
      {"uce-{g}_{s} |uce-{g}", "--name-begin='_'=Homo_sapiens"},
      {"{s}|100{g}at7742|NC_0{n}.1:{n}-99999", "--name-end='|'=Homo_sapiens"},
      {"{s}_XP_0{n}.1", "--name-parts=1-2=Homo_sapiens"},
      {"AB{n}.1 {b} cytochrome {g}, partial cds", "--name-parts=2-3=Homo_sapiens"},
      {"XM_0{n}.1 {b} cytochrome {g}, mRNA", "--name-parts=3-4=Homo_sapiens"},
      {"XP_0{n}.1 cytochrome {g} [{b}]", "--name-parts=brackets=Homo_sapiens"},
      {"sp|P{n}|HB{g}_{c} Hemoglobin OS={b} OX=96{v} GN=HB{g} PE=1",
       "--name-parts=OS=Homo_sapiens --name-begin='_'=HUMAN"},
      {"{e}000000{n}.1", "--name-parts=letters=ENSP"},
      {"GB{n}-10|{b}|COI-{g}P|GU{n}", "--name-begin='|' --name-end='|'=Homo_sapiens"},
      {"{s}_V10{v}_gene{g}", "--name-parts=1-3=Homo_sapiens_V101"},  // a voucher is never cut off
      {"S0{v}_gene{g}", "--name-end='_'=S01"},
      {"AB{n}.1", ""},  // names that tell no species
      {"TRINITY_DN{n}_c0_g1_i1", ""},
  };
  for (const auto& [pattern, expected] : cases) {
    std::string found;
    for (const Proposal& each : proposals(genes_of(pattern))) {
      found += (found.empty() ? "" : " ") + options_for(each.rule) + "=" + each.key;
    }
    EXPECT_EQ(found, expected) << pattern;
  }
}

// A third of the species in both of two genes is enough, and the example is a name that changes.
TEST(NameKeys, ProposedWhereFewSpeciesMeet) {
  const std::vector<Proposal> found =
      proposals({{"Gorilla_gorilla", "Homo_sapiens|cox1", "Pan_paniscus|cox1", "Macaca_mulatta|cox1"},
                 {"Homo_sapiens|cytb", "Pan_paniscus|cytb", "Mus_musculus|cytb", "Bos_taurus|cytb"}});
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(options_for(found[0].rule), "--name-end='|'");
  EXPECT_EQ(found[0].name + " as " + found[0].key, "Homo_sapiens|cox1 as Homo_sapiens");
}

// Names of one word and of two: two fields would hold the gene of those of one.
TEST(NameKeys, ProposedForGeneraAndSpeciesTogether) {
  const std::vector<Proposal> found = proposals({{"Gorilla|nd4", "Homo_sapiens|nd4", "Pan|nd4", "Macaca_mulatta|nd4"},
                                                 {"Gorilla|nd5", "Homo_sapiens|nd5", "Pan|nd5", "Macaca_mulatta|nd5"}});
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(options_for(found[0].rule), "--name-end='|'");
}

TEST(NameKeys, ByEachRule) {
  using Style = KeyRule::Style;
  const struct {
    KeyRule rule;
    const char *name, *key;
  } cases[] = {
      {{.style = Style::fields, .first = 2, .last = 3}, "AB_Homo sapiens|x", "Homo_sapiens"},
      {{.style = Style::fields, .first = 1, .last = 1}, "__Homo_sapiens", "Homo"},
      {{.style = Style::fields, .first = 2, .last = 4}, "AB_Homo_sapiens", ""},
      {{.style = Style::organism}, "sp|P1 Hemoglobin OS=Homo sapiens OX=9606", "Homo_sapiens"},
      {{.style = Style::organism}, "OS=Homo sapiens", "Homo_sapiens"},
      {{.style = Style::organism}, "sp|P1 XOS=Homo", ""},
      {{.style = Style::brackets}, "XP_1 cytochrome [Fe] b [Homo sapiens]", "Homo_sapiens"},
      {{.style = Style::brackets}, "XP_1 ]Homo[", ""},
      {{.style = Style::letters}, "ENSP0001.1", "ENSP"},
      {{.style = Style::letters}, "ENS-P0001", ""},
      {{.style = Style::letters}, "Homo", ""},
      {{.begin = "_", .end = "|"}, "x_Homo sapiens |1", "Homo_sapiens"},
      {{.begin = "_"}, "Homo sapiens", "Homo"},
  };
  for (const auto& [rule, name, key] : cases) EXPECT_EQ(key_of(name, rule), key) << name;
}

TEST(NameKeys, NeverCutAnEpithetOff) {
  // Each gene has one species of Macaca, so that Macaca alone would be unique in each.
  const std::vector<Names> genes = {{"Macaca_mulatta_1", "Homo_sapiens_1"},
                                    {"Macaca_fascicularis_2", "Homo_sapiens_2"},
                                    {"Macaca_mulatta_3", "Homo_sapiens_3"}};
  for (const Proposal& each : proposals(genes)) {
    for (const Names& gene : genes) EXPECT_NE(key_of(gene[0], each.rule), "Macaca") << options_for(each.rule);
  }
  EXPECT_EQ(proposals({{"Macaca_mulatta|1", "Homo_erectus|1"}, {"Macaca_fascicularis|2", "Homo_sapiens|2"}}).size(),
            0U);
}

Table<std::string> table(const Names& names) {
  Table<std::string> name;
  for (const std::string& each : names) name.append(each);
  return name;
}

TEST(Identity, NamesThatLookAlike) {
  const Names usual = {"Macaca_mulatta", "Pan", "S01", "Homo_sapiens"};
  const struct {
    const char* what;
    Names third;
    std::string expected;
  } cases[] = {
      {"nothing_unusual", usual, ""},
      {"capitals", {"pan", "S01"}, "pan=Pan "},
      {"signs", {"Pan_", "S01"}, "Pan_=Pan "},
      {"letter_changed", {"Macaca_mulata", "Pan"}, "Macaca_mulata~Macaca_mulatta "},
      {"letters_swapped", {"Homo_sapeins", "Pan"}, "Homo_sapeins~Homo_sapiens "},
      {"genus_abbreviated", {"M.mulatta", "Pan"}, "M.mulatta~Macaca_mulatta "},
      {"other_number", {"S02", "Pan"}, ""},
      {"number_added", {"Macaca_mulatta2", "Pan"}, ""},
      {"number_of_another", {"Homo_sapiens1", "Macaca_mulatta3", "Pan"}, ""},
      {"both_in_one_gene", {"Macaca_mulata", "Macaca_mulatta"}, ""},
  };
  for (const auto& [what, third, expected] : cases) {
    Species species;
    for (const Names& gene : {usual, usual, third, usual}) species.add(table(gene));
    std::string found;
    for (const Lookalikes& pair : lookalikes(species)) {
      const auto name = [&](int s) { return std::string(plain_name(species.name()[s])); };
      found += name(pair.first) + (pair.how == Lookalikes::How::signs ? "=" : "~") + name(pair.second) + " ";
    }
    EXPECT_EQ(found, expected) << what;
  }
  for (const auto& [times, pairs] : {std::pair(2, 1U), std::pair(3, 0U)}) {  // what comes more often is no slip
    Species species;
    for (int k = 0; k < 4; ++k) species.add(table(usual));
    for (int k = 0; k < times; ++k) species.add(table({"Macaca_mulata", "Pan"}));
    EXPECT_EQ(lookalikes(species).size(), pairs) << times;
  }
}

TEST(Identity, KeysThatHideTwoSpecies) {
  const struct {
    const char* what;
    KeyRule rule;
    Names first, second;
    std::size_t merged;
  } cases[] = {
      {"first_words", {}, {"Homo sapiens", "Mus musculus"}, {"Homo erectus", "Mus musculus"}, 1},
      {"name_end", {.end = "_"}, {"Homo_sapiens", "Mus_musculus"}, {"Homo_erectus", "Mus_domesticus"}, 2},
      {"same_epithets", {.end = "_"}, {"Homo_sapiens", "Mus_musculus"}, {"Homo_sapiens", "Mus_musculus"}, 0},
      {"loci", {.end = "_"}, {"Homo_cytb", "Mus_cytb"}, {"Homo_nad", "Mus_nad"}, 0},
      {"no_epithet", {.end = "_"}, {"Homo_x1", "Mus_x2"}, {"Homo_x3", "Mus_x4"}, 0},
  };
  for (const auto& [what, rule, first, second, merged] : cases) {
    Identity identity(rule);
    identity.add("1", table(first));
    identity.add("2", table(second));
    EXPECT_EQ(identity.merged().size(), merged) << what;
  }
}

// What is proposed rests on genes from all over a batch, however long it is: the first ones may be of another kind.
TEST(Identity, SamplesTheWholeBatch) {
  Identity identity({});
  for (int gene = 0; gene < 1000; ++gene) {
    const std::string locus = "|g" + std::to_string(gene);
    const std::string ending = gene < 300 ? locus : "_XP" + std::to_string(2 * gene) + locus;
    const std::string other = gene < 300 ? locus : "_XP" + std::to_string(2 * gene + 1) + locus;
    identity.add("", table({"Homo_sapiens" + ending, "Mus_musculus" + other}));
    ASSERT_LE(identity.sample().size(), 200U);
  }
  const auto found = proposals(identity.sample());
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(options_for(found[0].rule), "--name-parts=1-2");  // --name-end='|' would do for the first 300 alone
}

}  // namespace
}  // namespace trimora::rooms
