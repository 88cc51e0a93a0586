#include "trimora_run/forms.h"

#include "support.h"

namespace {

using FormFiles = FolderTest;

InputState of(int fileformat, char seq_type) {
  InputState run;
  run.fileformat = fileformat;
  run.seq_type = seq_type;
  return run;
}

std::string written(const Sheet& sheet, Form form, const InputState& run) {
  {
    OutputFile out("file");
    writeform(out, sheet, form, run);
  }
  return textof("file");
}

TEST_F(FormFiles, Layouts) {
  Alignment ali = alignment({"AC-U", "acgn"});
  for (const char* name : {"Mus musculus \r\n", " Homo"}) ali.name.append(name);
  const std::vector<Stretch> stretches = {{1, 1}, {3, 4}};
  const Sheet sheet = sheetof(ali, stretches);
  const std::string block = "  matrix\nMus musculus A-U\nHomo agn\n  ;\nend;\n";
  const std::string head = "#NEXUS\nbegin data;\n  dimensions ntax=2 nchar=3;\n  format datatype=";
  const struct {
    Form form;
    int fileformat;
    char seq_type;
    std::string text;
  } cases[] = {
      {Form::trimora, fasta, 'P', ">Mus musculus \r\nA-U\n> Homoagn\n"},
      {Form::trimora, pir, 'D', ">DL;Mus musculus \r\n \nA-U*\n\n>DL; Homo \nagn*\n\n"},
      {Form::plain, pir, 'D', ">Mus musculus\nA-U\n>Homo\nagn\n"},
      {Form::phylip, fasta, 'P', "2 3\nMus musculus A-U\nHomo agn\n"},
      {Form::nexus, fasta, 'P', head + "protein missing=? gap=-;\n" + block},
      {Form::nexus, fasta, 'C', head + "rna missing=? gap=-;\n" + block},
  };
  for (const auto& c : cases) EXPECT_EQ(written(sheet, c.form, of(c.fileformat, c.seq_type)), c.text);
  ali.let = alignment({"ACGT", "ACGU"}).let;
  EXPECT_NE(written(sheet, Form::nexus, of(fasta, 'D')).find("=dna "), std::string::npos);
}

// Whatever the pieces: lines of sixty, and no empty one.
TEST_F(FormFiles, PlainLines) {
  for (const int length : {0, 1, 59, 60, 61, 120, 185}) {
    std::string letters, lines;
    for (int p = 0; p < length; ++p) {
      letters += static_cast<char>('A' + p % 23);
      lines += letters.back();
      if (p % 60 == 59 || p == length - 1) lines += '\n';
    }
    Alignment ali = alignment({letters});
    ali.name.append("s\n");
    for (int cut = 0; cut <= length; ++cut) {
      const std::vector<Stretch> stretches = {{1, cut}, {cut + 1, length}};
      EXPECT_EQ(written(sheetof(ali, stretches), Form::plain, of(fasta, 'P')), ">s\n" + lines) << cut;
    }
  }
}

TEST(Forms, Named) {
  EXPECT_EQ(formsof("nexus,trimora,fasta"), (Forms{Form::nexus, Form::trimora, Form::plain}));
  for (const char* text : {"", "fasta,", ",fasta", "fasta,fasta", "Fasta", "fasta nexus", "newick"}) {
    EXPECT_FALSE(formsof(text)) << text;
  }
}

TEST(Forms, NamesTheyCannotHold) {
  const struct {
    const char* name;
    const char* refusedby;
    const char* words;
  } cases[] = {
      {"Mus_musculus.1-a\r\n", "", ""},
      {"\n", "FASTA PHYLIP NEXUS", "is empty"},
      {" \r\n", "FASTA PHYLIP NEXUS", "is empty"},
      {">Mus\n", "FASTA PHYLIP NEXUS", "begins with >"},
      {"-Mus\n", "NEXUS", "begins with -"},
      {"Mus musculus\n", "PHYLIP NEXUS", "holds a blank"},
      {"Mus\tmusculus\n", "PHYLIP NEXUS", "holds a blank"},
      {"Mus\rmusculus\n", "FASTA PHYLIP NEXUS", "invisible"},
      {"Mus\x01\n", "FASTA PHYLIP NEXUS", "invisible"},
      {"Mus:1-50\n", "PHYLIP NEXUS", "one of ( )"},
      {"Mus'\n", "PHYLIP NEXUS", "one of ( )"},
      {"sp|P02185|MYG\n", "NEXUS", "other characters than letters"},
      {"P02185/1-154\n", "NEXUS", "other characters than letters"},
      {"M\xc3\xbcs\n", "NEXUS", "other characters than letters"},
      {"first\n", "PHYLIP NEXUS", "sequences 1 and 2 have the same name, first"},
  };
  for (const auto& c : cases) {
    Table<std::string> name;
    name.append("first\n");
    name.append(c.name);
    EXPECT_EQ(unfitname(name, {Form::trimora}, "f", fasta), "") << c.name;
    std::string refusedby;
    for (const auto& [form, called] :
         {std::pair(Form::plain, "FASTA"), {Form::phylip, "PHYLIP"}, {Form::nexus, "NEXUS"}}) {
      const std::string why = unfitname(name, {Form::trimora, form}, "f", fasta);
      if (why.empty()) continue;
      refusedby += (refusedby.empty() ? "" : " ") + std::string(called);
      EXPECT_NE(why.find(c.words), std::string::npos) << why;
    }
    EXPECT_EQ(refusedby, c.refusedby) << c.name;
  }
}

}  // namespace
