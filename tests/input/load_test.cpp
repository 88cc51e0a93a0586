#include "support.h"
#include "trimora/checkfiletype.h"

namespace trimora::rooms {
namespace {

using Load = FolderTest;

/// The alignment in `f`: name line, row and ';' for each sequence. Or the message that ends the run, in brackets.
std::string outcome() {
  std::string rows;
  std::string message = printed_by([&] {
    InputState run;
    run.filename = "f";
    checkfiletype(run);
    const Alignment ali = load(run);
    for (int i = 1; i <= ali.numseq; ++i) {
      rows += ali.name[i] + std::string(ali.let[i].from(1), static_cast<std::size_t>(ali.nupo)) + ";";
    }
  });
  constexpr std::string_view end = "\n\nExecution terminated\n";
  if (message.ends_with(end)) message = "[" + message.substr(1, message.size() - end.size() - 1) + "]";
  return rows + message;
}

TEST_F(Load, Records) {
  using std::string_literals::operator""s;
  const std::string longest(69, 'n');
  const std::string neither = "[Sequence not in NBRF/PIR or FASTA format]";
  const std::string toolong = "[Sequence name too long]";
  const std::string narrow = "[Too few positions in the alignment (at least two positions are necessary): ";
  // clang-format off
  const struct { const char* name; std::string text; std::string outcome; } cases[] = {
    {"pir",                      ">P1;a\nabout\nAC D\nEF*\n\n*\n any\n\n>P1;b\n\nACDEG*\n\n\n", "a\nACDEF;b\nACDEG;"},
    {"pir_short_name_lines",     ">P1;a\n\nAC*\n>b\n\nAD*\n>bc\n\nAE*\n>P1;\n\nAF*\n", "a\nAC;>b\nAD;AE;\nAF;"},
    {"pir_last_without_star",    ">P1;a\n\nAC*\n>P1;b\n\nAD\n",                         "[File not in NBRF/PIR format]"},
    {"pir_text_behind_the_star", ">P1;a\n\nAC*DE\n>P1;b\n\nAD*\n",                      "[Sequence not in NBRF/PIR format]"},
    {"pir_longest_name_line",    ">P1;" + longest + "\n\nAC*\n>P1;b\n\nAD*\n",          longest + "\nAC;b\nAD;"},
    {"pir_too_long_a_name_line", ">P1;" + longest + "n\n\nAC*\n>P1;b\n\nAD*\n",         toolong},
    {"pir_too_long_is_told_first", ">P1;a\n\nAC*\n" + longest + "nnnnnn\n",             toolong},
    {"pir_about_190_characters", ">P1;a\n" + std::string(190, 'd') + "\nAC*\n>P1;b\n\nDAC*\n", "a\ndAC;b\nDAC;"},
    {"pir_lower_case_code",      ">p1;a\n\nAC*\n",                                      "[Sequence not in correct NBRF/PIR format: a D (for DNA or rRNA sequences) or a P (for protein sequences) is missing after the symbol > in the name line]"},
    {"no_name_line",             "ACGT\n>a\n",                                          neither},
    {"no_bytes",                 "",                                                    neither},
    {"first_path_missing",       "none\nf\n",                                           neither},
    {"path_with_a_carriage_return", "f\r\n",                                            neither},
    {"fasta",                    ">a\nac D.\nEF\n>b\n\nA.CDEG>c\nACDEFG",               "a\nacD-EF;b\nA-CDEG;c\nACDEFG;"},
    {"fasta_anything_else_stays", ">a\n*\t?\r\n>b\n1;~\r\n",                            "a\n*\t?\r;b\n1;~\r;"},
    {"fasta_nul_is_a_position",  ">a\nA\0\n>b\0c\nAC\n"s,                               "a\nA\0;bAC;"s},
    {"fasta_empty_names",        ">\nAC\n>b\nAD\n>\nAE\nAF\n",                          "\nAC;b\nAD;AE\nAF;"},
    {"fasta_name_without_line_end", ">a\nAC\n>b\nAD\n>c",                               "a\nAC;b\nAD;"},
    {"fasta_longest_name_lines", ">nnnn" + longest + "\nAC\n>nnnn" + longest + "\nAD\n", toolong},
    {"fasta_longest_first",      ">nnn" + longest + "\nAC\n>nnnn" + longest + "\nAD\n", "nnn" + longest + "\nAC;nnnn" + longest + "\nAD;"},
    {"fasta_too_long_later",     ">a\nAC\n>nnnnn" + longest + "\nAD\n",                 toolong},
    {"lengths_differ",           ">a\nAC\n>b\nADE\n",                                   "[Sequences with different number of positions]"},
    {"one_sequence",             ">a\nAC\n",                                            "[File not in NBRF/PIR format or too few sequences in the alignment: 1]"},
    {"gap_columns_go",           ">a\n-A-C-.\n>b\n-A--D-\n",                            "a\nAC-;b\nA-D;"},
    {"one_column_is_left",       ">a\n-A-\n>b\n.D.\n",                                 narrow + "1]"},
    {"no_column_at_all",         ">a\n\n>b\n\n",                                       narrow + "0]"},
  };
  // clang-format on
  for (const auto& c : cases) {
    write("f", c.text);
    EXPECT_EQ(outcome(), c.outcome) << c.name;
  }
}

// Rows longer than anything that is read or looked at in one piece.
TEST_F(Load, LongRows) {
  std::string text, expected;
  for (const std::string name : {"a\n", "b\n", "c\n"}) {
    text += ">" + name;
    expected += name;
    for (int p = 1; p <= 200'000; ++p) {
      const bool gap = p % 4095 == 0 || p % 4096 == 0 || p % 4097 == 0;  // such columns go
      text += gap ? '-' : "ACDEFGHIK"[p % 9];
      if (!gap) expected += text.back();
      if (p % 61 == 0) text += " \n";
    }
    text += '\n';
    expected += ';';
  }
  write("f", text);
  EXPECT_EQ(outcome(), expected);
}

}  // namespace
}  // namespace trimora::rooms
