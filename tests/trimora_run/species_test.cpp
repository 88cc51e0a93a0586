#include "trimora_run/species.h"

#include "support.h"
#include "trimora_run/forms.h"
#include "trimora_run/names.h"

namespace {

using SpeciesFiles = FolderTest;

Table<std::string> names(const std::vector<std::string>& list) {
  Table<std::string> name;
  for (const std::string& text : list) name.append(text);
  return name;
}

TEST(Species, KeysOfNames) {
  const char* const cases[][3] = {
      {"Mus_musculus gene1\n", "", "Mus_musculus"},
      {"Mus\tgene1\n", "", "Mus"},
      {" Mus \r\n", "", "Mus"},
      {"Mus\n", "|@", "Mus"},
      {"Mus musculus|g1\n", "|@", "Mus musculus"},
      {"Mus @g1|x\n", "|@", "Mus"},
      {"|Mus\n", "|", ""},
      {"Mus", "", "Mus"},
      {"\n", "", ""},
  };
  for (const auto& [name, ends, key] : cases) EXPECT_EQ(keyof(name, ends), key) << name;
  EXPECT_EQ(unfitkey(names({"a 1\n", "b 1\n"}), ""), "");
  EXPECT_EQ(unfitkey(names({"a|1\n", "a|2\n"}), ""), "");
  EXPECT_NE(unfitkey(names({"c\n", "a|1\n", "a|2\n"}), "|").find("sequences 2 and 3 are both called a,"),
            std::string::npos);
  EXPECT_NE(unfitkey(names({"c\n", "|2\n"}), "|").find("sequence 2 (|2) has no name"), std::string::npos);
}

TEST_F(SpeciesFiles, StandWhereTheyFirstAppear) {
  const struct {
    std::vector<std::string> name, rows;
  } genes[] = {{{"b x\n", "a y\n"}, {"AAC", "AAD"}},
               {{"c\n", "b\n", "a\n"}, {"CEF", "CEG", "CEH"}},
               {{"d\n", "c\n"}, {"I", "K"}}};
  Species species("");
  Concatenation all("all");
  for (const auto& gene : genes) {
    const Alignment ali = alignment(gene.rows);
    all.append(ali, ali.nupo > 1 ? std::vector<Stretch>{{1, 1}, {3, 3}} : std::vector<Stretch>{{1, 1}});
    species.add(names(gene.name));
  }
  {
    OutputFile out("file");
    const auto rowof = [&](std::size_t k, int i) { return species.row(k, i); };
    writeform(out, sheetof(all, species.name(), rowof), Form::phylip, InputState());
  }
  EXPECT_EQ(textof("file"), "4 5\nb ACCG?\na ADCH?\nc ??CFK\nd ????I\n");
}

}  // namespace
