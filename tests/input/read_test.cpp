#include "input/read.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "ground/failure.h"
#include "input/kind.h"

#ifdef TRIMORA_ZLIB
#include <unistd.h>
#include <zlib.h>
#endif

namespace {

using namespace trimora::rooms;
using std::string_literals::operator""s;

/// The names of failures, in the order of the enum.
constexpr const char* failure_names[] = {
    "not_found",     "not_readable",    "not_writable",      "changed",
    "empty",         "unknown_format",  "refused_format",    "ambiguous_format",
    "damaged",       "bad_record",      "unfinished_record", "name_too_long",
    "bad_character", "unequal_lengths", "too_long",          "too_few_sequences",
};

/// What came of reading: "name=row;" for each sequence, what the format says of the type, the insert columns and the
/// remarks. Or the failure in brackets: its kind, sequence, name, detail, length, what was expected.
template <typename Step>
std::string outcome(Step step) {
  std::string text;
  try {
    const Reading reading = step();
    for (int i = 1; i <= reading.numseq(); ++i) {
      text += reading.names[static_cast<std::size_t>(i) - 1] + "=";
      text.append(reading.row(i), static_cast<std::size_t>(reading.nupo)) += ';';
    }
    EXPECT_EQ(reading.letters.size(),
              static_cast<std::size_t>(reading.numseq()) * static_cast<std::size_t>(reading.nupo));
    if (reading.kind) text += *reading.kind == trimora::Kind::dna ? " dna" : " protein";
    for (const Stretch& columns : reading.inserts) {
      text += " " + std::to_string(columns.first) + ".." + std::to_string(columns.last);
    }
    for (const Remark& remark : reading.remarks) {
      constexpr const char* names[] = {"layout",  "more",  "described", "dots",       "resolved",
                                       "hyphens", "sets",  "inserts",   "last_stars", "end_stars",
                                       "stars",   "bangs", "u",         "charsets"};
      text += " " + std::string(names[static_cast<std::size_t>(remark.what)]);
      if (remark.sequence != 0) text += "@" + std::to_string(remark.sequence);
      if (remark.number != 0) text += ":" + std::to_string(remark.number);
      EXPECT_NE(words(remark), "");
    }
  } catch (const Failure& failure) {
    text = "["s + failure_names[static_cast<std::size_t>(failure.kind)];
    if (failure.sequence != 0) text += " " + std::to_string(failure.sequence);
    if (!failure.name.empty()) text += " " + failure.name;
    if (!failure.detail.empty()) text += " '" + failure.detail + "'";
    if (failure.length != 0) text += " " + std::to_string(failure.length);
    if (failure.expected != 0) text += "/" + std::to_string(failure.expected);
    text += "]";
  }
  return text;
}

std::string outcome(const std::string& text) {
  return outcome([&] { return read_text(text); });
}

struct Case {
  const char* name;
  std::string text;
  std::string outcome;
};

void check(std::initializer_list<Case> cases) {
  for (const Case& c : cases) EXPECT_EQ(outcome(c.text), c.outcome) << c.name;
}

// clang-format off
TEST(Read, Fasta) {
  check({
    {"plain",              ">a b\nAC\nGT\n>b\nACGT\n",          "a b=ACGT;b=ACGT;"},
    {"no_last_line_end",   ">a\nAC\n>b\nAC",                    "a=AC;b=AC;"},
    {"windows",            ">a\r\nAC\r\nGT\r\n>b\r\nACGT\r\n",  "a=ACGT;b=ACGT;"},
    {"macintosh",          ">a\rAC\rGT\r>b\rACGT\r",            "a=ACGT;b=ACGT;"},
    {"mixed_line_ends",    "\r\n\r>a\nAC\rGT\r\n\n>b\r\rACGT",  "a=ACGT;b=ACGT;"},
    {"blanks_and_tabs",    ">a\tb \n A C\t\n \nGT\n>b\nACGT\n", "a\tb =ACGT;b=ACGT;"},
    {"names_any_bytes",    "> H\xC3\xA9\xFF\nAC\n>\nAC\n",      " H\xC3\xA9\xFF=AC;=AC;"},
    {"byte_order_mark",    "\xEF\xBB\xBF>a\nAC\n>b\nAC\n",      "a=AC;b=AC;"},
    {"utf_16",             "\xFF\xFE>\0\xE9\0\n\0A\0C\0\r\0\n\0>\0=\xD8\0\xDE\n\0A\0C\0"s, "\xC3\xA9=AC;\xF0\x9F\x98\x80=AC;"},
    {"utf_16_big_endian",  "\xFE\xFF\0>\0a\0\n\0A\0C\0\n\0>\0b\0\n\0A\0C"s, "a=AC;b=AC;"},
    {"utf_16_cut",         "\xFF\xFE>\0a\0\n\0A\0C\0\n\0>\0b\0\n\0A\0C"s,   "[damaged 'its UTF-16 text is cut off']"},
    {"utf_16_lone_halves", "\xFF\xFE>\0=\xD8=\xD8\n\0A\0\n\0>\0\x00\xDE\xFF\x07\x00\x08\n\0A\0"s, "\xEF\xBF\xBD\xEF\xBF\xBD=A;\xEF\xBF\xBD\xDF\xBF\xE0\xA0\x80=A;"},
    {"gaps",               ">a\nA.~-C\n>b\nA---C\n",            "a=A---C;b=A---C; dots@1:1"},
    {"unknown_residues",   ">a\nA*!?C\n>b\nACUOJ\n",            "a=A*!?C;b=ACUOJ; bangs:1 stars:1"},
    {"column_of_stars",    ">a\nAC*\n>b\nA*-\n",                "a=AC-;b=A--; last_stars:1 end_stars:1"},
    {"stars_after_the_end", ">a\nAC**-\n>b\nA*GTC\n",           "a=AC---;b=A*GTC; end_stars:2 stars:1"},
    {"a2m",                ">a\nAC.g-T\n>b\nACat-T\n",          "a=AC-g-T;b=ACat-T; 3..4 inserts:2"},
    {"soft_masked",        ">a\nACcg-T\n>b\nAC.t-T\n>c\nac.GTT\n", "a=ACcg-T;b=AC-t-T;c=ac-GTT; dots@2:2"},
    {"lower_case_alone",   ">a\nac.g\n>b\nac.g\n",              "a=ac-g;b=ac-g; dots@1:2"},
    {"upper_case_and_dots", ">a\nAC.g\n>b\nAcTG\n",             "a=AC-g;b=AcTG; dots@1:1"},
    {"digit",              ">a\nAC\n>b b\nA C\nG7T\n",          "[bad_character 2 b b '7' 4]"},
    {"nul",                ">a\nA\0C\n>b\nAC\n"s,               "[bad_character 1 a 'NUL' 2]"},
    {"nul_in_a_name",      ">a\0b\nAC\n>b\nAC\n"s,              "[bad_character 1 a 'NUL']"},
    {"control_character",  ">a\nAC\x1B\n>b\nAC\n",              "[bad_character 1 a '0x1B' 3]"},
    {"name_in_a_row",      ">a\nAC>b\nAC\n",                    "[bad_character 1 a '>' 3]"},
    {"last_name_alone",    ">a\nAC\n>b\nAC\n>Mus",              "[unfinished_record 3 Mus/2]"},
    {"name_alone",         ">a\nAC\n>b\n>c\nAC\n",              "[unfinished_record 2 b/2]"},
    {"lengths_differ",     ">a\nAC\n>b\nACG\n",                 "[unequal_lengths 2 b 3/2]"},
    {"a3m",                ">a\nACGT\n>b\nACaaGT\n",            "[refused_format 2 b 'A3M' 6/4]"},
    {"lower_case_longer",  ">a\nACGT\n>b\nacgtac\n",               "[unequal_lengths 2 b 6/4]"},
    {"one_sequence",       ">a\nAC\n",                          "[too_few_sequences 1/2]"},
  });
}

TEST(Read, Pir) {
  const std::string line = "ACDEFGHIKLMNPQRSTVWY";
  check({
    {"plain",             ">P1;a\nabout it\nAC D\nEF*\n\n*\n any\nC;Species\n\n>F1;b\n\nACDEF\n*\n", "a=ACDEF;b=ACDEF; protein"},
    {"dna",               ">DL;a\n\nAC*\n>RC;b\n\nAC*",                           "a=AC;b=AC; dna"},
    {"unknown",           ">XX;a\n\nAC*\n>P1;b\n\nAC*\n",                         "a=AC;b=AC;"},
    {"two_kinds",         ">P1;a\n\nAC*\n>DL;b\n\nAC*\n",                         "a=AC;b=AC;"},
    {"not_described_once", ">P1;a\nabout\nACD\nEF*\n>P1;b\nACD\nEF*\n",           "a=ACDEF;b=ACDEF; protein described@2:1"},
    {"not_described_first", ">P1;a\nACD\nEF*\n>P1;b\nabout 2\nACDEF*\n",          "a=ACDEF;b=ACDEF; protein described@1:1"},
    {"never_described",   ">P1;a\nACD*\n>P1;b\nACE*\n",                           "a=ACD;b=ACE; protein described@1:2"},
    {"never_described_lines", ">P1;a\n" + line + "\n" + line + "\nA*\n>P1;b\n" + line + "\n" + line + "\nC*\n", "a=" + line + line + "A;b=" + line + line + "C; protein described@1:2"},
    {"some_not_described", ">P1;a\nAA\nACD*\n>P1;b\nAA\nACDEF*\n>P1;c\nAAAA\nA*\n>P1;d\n\nACDEF*\n", "a=AAACD;b=ACDEF;c=AAAAA;d=ACDEF; protein described@1:2"},
    {"no_star",           ">P1;a\n\nAC*\n>P1;b\n\nAC\n",                          "[unfinished_record 2 b ''*' at its end' 2]"},
    {"no_star_between",   ">P1;a\n\nAC\n>P1;b\n\nAC*\n",                          "[unfinished_record 1 a ''*' at its end' 2]"},
    {"text_after_a_star", ">P1;a\n\nAC*DE\n>P1;b\n\nAC*\n",                       "[bad_record 1 a '*DE' 3]"},
    {"another_line",      ">P1;a\n\nAC*\nGT\n>P1;b\n\nAC*\n",                     "[bad_record 'GT' 4]"},
    {"fasta_among_them",  ">P1;a\n\nAC*\n>b\n\nAC*\n",                            "[bad_record 2 '>b' 4]"},
  });
}

TEST(Read, TypesOfPir) {
  for (const char* code : {"P1", "P9", "F1", "p1", "DL", "DC", "RL", "RC", "N1", "N3", "HL", "HC"}) {
    const std::string record = "\n\nAC*\n", found = outcome(">"s + code + ";a" + record + ">" + code + ";b" + record);
    EXPECT_EQ(found, "a=AC;b=AC; "s + (std::string_view("PFp").find(*code) != std::string_view::npos ? "protein" : "dna")) << code;
  }
  for (const std::string code : {"F2", "RX", "N2", "HX", "Q1"}) {  // names of FASTA
    EXPECT_EQ(outcome(">" + code + ";a\nAC\n>b\nAC\n"), code + ";a=AC;b=AC;");
  }
}

TEST(Read, Clustal) {
  check({
    {"clustalw",    "CLUSTAL W (1.83) multiple sequence alignment\n\n\na   AC-\nb   ACG\n    ** \n\na   T\nb   T\n    *\n", "a=AC-T;b=ACGT;"},
    {"numbers",     "CLUSTAL O(1.2.4) multiple sequence alignment\r\n\r\na AC- 2\r\nb ACG 3\r\n\r\na\tT\t3\r\nb\tT\t4\r\n",  "a=AC-T;b=ACGT;"},
    {"muscle",      "MUSCLE (3.8) multiple sequence alignment\n\na AC\nb AC\n",           "a=AC;b=AC;"},
    {"kalign",      "Kalign (2.0) alignment in ClustalW format\n\na AC\nb AC",            "a=AC;b=AC;"},
    {"probcons",    "PROBCONS version 1.12 multiple sequence alignment\n\na AC\nb AC\n",  "a=AC;b=AC;"},
    {"t_coffee",    "CLUSTAL FORMAT for T-COFFEE Version_11 [http://www] [MODE:  ], CPU=0.0 sec, SCORE=9, Nseq=2, Len=2 \n\na AC\nb AC\n  **", "a=AC;b=AC;"},
    {"dots",        "CLUSTAL\n\na AC.\nb ACG\n",                                          "a=AC-;b=ACG; dots@1:1"},
    {"same_names",  "CLUSTAL\n\na AC\na GT\nb CC\n\na A\na G\nb C\n",                     "a=ACA;a=GTG;b=CCC;"},
    {"other_order", "CLUSTAL\n\na AC\nb GT\n\nb G\na A\n",                                "a=ACA;b=GTG;"},
    {"empty_lines", "CLUSTAL\n\n\na AC\n\nb GT\n\na A\n\nb G\n",                          "a=ACA;b=GTG;"},
    {"no_empty_line", "CLUSTAL\na AC\nb GT\na A\nb G\n",                                  "[ambiguous_format 3 a 'the same names again without an empty line before them: further sequences, or more of the same']"},
    {"new_name_later", "CLUSTAL\n\na AC\nb GT\n\na A\nc G\n",                             "[unequal_lengths 2 b 2/3]"},
    {"same_name_apart", "CLUSTAL\n\na AC\nb GT\na AA\n",                                 "a=AC;b=GT;a=AA;"},
    {"name_of_two_words", "CLUSTAL\n\nMus musculus AC\nb AC\n",                           "[bad_record 'Mus musculus AC' 3]"},
    {"name_alone",  "CLUSTAL\n\na AC\nbcd\n",                                             "[unfinished_record 2 bcd]"},
    {"path",        "clustal/a.fas\n",                                                    "[unknown_format 'clustal/a.fas']"},
    {"two_words_of_letters", "CLUSTAL\n\na AC GT\nb AC GT\n",                           "[bad_record 'a AC GT' 3]"},
  });
}

TEST(Read, Phylip) {
  const std::string ten = "sequential, names of ten columns", layout = " layout";
  check({
    {"relaxed",            " 2 4\na  AC GT\nlong_name_of_b\tACGT\n",          "a=ACGT;long_name_of_b=ACGT;"},
    {"sequential",         "2 4\na  AC\nGT\nbb ACG\n\nT\n",                   "a=ACGT;bb=ACGT;"},
    {"interleaved",        "2 6\na  AC\nbb AC\n\nGT\nGT\n\n\n-A\n-A",         "a=ACGT-A;bb=ACGT-A;"},
    {"ten_columns",        "2 4\nHomo sapieACGT\nMus muscu ACGT\n",           "Homo sapie=ACGT;Mus muscu=ACGT; layout"},
    {"ten_interleaved",    "2 12\nHomo sapieACGT AC\nMus muscu ACGT AC\n\nACGT AC\nACGT AA\n", "Homo sapie=ACGTACACGTAC;Mus muscu=ACGTACACGTAA; layout"},
    {"paml",               "2 4\nHomo sapiens  AC GT\nMus musculus\nAC\nGT\n", "Homo sapiens=ACGT;Mus musculus=ACGT; layout"},
    {"paml_own_lines",     "2 6 I\nHomo sapiens\nAC\nMus\nAC\nGT\nGA\nTT\nTA\n",      "Homo sapiens=ACGTTT;Mus=ACGATA; layout"},
    {"own_lines",          "2 6\na\nACGTTT\nb\nACGATA\n",                          "a=ACGTTT;b=ACGATA;"},
    {"own_lines_blocks",   "2 6\na\nACG\nb\nACG\n\nTTT\nATA\n",                   "a=ACGTTT;b=ACGATA;"},
    {"paml_interleaved",   "2 4 I\na AC\nb AC\nGT\nGA\n",                     "a=ACGT;b=ACGA;"},
    {"paml_genes",         "2 4 GC\nG2\n1122\na ACGT\nb ACGT\n",              "a=ACGT;b=ACGT;"},
    {"paml_sequential",    "2 30 S\nACGTACGTACACGTACGTAC\nACGTACGTACACGTACGTAC\nTCGTACGTACACGTACGTAC\nTCGTACGTACACGTACGTAC\n", "ACGTACGTAC=ACGTACGTACACGTACGTACACGTACGTAC;TCGTACGTAC=ACGTACGTACTCGTACGTACACGTACGTAC; layout"},
    {"paml_lengths",       "2 4 G\nG 2 2 2\na ACGT\nb ACGT\n",                "a=ACGT;b=ACGT;"},
    {"name_of_digits",     "2 4 G\nG2 2 2\n1\nACGT\n2\nACGT\n",               "1=ACGT;2=ACGT;"},
    {"dots",               "2 4\na ACGT\nb ..-A\n",                           "a=ACGT;b=AC-A; resolved:2"},
    {"dots_that_are_gaps", "2 4\na A.GT\nb ..-A\n",                           "a=A-GT;b=---A; dots@1:3"},
    {"several",            "2 4\na ACGT\nb ACGT\n2 4\na AAAA\nb AAAA\n",      "a=ACGT;b=ACGT; more"},
    {"names_of_numbers",   "2 4\n7 1  ACGT\n7 2  ACGT\n",                    "7 1=ACGT;7 2=ACGT; layout"},
    {"ambiguous",          "2 30\nACGTACGTACACGTACGTAC\nACGTACGTACACGTACGTAC\nTCGTACGTACACGTACGTAC\nTCGTACGTACACGTACGTAC\n", "[ambiguous_format 'PHYLIP: sequential, names of ten columns; or interleaved, names of ten columns']"},
    {"digit",              "2 4\na ACGT\nb AC7T\n",                           "[bad_character 2 b '7' 3]"},
    {"too_few",            "3 4\na ACGT\nb ACGT\n",                           "[unfinished_record 2 b 'sequences' 2/3]"},
    {"too_many",           "2 4\na ACGT\nb ACGT\nc ACGT\n",                   "[bad_record 2 b 'c ACGT']"},
    {"too_short",          "2 4\na ACGT\nb ACG\n",                            "[unfinished_record 2 b 'letters' 3/4]"},
    {"too_long",           "2 4\na ACGTA\nb ACGT\n",                          "[unequal_lengths 1 a 5/4]"},
    {"unknown_option",     "2 4 Q\na ACGT\nb ACGT\n",                         "[bad_record '2 4 Q' 1]"},
    {"nearest_failure",    "2 6\na  AC\nb  AC\n\nGT\nG\n",                 "[unequal_lengths 2 b 1/2]"},
  });
}

TEST(Read, Nexus) {
  const auto data = [](const std::string& dimensions, const std::string& format, const std::string& matrix) {
    return "#NEXUS\nbegin data;\ndimensions " + dimensions + ";\nformat " + format + ";\nmatrix\n" + matrix + "\n;\nend;\n";
  };
  check({
    {"sequential",   data("ntax=2 nchar=4", "datatype=dna missing=? gap=-", "a AC\nGT\n'it''s b' A C [2] G-"),  "a=ACGT;it's b=ACG-; dna"},
    {"interleaved",  data("nchar=4", "datatype=protein interleave", "a AC\nb AC\n\na GT [4]\nb GA"),            "a=ACGT;b=ACGA; protein"},
    {"no_empty_lines", data("ntax=2 nchar=4", "interleave=yes", "a AC\nb AC\na GT\nb GA"),                      "a=ACGT;b=ACGA;"},
    {"characters",   "#nexus [x[;]\n]\nBegin taxa; dimensions ntax=2; taxlabels a b;end;\nBegin characters; title 'x;y';\ndimensions nchar=2;format datatype=rna nolabels;matrix AC\nAU;end;", "a=AC;b=AU; dna"},
    {"signs",        data("ntax=2 nchar=5", "datatype=dna missing=-gap=? matchchar=+", "a AC?-.\nb +G+++"),     "a=AC-?-;b=AG-?-; dna resolved:4 hyphens:1"},
    {"hyphen_is_missing", data("ntax=2 nchar=3", "datatype=dna missing=-", "a AC-\nb A-C"),                     "a=AC?;b=A?C; dna hyphens:2"},
    {"match_dots",   data("ntax=2 nchar=3", "datatype=dna matchchar=.", "a AC-\nb .T."),                        "a=AC-;b=AT-; dna resolved:2"},
    {"sets",         data("ntax=2 nchar=4", "datatype=dna", "a A{AC}(CGu)T\nb AA{A-}T"),                        "a=AMBT;b=AA?T; dna sets:3"},
    {"sets_protein", data("ntax=2 nchar=2", "datatype=protein missing=N", "a A{AC}\nb NA"),                     "a=AX;b=?A; protein sets:1"},
    {"missing_n",    data("ntax=2 nchar=2", "datatype=dna missing=N", "a AN\nb nC"),                          "a=AN;b=nC; dna"},
    {"interleave_no", data("ntax=2 nchar=4", "interleave=no labels=left", "a AC\nGT\nb ACGT"),               "a=ACGT;b=ACGT;"},
    {"labels_right", data("ntax=2 nchar=2", "labels=right", "AC a\nAC b"),                                    "[refused_format 'NEXUS with names on the right']"},
    {"transposed",   data("ntax=2 nchar=2", "transpose", "a AC\nb AC"),                                       "[refused_format 'NEXUS with TRANSPOSE']"},
    {"eliminate",    data("ntax=2 nchar=2", "datatype=dna;eliminate 1", "a AC\nb AC"),                        "[refused_format 'NEXUS with ELIMINATE']"},
    {"twice",        data("ntax=2 nchar=2", "datatype=dna", "a AC\nb AC") + "begin data; matrix a A; end; begin sets; charset x=1-2; end;", "a=AC;b=AC; dna more charsets"},
    {"standard",     data("ntax=2 nchar=2", "datatype=Standard symbols=\"01\"", "a 01\nb 01"),                  "[refused_format 'NEXUS with datatype=Standard']"},
    {"mixed",        data("ntax=2 nchar=2", "datatype=mixed(dna:1)", "a 01\nb 01"),                             "[refused_format 'NEXUS with datatype=mixed']"},
    {"interleave_unsaid", data("ntax=2 nchar=6", "datatype=dna", "a AC [1]\nb AC\n\na GTAC\nb GAAC"),         "a=ACGTAC;b=ACGAAC; dna layout"},
    {"groups_are_no_names", data("nchar=8", "datatype=dna", "a  ACG\nTA ACG\nb ACG TAACG"),                   "a=ACGTAACG;b=ACGTAACG; dna"},
    {"both_ways",    data("nchar=6", "datatype=protein", "AC GT\nGT GT\n\nAC GT\nGT GT\n\nAC GT\nGT GT"),       "[ambiguous_format 'NEXUS: one sequence after the other; or interleaved, which it does not say']"},
    {"neither_way",  data("ntax=2 nchar=6", "datatype=dna", "a AC\nb AC\n\na GTAC\nb GAA"),                    "[unequal_lengths 2 b 5/6]"},
    {"neither_line", data("ntax=2 nchar=5", "datatype=dna", "\n\na AC\n\nb AC\n\na GTA\nb G{A"),               "[bad_record '{A' 13]"},
    {"unsaid_unfinished", "#NEXUS\nbegin data;\ndimensions ntax=2 nchar=5;matrix a AC\nb AC\na GTA\nb GAA\n",  "[unfinished_record 1 a '; after the matrix']"},
    {"too_few",      data("ntax=3 nchar=2", "datatype=dna", "a AC\nb AC"),                                      "[unfinished_record 'sequences' 2/3]"},
    {"too_few_taxa", "#NEXUS\nbegin taxa; dimensions ntax=3; end;\nbegin characters; dimensions nchar=2; matrix a AC\nb AC\n; end;", "[unfinished_record 'sequences' 2/3]"},
    {"too_short",    data("ntax=2 nchar=3", "datatype=dna", "a ACG\nb AC"),                                     "[unequal_lengths 2 b 2/3]"},
    {"too_long",     data("ntax=2 nchar=2", "datatype=dna", "a ACG\nb AC"),                                     "[unequal_lengths 1 a 3/2]"},
    {"no_matrix",    "#NEXUS\nbegin trees; tree a=(a,b); end;\n",                                               "[unfinished_record 'a matrix of characters']"},
  });
}

TEST(Read, Stockholm) {
  check({
    {"plain",   "# STOCKHOLM 1.0\n#=GF ID x\n\na/1-3 AC.\nb     ACG\n#=GR b SS ...\n#=GC SS_cons ...\n//\n",  "a/1-3=AC-;b=ACG;"},
    {"blocks",  "# STOCKHOLM 1.0\n\na AC\nb AC\n#=GC RF x.\n\na gT\nb -T\n#=GC RF .x\n//\n",                  "a=ACgT;b=AC-T; 2..3 inserts:2"},
    {"lower",   "# STOCKHOLM 1.0\na AC.g-\nb ACatT\n//\n",                                                    "a=AC-g-;b=ACatT; 3..4 inserts:2"},
    {"several", "# STOCKHOLM 1.0\na AC\nb AC\n//\n# STOCKHOLM 1.0\na GT\nb GT\n//\n",                         "a=AC;b=AC; more"},
    {"no_end",  "# STOCKHOLM 1.0\na AC\nb AC\n",                                                              "[unfinished_record '// at its end']"},
    {"short_rf", "# STOCKHOLM 1.0\na AC\nb AC\n#=GC RF x\n//\n",                                              "[bad_record '#=GC RF' 1/2]"},
    {"rf_decides", "# STOCKHOLM 1.0\na AC.g-\nb ACatT\n#=GC RF xxxxx\n//\n",                                "a=AC-g-;b=ACatT;"},
    {"blank_in_a_row", "# STOCKHOLM 1.0\na AC\nb A C\n//\n",                                                  "[bad_record 'b A C' 3]"},
  });
}

TEST(Read, Msf) {
  const std::string header = "PileUp\n\n   MSF:   4  Type: N    Check:  1  ..\n\n Name: a oo Len: 4 Check: 1 Weight: 1.0\n Name: b  Len: 4\n\n//\n\n";
  check({
    {"plain",     header + "    1   4\na  AC .T\nb  ACG~\n",             "a=AC-T;b=ACG-; dna"},
    {"blocks",    header + "a  AC\nb  AC\n\n 3 4\nb GT\na GA\n",         "a=ACGA;b=ACGT; dna"},
    {"other_name", header + "a  ACGT\nc  ACGT\n",                        "[bad_record 'c  ACGT' 11]"},
    {"no_rows",   header + "a  ACGT\n",                                  "[unfinished_record 2 b/4]"},
    {"protein_or_not", "PileUp\n MSF: 2 Type: P Check: 1 ..\n Name: a\n Name: b\n//\na AC\nb AC\n", "a=AC;b=AC;"},
    {"too_short", header + "a  ACG\nb  ACG\n",                           "[unequal_lengths 1 a 3/4]"},
    {"longer",    header + "a  ACGTA\nb  ACGTA\n",                      "a=ACGTA;b=ACGTA; dna layout"},
    {"rows_agree", "PileUp\nMSF: 9 Type: N Check: 1 ..\nName: a Len: 4\nName: b Len: 4\n//\na ACGT\nb ACGT\n", "a=ACGT;b=ACGT; dna layout"},
    {"no_header", "!!AA_MULTIPLE_ALIGNMENT 1.0\na.msf MSF: 2",           "[unfinished_record '// after its header']"},
  });
}

TEST(Read, OtherFiles) {
  check({
    {"nothing",     "",                      "[empty]"},
    {"white",       " \r\n\t\n\n",           "[empty]"},
    {"paths",       "a.fas\nb.fas\n",        "[unknown_format 'a.fas']"},
    {"mega",        "#mega\n!Title x;\n",    "[refused_format 'MEGA']"},
    {"selex",       "#=AU x\na AC\n",        "[refused_format 'SELEX']"},
    {"maf",         "##maf version=1\n",     "[refused_format 'MAF']"},
    {"bzip2",       "BZh91AY",               "[refused_format 'bzip2']"},
    {"zstd",        "\x28\xB5\x2F\xFD...",   "[refused_format 'zstd']"},
    {"other_formats", "@r1\nAC\n",          "[refused_format 'FASTQ or SAM']"},
    {"vcf",         "##fileformat=VCFv4",    "[refused_format 'VCF']"},
    {"gff",         "##gff-version 3\n",     "[refused_format 'GFF']"},
    {"genbank",     "LOCUS       X\n",       "[refused_format 'GenBank']"},
    {"embl",        "ID   X; SV 1;\n",       "[refused_format 'EMBL']"},
    {"hennig",      "xread\n2 2\n",          "[refused_format 'Hennig86']"},
    {"xml",         "<?xml version",         "[refused_format 'XML']"},
    {"html",        "<html>\n",              "[refused_format 'HTML']"},
    {"pdf",         "%PDF-1.7",              "[refused_format 'PDF']"},
    {"zip",         "PK\x03\x04...",         "[refused_format 'zip']"},
    {"xz",          "\xFD\x37zXZ",           "[refused_format 'xz']"},
  });
}
// clang-format on

TEST(Read, TypeByTheLetters) {
  using Why = KindByLetters::Undecided;
  const struct {
    const char* rows;
    const char* found;
  } cases[] = {
      {"ACGTACGTAC acgtacgurn", "dna"},
      {"ACGUACGUAC ACGUACGUAC", "dna"},
      {"ACGTACGTRY ACGTACGTAC", "dna"},      // nine tenths and the rest ambiguity codes
      {"ACGTACGTRY ACGTACGTRY", "neither"},  // fewer
      {"ACGTACGTAC ACGTACGTAZ", "neither"},  // no ambiguity code
      {"ACGTNNNNN- ACGTAC?XX-", "dna"},      // N, X, ? and gaps say nothing
      {"ACGTNNNNN- ACGTA-?XX-", "few"},
      {"KDVWRHSMEA KDVWRHSMTA", "protein"},  // a twentieth
      {"KDVWRHSMVA KDVWRHSMTA", "neither"},
      {"ACGTACGTAC MKLEFPQIAA", "both 1 2"},
      {"MKLEFPQI-A ----------  MKLEFPQIAA ACGTACGTTT", "both 4 3"},
  };
  for (const auto& c : cases) {
    std::istringstream words(c.rows);
    std::string text, row;
    while (words >> row) text += ">a\n" + row + "\n";
    const KindByLetters kind = kind_by_letters(read_text(text));
    std::string found = kind.kind                      ? (*kind.kind == trimora::Kind::dna ? "dna" : "protein")
                        : kind.why == Why::few_letters ? "few"
                        : kind.why == Why::neither     ? "neither"
                                                       : "both";
    if (kind.why == Why::both) found += " " + std::to_string(kind.dna) + " " + std::to_string(kind.protein);
    EXPECT_EQ(found, c.found) << c.rows;
  }
  const auto with_t = [](const char* text) {
    return outcome([text] {
      Reading reading = read_text(text);
      read_u_as_t(reading);
      return reading;
    });
  };
  EXPECT_EQ(with_t(">a\nACGU\n>b\nacgu\n"), "a=ACGU;b=acgu;");
  EXPECT_EQ(with_t(">a\nACGU\n>b\natgu\n"), "a=ACGT;b=atgt; u:2");
}

// More letters of a kind than a byte can count, in a row that no vector divides.
TEST(Read, TypeOfLongRows) {
  const std::string row(100'003, 'A');
  const KindByLetters kind = kind_by_letters(read_text(">a\n" + row + "\n>b\n" + row + "\n"));
  EXPECT_EQ(kind.letters, 200'006);
  EXPECT_EQ(kind.kind, trimora::Kind::dna);
}

/// What `step` gives for a file that holds `bytes`.
template <typename Step>
std::string with_file(const std::string& bytes, Step step) {
  const std::string test =
      testing::UnitTest::GetInstance()->current_test_info()->name();  // others run at the same time
  const std::string path = testing::TempDir() + "trimora_read_test." + test + '.' + std::to_string(getpid());
  std::ofstream(path, std::ios::binary) << bytes;
  std::string found = step(path);
  std::remove(path.c_str());
  return found;
}

// Lines and names longer than what is read at once, and line ends on both sides of where it ends.
TEST(Read, LongLines) {
  const auto read_file = [](const std::string& path) { return outcome([&] { return read(path); }); };
  const std::string name(100'000, 'n');
  for (const std::string end : {"\n", "\r\n", "\r"}) {
    for (std::size_t width : {59U, 60U, 61U, 62U, 200'000U}) {
      std::string text = ">" + name + end, row;
      for (std::size_t p = 0; p < 200'000; ++p) {
        row += "ACDEFGHIK"[p % 9];
        text += row.back();
        if (p % width == width - 1) text += end;
      }
      text += end + ">b" + end + row;
      EXPECT_EQ(with_file(text, read_file), name + "=" + row + ";b=" + row + ";");
    }
  }
  // The two characters of a line end in two blocks: no empty line between, which would be the description.
  const std::string edge(65'531, 'n');
  EXPECT_EQ(with_file(">P1;" + edge + "\r\nabout\r\nAC*\r\n>P1;b\r\n\r\nAC*\r\n", read_file),
            edge + "=AC;b=AC; protein");
}

TEST(Read, Lists) {
  const std::string path(70'000, 'p');
  const auto lines = [](const std::string& file) {
    Input input(file);
    EXPECT_EQ(input.format(), nullptr);
    std::string found;
    for (std::string_view line; input.line(line);) (found += line) += '|';
    return found;
  };
  EXPECT_EQ(with_file("a.fas\r\n# b\n\n" + path, lines), "a.fas|# b||" + path + "|");
}

TEST(Read, FilesThatCannotBeRead) {
  EXPECT_EQ(outcome([] { return read("/nowhere/x.fas"); }), "[not_found]");
  EXPECT_EQ(outcome([] { return read(testing::TempDir()); }), "[not_readable]");
}

// A file that is cut off or goes on while it is read is neither the old one nor the new one.
TEST(Read, FilesThatChange) {
  const std::string text = ">a\n" + std::string(100'000, 'A') + "\n>b\n" + std::string(100'000, 'A') + "\n";
  for (const std::size_t size : {text.size(), text.size() - 1, text.size() + 1}) {
    const std::string found = with_file(text, [&](const std::string& path) {
      Input input(path);
      std::filesystem::resize_file(path, size);
      return outcome([&] { return input.read(); });
    });
    EXPECT_EQ(found == "[changed]", size != text.size()) << size;
  }
}

#ifdef TRIMORA_ZLIB
/// `text` as a member of a gzip file.
std::string packed(const std::string& text) {
  std::string bytes(text.size() + 100, '\0');
  z_stream state{};
  EXPECT_EQ(deflateInit2(&state, 9, Z_DEFLATED, 16 + MAX_WBITS, 8, Z_DEFAULT_STRATEGY), Z_OK);
  std::string source = text;
  state.next_in = reinterpret_cast<Bytef*>(source.data());
  state.avail_in = static_cast<uInt>(source.size());
  state.next_out = reinterpret_cast<Bytef*>(bytes.data());
  state.avail_out = static_cast<uInt>(bytes.size());
  EXPECT_EQ(deflate(&state, Z_FINISH), Z_STREAM_END);
  bytes.resize(state.total_out);
  deflateEnd(&state);
  return bytes;
}

TEST(Read, Gzip) {
  const std::string one = packed(">a\nAC"), two = packed("GT\n>b\nACGT\n");
  EXPECT_EQ(outcome(one + two), "a=ACGT;b=ACGT;");
  EXPECT_EQ(outcome(one + packed("") + two + packed("")), "a=ACGT;b=ACGT;");
  EXPECT_EQ(outcome(one + two + "more"), "[damaged 'something else follows its gzip data']");
  EXPECT_EQ(outcome(packed("\xFF\xFE>\0a\0\n\0A\0\n\0>\0b\0\n\0C\0"s)), "a=A;b=C;");
  for (std::size_t size = 2; size < one.size(); ++size) {
    EXPECT_EQ(outcome(one.substr(0, size)), "[damaged 'its gzip data are cut off']");
  }
  std::string wrong = one + two;
  wrong[one.size() - 8] ^= 1;  // of the checksum
  EXPECT_EQ(outcome(wrong), "[damaged 'its gzip data are wrong']");
}
#endif

// Whatever is cut off, what is left is refused or read as the whole records that it holds: sequences, or blocks of them.
TEST(Read, CutOffAnywhere) {
  const struct {
    std::string text;
    std::vector<int> widths;  // of the blocks that may be read without the later ones
    bool fewer = false;       // sequences may be read without the later ones
  } cases[] = {
      {">a\nACGT\nAC\n>b b\nAC\nGTAC\n>c\r\nACG-AC\n", {6}, true},
      {">P1;a\nabout\nACGT*\n>P1;b\n\nAC\nGT*\nC;note\n>P1;c\n\nAC-T*\n", {4}, true},
      {"CLUSTAL W\n\na    ACGT 4\nb    AC-T 3\n     ** *\na    AC 6\nb    GT 5\n     **\n", {4, 6}, false},
      {"2 12\nHomo sapieACGT AC\nMus muscu ACGT AC\n\nACGT AC\nACGT AA\n", {12}},
      {"3 6\naa ACG\nTAC\nbb ACGTAC\ncc\nACGTAC\n2 3\naa ACG\nbb ACG\n", {6}},
      {"2 9 I\naa\nACG\nbb\nACG\nTACTAC\nTACTTT\n", {9}},
      {"2 6\nHomo sapiens  ACGTAC\nMus musculus  ACGTAC\n", {6}},
      {"#NEXUS\nbegin data;\ndimensions ntax=2 nchar=6;\nformat datatype=dna interleave missing=- gap=?;\nmatrix\na AC-\nb ACG\n\na TAC\nb TAC;\nend;\nbegin sets; charset a=1; end;\n",
       {6}},
      {"#NEXUS\nbegin data;\ndimensions ntax=2 nchar=9;\nformat datatype=dna;\nmatrix\na ACG\nb ACG\n\na TACTAC\nb TACTAC;\nend;\n",
       {9}},
      {"# STOCKHOLM 1.0\n\na AC.\nb ACG\n#=GC RF xx.\n\na TAC\nb TAC\n#=GC RF xxx\n//\n# STOCKHOLM 1.0\n", {6}},
      {"PileUp\n MSF: 6 Type: N Check: 1 ..\n Name: a Len: 6\n Name: b Len: 6\n//\n\na ACG\nb ACG\n\na TAC\nb TAC\n",
       {6}},
      {"PileUp\n MSF: 2 Type: N Check: 1 ..\n Name: a Len: 6\n Name: b Len: 6\n//\n\na ACG\nb ACG\n\na TAC\nb TAC\n",
       {6}},
  };
  for (const auto& c : cases) {
    const Reading whole = read_text(c.text);
    int read = 0;
    for (std::size_t size = 0; size < c.text.size(); ++size) {
      try {
        const Reading part = read_text(std::string_view(c.text).substr(0, size));
        ++read;
        EXPECT_NE(std::find(c.widths.begin(), c.widths.end(), part.nupo), c.widths.end()) << c.text.substr(0, size);
        ASSERT_LE(part.numseq(), whole.numseq());
        EXPECT_TRUE(c.fewer || part.numseq() == whole.numseq()) << c.text.substr(0, size);
        EXPECT_EQ(part.inserts.size(), whole.inserts.size());
        for (int i = 1; i <= part.numseq(); ++i) {
          const auto k = static_cast<std::size_t>(i) - 1;
          EXPECT_EQ(part.names[k], whole.names[k]) << c.text.substr(0, size);
          EXPECT_EQ(std::string(part.row(i), static_cast<std::size_t>(part.nupo)),
                    std::string(whole.row(i), static_cast<std::size_t>(part.nupo)))
              << c.text.substr(0, size);
        }
      } catch (const Failure&) {
      }
    }
    EXPECT_GT(read, 0) << "at least without the last line end: " << c.text;
  }
}

}  // namespace
