#include "output/forms.h"

#include "ground/failure.h"
#include "support.h"

namespace trimora::rooms {
namespace {

InputState of(int fileformat, char seq_type) {
  InputState run;
  run.fileformat = fileformat;
  run.seq_type = seq_type;
  return run;
}

std::string written(const Sheet& sheet, Form form, const InputState& run) {
  return written_by([&](OutputFile& out) { write_form(out, sheet, form, run); });
}

TEST(Forms, Layouts) {
  Alignment ali = alignment({"AC-U", "acgn"});
  ali.name = names({"Mus musculus \r\n", " Homo"});
  const std::vector<Stretch> stretches = {{1, 1}, {3, 4}};
  const Sheet sheet = sheet_of(ali, stretches);
  const std::string block = "  matrix\nMus musculus  A-U\nHomo          agn\n  ;\nend;\n";
  const std::string head = "#NEXUS\nbegin data;\n  dimensions ntax=2 nchar=3;\n  format datatype=";
  const struct {
    Form form;
    int fileformat;
    char seq_type;
    std::string text;
  } cases[] = {
      {Form::trimora, fasta, 'P', ">Mus musculus \r\nA-U\n> Homoagn\n"},
      {Form::trimora, pir, 'D', ">DL;Mus musculus \r\n \nA-U*\n\n>DL; Homo \nagn*\n\n"},
      {Form::fasta, pir, 'D', ">Mus musculus\nA-U\n>Homo\nagn\n"},
      {Form::phylip, fasta, 'P', "2 3\nMus musculus  A-U\nHomo          agn\n"},
      {Form::nexus, fasta, 'P', head + "protein missing=? gap=-;\n" + block},
      {Form::nexus, fasta, 'C', head + "rna missing=? gap=-;\n" + block},
  };
  for (const auto& c : cases) EXPECT_EQ(written(sheet, c.form, of(c.fileformat, c.seq_type)), c.text);
  ali.let = alignment({"ACGT", "ACGU"}).let;
  EXPECT_NE(written(sheet, Form::nexus, of(fasta, 'D')).find("=dna "), std::string::npos);
}

// Whatever the pieces: lines of sixty, and no empty one.
TEST(Forms, PlainLines) {
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
      EXPECT_EQ(written(sheet_of(ali, stretches), Form::fasta, of(fasta, 'P')), ">s\n" + lines) << cut;
    }
  }
}

// Pieces longer than what is changed at once.
TEST(Forms, LettersChanged) {
  const std::string row = std::string(5000, '!') + "aU";
  Alignment ali = alignment({row});
  ali.name.append("s\n");
  LetterMap letters = same_letters();
  letters['!'] = 'X';
  EXPECT_TRUE(written(mapped(sheet_of(ali, {{1, ali.nupo}}), letters), Form::phylip, of(fasta, 'P')) ==
              "1 5002\ns  " + std::string(5000, 'X') + "aU\n");
}

// Two names in each form, and how many of them have changed; or the one that both would have.
TEST(Forms, NamesTheyHold) {
  const struct {
    std::vector<std::string> name;
    std::string fasta, phylip, nexus;
  } cases[] = {
      {{"Mus_musculus.1-a\r\n", "b"}, "Mus_musculus.1-a b 0", "Mus_musculus.1-a b 0", "Mus_musculus.1-a b 0"},
      {{"\n", " \r\n"}, "sequence_1 sequence_2 2", "sequence_1 sequence_2 2", "sequence_1 sequence_2 2"},
      {{">a\n", "-b\n"}, "_a -b 1", "_a -b 1", "_a _b 2"},
      {{"Mus gene1\n", "Homo gene1\n"}, "Mus gene1 Homo gene1 0", "Mus Homo 2", "Mus Homo 2"},
      {{"Mus\tg\n", "b"}, "Mus\tg b 0", "Mus b 1", "Mus b 1"},
      {{"Mus 1\n", "Mus 2\n"}, "Mus 1 Mus 2 0", "Mus_1 Mus_2 2", "Mus_1 Mus_2 2"},
      {{"a\rb\n", "a\x01\n"}, "a_b a_ 2", "a_b a_ 2", "a_b a_ 2"},
      {{"(a)[b],c:d;e'\n", "b"}, "(a)[b],c:d;e' b 0", "_a__b__c_d_e_ b 1", "_a__b__c_d_e_ b 1"},
      {{"sp|P02185|MYG\n", "M\xc3\xbcs"},
       "sp|P02185|MYG M\xc3\xbcs 0",
       "sp|P02185|MYG M\xc3\xbcs 0",
       "sp_P02185_MYG M__s 2"},
      {{"a:\n", "a;\n"}, "a: a; 0", "same a_", "same a_"},
      {{"a x\n", "a_x\n"}, "a x a_x 0", "a a_x 1", "a a_x 1"},
      {{"a x\n", "a x\n"}, "a x a x 0", "same a_x", "same a_x"},
  };
  for (const auto& c : cases) {
    const std::pair<Form, std::string> forms[] = {
        {Form::fasta, c.fasta}, {Form::phylip, c.phylip}, {Form::nexus, c.nexus}};
    for (const auto& [form, expected] : forms) {
      std::string found;
      try {
        const FormNames fit = names_for(form, names(c.name));
        for (int i = 1; i <= fit.name.size(); ++i) found += fit.name[i] + ' ';
        found += std::to_string(fit.changed);
      } catch (const Failure& failure) {
        found = failure.kind == Failure::Kind::same_name ? "same " + failure.name : words(failure);
      }
      EXPECT_EQ(found, expected);
    }
  }
  const FormNames made = names_for(Form::phylip, names({"a:", "a;", "b", "a__2"}), Unique::made);
  EXPECT_EQ(made.name[1] + ' ' + made.name[2] + ' ' + made.name[3] + ' ' + made.name[4], "a_ a__3 b a__2");
  EXPECT_EQ(made.changed, 2);
}

}  // namespace
}  // namespace trimora::rooms
