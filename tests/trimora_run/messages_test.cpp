// What trimora-run says of real files, by its exit status, its standard error and its account. docs/messages.md lists each
// message, and this has to hear each of them and no other.
#include <algorithm>
#include <regex>
#include <set>

#include "ground/failure.h"
#include "input/reading.h"
#include "support.h"
#include "trimora_run/entry.h"

namespace trimora::rooms {
namespace {

namespace fs = std::filesystem;
using std::string_literals::operator""s;

/// The messages in docs/messages.md, as the program's words with places in braces.
std::vector<std::string> documented() {
  std::istringstream lines(text_of(TRIMORA_SOURCE "/docs/messages.md"));
  std::vector<std::string> all;
  for (std::string line; std::getline(lines, line);) {
    if (!line.starts_with("| `")) continue;
    all.push_back(std::regex_replace(line.substr(3, line.find("` |") - 3), std::regex("\\\\\\|"), "|"));
  }
  return all;
}

/// Whether `said` is `words` with its places filled.
bool is_said(const std::string& said, const std::string& words) {
  const std::string literal = std::regex_replace(words, std::regex(R"([.^$|()\[\]{}*+?\\])"), "\\$&");
  return std::regex_match(said, std::regex(std::regex_replace(literal, std::regex(R"(\\\{[a-z ]+\\\})"), "(.*)")));
}

std::string first_of(const std::vector<std::string>& messages, const std::string& said) {
  const auto found = std::find_if(messages.begin(), messages.end(), [&](const auto& m) { return is_said(said, m); });
  return found == messages.end() ? "" : *found;
}

struct Said {
  int status = -1;
  std::string account, notes;  // on standard output, on standard error
};

Said run(const std::string& arguments) {
  Said said;
  testing::internal::CaptureStderr();
  testing::internal::CaptureStdout();
  said.status = with_words("trimora-run " + arguments, trimora_run_main);
  said.account = testing::internal::GetCapturedStdout();
  said.notes = testing::internal::GetCapturedStderr();
  return said;
}

class Messages : public FolderTest {};

TEST_F(Messages, OfRealFiles) {
  // clang-format off
  const std::pair<const char*, std::string> files[] = {
    {"a.fas",      ">a\nACDEF\n>b\nACDEF\n>c\nACDEF\n>d\nACDEF\n"},
    {"b.fas",      ">b\nACDEF\n>a\nACDEF\n>c\nACDEF\n>d\nACDEF\n"},
    {"c.fas",      ">a\nACDEF\n>x\nACDEF\n>c\nACDEF\n>d\nACDEF\n"},
    {"two.fas",    ">a\nACDEF\n>b\nACDEF\n"},
    {"ab",         "a.fas\nb.fas\n"},
    {"a.fasb",     ">a\nACDEF\n>b\nACDEF\n"},
    {"a.fasb.txt", ">a\nACDEF\n>b\nACDEF\n"},
    {"a.fas-trim.fasta", ">a\nACDEF\n>b\nACDEF\n"},
    {"two.fas-tr.fasta", ">a\nACDEF\n>b\nACDEF\n"},
    {"b.fas-tr.fasta", ">a\nACDEF\n>b\nACDEF\n"},
    {"pfam.aln",   "MYG/1-5  MKVLA\nHBA/1-5  MKV-A\n//\n"},
    {"seq.1",      "NP_001.1\nACGTACGT\n"},
    {"twice",      "a.fas\n\na.fas\n"},
    {"gone",       "# my genes\ngone.fas\na.fas\n"},
    {"typos",      "gone.fas\n"},
    {"a.fas.gz",   ">a\nACDEF\n>b\nACDEF\n>c\nACDEF\n>d\nACDEF\n"},
    {"m1",         ">a\nACDEF\n>b\nACDEF\n"},
    {"m2",         ">c\nACDEF\n>d\nACDEF\n"},
    {"g1",         ">Mus|g1\nACDEF\n>Homo|g1\nACDEF\n"},
    {"g2",         ">Mus|g2\nACDEF\n>Homo|g2\nACDEF\n"},
    {"n1",         ">Mus|g1\nACDEF\n>Homo|g1\nACDEF\n>Bos|g1\nACDEF\n"},
    {"n2",         ">Mus|g2\nACDEF\n>Homo|g2\nACDEF\n>Pan|g2\nACDEF\n"},
    {"f1",         ">a\nACDEF\n>b\nACDEF\n>c\nACDEF\n>Mus_musculus\nACDEF\n>Homo-sapiens\nACDEF\n>Bos taurus\nACDEF\n"},
    {"f2",         ">a\nACDEF\n>b\nACDEF\n>c\nACDEF\n>Mus_musculos\nACDEF\n>Homo_sapiens\nACDEF\n>Bos indicus\nACDEF\n"},
    {"cytb",       ">A1.1 Mus musculus cytb\nACDEF\n>A2.1 Bos taurus cytb\nACDEF\n>A3.1 Homo sapiens cytb\nACDEF\n>A4.1 Zea mays isolate\nACDEF\n"},
    {"cox",        ">B1.1 Mus spretus cox\nACDEF\n>B2.1 Bos taurus cox\nACDEF\n>B3.1 Homo sapiens cox\nACDEF\n>B4.1 Zea mays strain\nACDEF\n"},
    {"s1",         ">a\nACDEF\n>b\nACDEF\n>c\nACDEF\n>d\nACDEF\n>Zea\nACDEF\n"},
    {"f3",         ">a\nACDEF\n>b\nACDEF\n>c\nACDEF\n>M_musculus\nACDEF\n"},
    {"f4",         ">a\nACDEF\n>b\nACDEF\n>c\nACDEF\n>Mus_musculus\nACDEF\n"},
    {"p.fas",      ">a\nMX-L\n>b\nMKWL\n"},
    {"k.fas",      ">a\nMX-L\n>b\nMKWL\n"},
    {"three.cds",  ">a\nATGTAACTG\n>b\nATGAAATGGCTG\n>c\nATG\n"},
    {"other.cds",  ">x\nATGTAACTG\n>b\nATGAAATGGCTG\n"},
    {"wrong.cds",  ">a\nATGAAACTG\n>b\nATGCCCTGGCTG\n"},
    {"codings",    "wrong.cds\n"},
    {"cds/x.fna",  ">a\nATGAAACTG\n>b\nATGCCCTGGCTG\n"},
    {"own/p.fna",  ">a\nATGAAACTG\n>b\nATGCCCTGGCTG\n"},
    {"cds/y.fna",  ">a\nATGAAACTG\n>b\nATGCCCTGGCTG\n"},
    {"dup/p.1.fna", ">a\nATGAAACTG\n>b\nATGCCCTGGCTG\n"},
    {"dup/p.2.fna", ">a\nATGAAACTG\n>b\nATGCCCTGGCTG\n"},
    {"species",    "a\nPan\na\n"},
    {"renames",    "a\tx\nb\na\ty\n"},
    {"blanks",     "Homo sapiens\nb\n"},
    {"bare",       ""},
    {"blank",      " \n\n"},
    {"text",       "about this\n"},
    {"nested",     "a.fas\nab\n"},
    {"folders",    "a.fas\nsub\n"},
    {"x.meg",      "#mega\n!Title x;\n#a\nAC\n"},
    {"x.a3m",      ">a\nACDE\n>b\nACfDE\n"},
    {"mixed.nex",  "#NEXUS\nbegin data;\ndimensions ntax=2 nchar=2;\nformat datatype=mixed(dna:1-2);\nmatrix\na AC\nb AC\n;\nend;\n"},
    {"empty.nex",  "#NEXUS\nbegin trees;\nend;\n"},
    {"cut.nex",    "#NEXUS\nbegin data;\ndimensions ntax=3 nchar=2;\nformat datatype=dna;\nmatrix\na AC\nb AC\n;\nend;\n"},
    {"more.nex",   "#NEXUS\nbegin data;\ndimensions ntax=1 nchar=2;\nformat datatype=dna;\nmatrix\na AC\nb AC\n;\nend;\n"},
    {"long.nex",   "#NEXUS\nbegin data;\ndimensions ntax=2 nchar=2;\nformat datatype=dna;\nmatrix\na ACG\nb AC\n;\nend;\n"},
    {"sets.nex",   "#NEXUS\nbegin data;\ndimensions ntax=2 nchar=9;\nformat datatype=dna missing=- gap=? matchchar=.;\nmatrix\na AC{AC}G-TTTT\nb ..(GT)G-TTTT\n;\nend;\nbegin sets;\ncharset one=1-3;\nend;\nbegin data;\ndimensions ntax=2 nchar=2;\nformat datatype=dna;\nmatrix\na AC\nb AC\n;\nend;\n"},
    {"two.phy",    "2 30\nACGTACGTACACGTACGTAC\nACGTACGTACACGTACGTAC\nTCGTACGTACACGTACGTAC\nTCGTACGTACACGTACGTAC\n"},
    {"cut.phy",    "2 4\nHomo ACGT\nMus AC\n"},
    {"ten.phy",    "2 12\nHomo sapieACGT ACGT ACGT\nMus muscu ACGT ACGT ACGT\n"},
    {"bad.phy",    "2 4\nHomo ACGT\nMus ACGT\nmore text\n"},
    {"odd.phy",    "2 4 X\nHomo ACGT\nMus ACGT\n"},
    {"again.aln",  "CLUSTAL W\n\na AC\nb AC\na AC\nb AC\n"},
    {"line.aln",   "CLUSTAL W\n\na AC 2 more\nb AC 2\n"},
    {"cut.sto",    "# STOCKHOLM 1.0\na AC\nb AC\n"},
    {"rf.sto",     "# STOCKHOLM 1.0\na AC\nb AC\n#=GC RF xxx\n//\n"},
    {"insert.sto", "# STOCKHOLM 1.0\na ACggDEFGHIKLMN\nb AC..DEFGHIKLMN\n#=GC RF xx..xxxxxxxxxx\n//\n# STOCKHOLM 1.0\n"},
    {"cut.pir",    ">P1;a\nx\nACDEF*\n>P1;b\nx\nACDEF\n"},
    {"none.aln",   "CLUSTAL W\n\n"},
    {"one.fas",    ">a\nACDEF\n"},
    {"last.fas",   ">a\nACDEF\n>b\nACDEF\n>c"},
    {"digit.fas",  ">a\nACDEF\n>b\nAC7EF\n"},
    {"nul.fas",    ">a\0b\nACDEF\n>b\nACDEF\n"s},
    {"uneven.fas", ">a\nACDEF\n>b\nACDE\n"},
    {"gaps.fas",   ">a\nA---\n>b\nC---\n"},
    {"few.fas",    ">a\nACTT\n>b\nACTT\n"},
    {"gap.fas",    ">a\nACG-TAACG\n>b\nACGTTAACG\n"},
    {"short.fas",  ">a\nACGT\n>b\nACGT\n"},
    {"both.fas",   ">a\nACGTACGTACGT\n>b\nEFILPQEFILPQ\n"},
    {"either.fas", ">a\nACGTRYRYRYRYRYRYKMKM\n>b\nACGTRYRYRYRYRYRYKMKM\n"},
    {"dna.fas",    ">a\nACGTTACGTTACGTTACGTTAC\n>b\nACGTTACGTTACGTTACGTTAC\n"},
    {"u.fas",      ">a\nACGUUACGTTACGTTACGTTAC\n>b\nACGTTACGTTACGTTACGTTAC\n"},
    {"points.fas", ">a\nACDEFGHIKLMN\n>b\n.....G......\n>c\n..........A.\n"},
    {"first.fas",  ">a\n.CDEFGHIKLMN\n>b\n....FGHIKLMN\n>c\n....FGHIKLMN\n"},
    {"marks.fas",  ">a\nAC!EF*GHUKL*\n>b\nACD*F-GHIKL-\n>c\nAC!EF-GHIKL*\n"},
    {"end.fas",    ">a\nACDEF*-\n>b\nACDEF*-\n>c\nACDEFGH\n"},
    {"x.fas",      ">a\nXC?EF\n>b\nACDEF\n>c\nACDEF\n"},
    {"frame.fas",  ">a\nACG--TAAACG\n>b\nACG--TTTACG\n"},
    {"final.fas",  ">a\nACGACGTAA\n>b\n--GACGTAA\n>c\nACGTAA---\n"},
    {"tga.fas",    ">a\nACGTGAGUUACG\n>b\nACGTGAGUUACG\n"},
    {"j.fas",      ">a\nACDJFGHIKL\n>b\nACDLFGHIKL\n>c:\nACDLFGHIKL\n"},
    {"words2.fas", ">a about:this\nACDEF\n>b (that)\nACDEF\n"},
    {"xgaps.fas",  ">a\nACXEFXHIKL\n>b\nAC-EF-HIKL\n>c\nACDEFGHIKL\n"},
    {"uaa.fas",    ">a\nACGUAAGUUACG\n>b\nACGUACGUUACG\n"},
    {"lost.fas",   ">a\nACGTGCAAC\n>b\nACGTTAACG\n>c\nACGATGAC-\n"},
    {"noframe.fas", ">a\nAACGAC\n>b\nTACGTT\n>c\nGACGTG\n"},
    {"same.fas",   ">a\nACDEF\n>a\nACDEF\n"},
    {"words.fas",  ">a b\nACDEF\n>a c\nACDEF\n"},
    {"tree.fas",   ">a:b\nACDEF\n>b\nACDEF\n"},
    {"fit.fas",    ">a:\nACDEF\n>a;\nACDEF\n"},
    {"hollow.fas", ">a\nACDEFGHI\n>b\n--------\n>c\nACDEFGHI\n"},
    {"hollow2.fas", ">a\nACDEFGHIKLMN\n>b\n------------\n>c\nACDEFGHIKLM-\n>d\n------------\n>e\n------------\n"},
    {"signs.fas",  ">a\nACDEFGHI\n>b\n*?!X*!?X\n>c\nACDEFGHI\n"},
    {"bell.fas",   ">a\x07\x62\nACDEF\n>a\x07\x62\nACDEF\n"},
    {"differ.fas", ">a\nACDE\n>b\nFGHI\n>c\nKLMN\n"},
    {"two.pir",    ">P1;a\nACDEFGHIKLMNPQRSTVWYACDE\nACDEFGHIKLMNPQRSTVWYACDE\nACDE*\n>P1;b\nACDEFGHIKLMNPQRSTVWYACDE\nACDEFGHIKLMNPQRSTVWYACDE\nACDE*\n"},
    {"star.pir",   ">P1;a\nx\nACDEF*\n>P1;b\nx\nACD*EF\n"},
    {"cut.gz",     "\x1f\x8b\x08"s},
    {"half.txt",   "\xff\xfe>\0a"s},
    {"sub2.fas",   ">a\nACDEF\n>b\nACDEF\n>c\nACDEF\n>d\nACDEF\n"},
    {"sub/a.fas",  ">a\nACDEF\n>b\nACDEF\n>c\nACDEF\n>d\nACDEF\n"},
    {"list/text",  "about this\n"},
    {"h1.fas",     ">Homo sapiens\nACDEF\n>b\nACDEF\n>c\nACDEF\n>d\nACDEF\n"},
    {"h2.fas",     ">Homo erectus\nACDEF\n>b\nACDEF\n>c\nACDEF\n>d\nACDEF\n"},
    {"h3.fas",     ">Homo\nACDEF\n>b\nACDEF\n>c\nACDEF\n>d\nACDEF\n"},
    {"h4.fas",     ">Homo sapiens\nACDEF\n>Homo erectus\nACDEF\n"},
    {"R.fas",      ">_R_a\nACDEF\n>b\nACDEF\n>c\nACDEF\n>d\nACDEF\n"},
    {"c1",         ">a\nGCTTGTGATGAATTT\n"},
    {"c3",         ">a\nTAATGTGATGAATTTTA\n>b\nAGCTTGTGATGAATTT\n>c\nGCTTGTGATGAATTTTAA\n>e\nGCT\n"},
  };
  const struct { const char* arguments; int status; const char* said; /* on standard error, without the program */ } cases[] = {
    // what was named
    {"absent.fas",                  1, "absent.fas: there is no such file"},
    {"absent/a.fas",                1, "absent/a.fas: there is no such file"},
    {"folders -t=P --into=made",    1, "sub: could not be read: Is a directory"},
    {"loop.fas",                    1, "loop.fas: could not be read: Too many levels of symbolic links"},
    {"list",                        1, "list: contains no alignment"},
    {"bare",                        1, "bare: is empty"},
    {"blank",                       1, "blank: is empty"},
    {"text",                        1, "text: is not an alignment in any known format: it begins with 'about this'"},
    {"nested -s=n -p=n -b4=2",      1, "ab: is not an alignment in any known format: it begins with 'a.fas'"},
    {"gone -t=P -s=n -p=n -b4=2 --keep-going", 1, "trimora-run: gone.fas: there is no such file\n"},
    {"typos",                       1, "gone.fas: there is no such file"},
    {"pfam.aln",                    1, "pfam.aln: is not an alignment in any known format: it begins with 'MYG"},
    {"seq.1",                       1, "seq.1: is not an alignment in any known format: it begins with 'NP_001.1'"},
    {"x.meg",                       1, "x.meg: is MEGA, which is not read"},
    {"x.a3m",                       1, "x.a3m: is A3M, which is not read"},
    {"mixed.nex",                   1, "mixed.nex: is NEXUS with datatype=mixed, which is not read"},
    {"cut.gz",                      1, "cut.gz: is damaged: its gzip data are cut off"},
    {"half.txt",                    1, "half.txt: is damaged: its UTF-16 text is cut off"},
    // what is in it
    {"two.phy",                     1, "two.phy: can be read in two ways: PHYLIP: "},
    {"again.aln",                   1, "again.aln: can be read in two ways: the same names again "},
    {"line.aln",                    1, "line.aln: line 3 does not fit the format: a AC 2 more"},
    {"star.pir",                    1, "star.pir: line 6 does not fit the format: *EF"},
    {"bad.phy",                     1, "bad.phy: a line near sequence 2 (Mus) does not fit the format: more text"},
    {"odd.phy",                     1, "odd.phy: line 1 does not fit the format: 2 4 X"},
    {"rf.sto",                      1, "rf.sto: its line #=GC RF has 3 characters, where 2 are expected"},
    {"last.fas",                    1, "last.fas: sequence 3 (c) has a name but no letters"},
    {"cut.pir",                     1, "cut.pir: sequence 2 (b) lacks '*' at its end: was the file cut off?"},
    {"cut.sto",                     1, "cut.sto: lacks // at its end: was the file cut off?"},
    {"empty.nex",                   1, "empty.nex: lacks a matrix of characters: was the file cut off?"},
    {"more.nex",                    1, "more.nex: has 2 sequences, where the file says 1"},
    {"cut.nex",                     1, "cut.nex: ends too early, with 2 of 3 sequences: was the file cut off?"},
    {"cut.phy",                     1, "cut.phy: sequence 2 (Mus) ends too early, with 2 of 4 letters: was the file cut off?"},
    {"digit.fas",                   1, "digit.fas: letter 3 of sequence 2 (b) is 7, which is neither a residue nor a gap"},
    {"nul.fas",                     1, "nul.fas: the name of sequence 1 (a) contains NUL"},
    {"uneven.fas",                  1, "uneven.fas: sequence 2 (b) has 4 letters, the first one 5: is the file aligned?"},
    {"long.nex",                    1, "long.nex: sequence 1 (a) has 3 letters, where the file says 2"},
    {"one.fas",                     1, "one.fas: contains only one sequence: an alignment has two or more"},
    {"none.aln",                    1, "none.aln: contains no sequence"},
    {"gaps.fas -t=P",               1, "gaps.fas: has too few columns that are not gaps in every sequence: 1, at least 2 are needed"},
    {"short.fas",                   1, "short.fas: its letters do not tell whether it is protein or DNA, since they are only 8: -t=P"},
    {"both.fas",                    1, "both.fas: its letters do not tell whether it is protein or DNA: sequence 1 looks like DNA, sequence 2 like protein: -t=P"},
    {"either.fas",                  1, "either.fas: its letters do not tell whether it is protein or DNA: -t=P"},
    {"a.fas -t=P -b1=2",            2, "a.fas: b1 is 2, and has to be from 3 to 4 of the 4 sequences (half of them + 1, up to all)"},
    {"absent.fas -b1=99",           1, "absent.fas: there is no such file"},
    // what goes together
    {"ab -t=P -s=n -p=n -b4=2 -a=y", 1, "b.fas: has the sequences of a.fas in another order, which would mix up the species: nothing was concatenated: --match="},
    {"a.fas c.fas -t=P -s=n -p=n -b4=2 -a=y", 1, "c.fas: sequence 2 is x, but b in a.fas: nothing was concatenated: --match="},
    {"a.fas two.fas -t=P -s=n -p=n -b4=2 -a=y -b2=90%", 1, "two.fas: has 2 sequences, a.fas has 4: nothing was concatenated: --match=name puts them together by name, with ? where a species is missing\n"},
    {"a.fas two.fas -t=P -s=n -p=n -b4=2 -a=y -b2=4 --keep-going --match=order", 1, "two.fas: b2 is 4, and has to be from 2 to 2 of the 2 sequences"},
    {"dna.fas few.fas -p=n -s=n -c=y -b4=2", 0, "supermatrix: 2 alignments with fewer than four species, which tell no tree program anything: dna.fas, few.fas"},
    {"h1.fas h2.fas -t=P -s=n -p=n -b4=2 -a=y", 1, "h2.fas: sequence 1 is Homo erectus, but Homo sapiens in h1.fas: nothing"},
    {"h1.fas h3.fas -t=P -s=n -p=n -b4=2 -a=y --into=made/h", 0, ""},
    {"h3.fas h1.fas -t=P -s=n -p=n -b4=2 -a=y --into=made/h", 0, ""},
    {"dna.fas -s=n -p=n --codons=c1", 1, "dna.fas: is DNA: --codons goes with proteins"},
    {"dna.fas x.pir -p=n -s=n -a=y", 1, "x.pir: is protein, the first alignment is DNA: -t= says what all of them are"},
    {"same.fas -t=P -p=n -s=n -b4=2 -a=y --match=name", 1, "same.fas: two sequences are called a, sequences 1 and 2 (paralogs?), and nothing tells"},
    {"h4.fas -t=P -p=n -s=n -b4=2 -a=y --match=name --name-parts=1", 1, "leave one out, or take more of the name with another --name-parts=\n"},
    {"a.fas -t=P -p=n -s=n -b4=2 -a=y --match=name --name-end=a", 1, "a.fas: the name of sequence 1 (a) does not tell its species"},
    {"fit.fas -t=P -p=n --format=phylip", 1, "fit.fas: two sequences are called a_ in PHYLIP, which cannot hold all characters of their names: rename one"},
    {"tree.fas fit.fas -t=P -p=n -b4=2 -a=y --format=phylip --into=made/fit", 1, "fit.fas: two sequences are called a_ in PHYLIP"},
    {"m1 m2 -t=P -p=n -s=n -b4=2 -a=y --match=name", 1, "supermatrix: nothing was concatenated: the 4 species are in one of the 2 alignments each, so that no name"},
    {"g1 g2 -t=P -p=n -s=n -b4=2 -a=y --match=name", 1, "supermatrix: nothing was concatenated: the 4 species are in one of the 2 alignments each. Where does the name of a species end? --name-end='|' takes Mus|g1 as Mus"},
    {"m1 s1 -t=P -p=n -s=n -b4=2 -c=y --match=name --into=made/few", 0, "only 2 of the 5 species are in two alignments or more. In one only: c, d, Zea. Do the names differ between the alignments?\n"},
    {"n1 n2 -t=P -p=n -s=n -b4=2 -c=y --match=name --name-end=| --into=made/few", 0, "In one only: Bos, Pan. Do the names differ between the alignments?\n"},
    {"a.fas sub2.fas s1 -t=P -p=n -s=n -b4=2 -c=y --match=name --into=made/single", 0, "1 species is in one alignment only, nearly all others in several: Zea"},
    {"a.fas s1 -t=P -p=n -s=n -b4=2 -c=y --match=name --into=made/two", 0, ""},
    {"f1 f2 -t=P -p=n -s=n -b4=2 -c=y --match=name --into=made/alike", 0, "these names differ only in capitals or signs, and count as different species: "},
    {"f1 f4 f3 -t=P -p=n -s=n -b4=2 -c=y --match=name --into=made/abbreviated", 0, "these names differ by a letter or an abbreviation, are never in one alignment, and count as different species: "},
    {"f1 f2 -t=P -p=n -s=n -b4=2 -c=y --match=name --into=made/alike", 0, "names that seem to be of different species count as one, since only the first word of a name counts: "},
    {"cytb cox -t=P -p=n -s=n -b4=2 -c=y --match=name --into=made/loci --name-parts=2-3", 0, ""},
    {"cytb cox -t=P -p=n -s=n -b4=2 -c=y --match=name --into=made/loci --name-parts=2", 0, "made/loci/supermatrix: names that seem to be of different species count as one, since --name-parts=2 gives them one name: A1.1 Mus musculus cytb in cytb and "},
    {"a.fas s1 -t=P -p=n -s=n -b4=2 -c=y --match=name --into=made/species --species=species", 1, "species: 1 name in no alignment: Pan"},
    {"h1.fas -t=P -p=n -s=n -b4=2 --into=made/species --species=blanks", 0, "blanks: 1 name in no alignment: Homo_sapiens"},
    {"a.fas -t=P --species=renames", 1, "renames: lists a twice, with different names"},
    {"a.fas s1 -t=P -p=n -s=n -b4=2 -c=y --match=name --into=made/species --species=species", 1, "made/species/supermatrix: nothing was concatenated: the filters leave no alignment"},
    {"m1 s1 -t=P -p=n -s=n -b4=2 -c=y --match=name --into=made/few --min-genes=3", 1, "nothing was concatenated: --min-genes leaves no species"},
    // coding sequences
    {"p.fas k.fas -t=P -p=n -s=n -b4=2 --codons=cds", 1, "p.fas: has no coding sequences in cds: their files are matched by name up to the first dot"},
    {"p.fas -t=P -p=n -s=n -b4=2 --codons=other.cds", 1, "p.fas: has no coding sequence for sequence 1 (a) in other.cds"},
    {"p.fas -t=P -p=n -s=n -b4=2 --codons=cds", 1, "p.fas: has no coding sequences in cds"},
    {"p.fas k.fas -t=P -p=n -s=n -b4=2 --codons=wrong.cds", 1, "p.fas: has no coding sequences in wrong.cds"},
    {"p.fas -t=P -p=n -s=n -b4=2 --codons=three.cds --match=order", 1, "p.fas: has 2 sequences, but three.cds has 3: --match=order takes them in their order"},
    {"p.fas -t=P -p=n -s=n -b4=2 --codons=wrong.cds", 1, "p.fas: sequence 2 (b) in wrong.cds: "},
    {"p.fas -t=P -p=n -s=n -b4=2 --codons=three.cds --into=made/codons", 0, "p.fas: stop codons inside 1 of the coding sequences, the first in that of a, are written NNN, since codon models refuse them"},
    {"p.fas -t=P -p=n -s=n -b4=2 --codons=three.cds --into=made/codons", 0, "p.fas: 1 sequence in three.cds without a protein: c"},
    {"p.fas k.fas -t=P -p=n -s=n -b4=2 --codons=dup", 1, "dup: dup/p.1.fna and dup/p.2.fna have the same name up to the first dot, "},
    // where results go
    {"a.fas -t=P --table=a.fas",    1, "a.fas: the result a.fas would replace the input a.fas: choose"},
    {"a.fas k.fas -t=P -p=n -s=n -a=y --occupancy=k.fas", 1, "a.fas: the result k.fas would replace the input k.fas: choose"},
    {"ab -t=P -p=n -s=n --table=ab", 1, "ab: the result ab would replace the input ab: choose"},
    {"ab -t=P -p=n -s=n --species=species --table=species", 1, "ab: the result species would replace the input species: choose"},
    {"ab -t=P -p=n -s=n --species=blank", 1, "blank: lists no species"},
    {"p.fas -t=P -p=n -s=n --codons=wrong.cds --codon-names=bare --table=bare", 1, "p.fas: the result bare would replace the input bare: choose"},
    {"p.fas -t=P -p=n -s=n --codons=codings --table=codings", 1, "p.fas: the result codings would replace the input codings: choose"},
    {"p.fas -t=P -p=n -s=n --codons=three.cds --codon-names=species --overview=species", 1, "p.fas: the result species would replace the input species: choose"},
    {"p.fas k.fas -t=P -p=n -s=n --codons=own --table=own/p.fna", 1, "p.fas: the result own/p.fna would replace the input own/p.fna: choose"},
    {"a.fas a.fasb -t=P -p=n -e=b --format=trimora", 1, "a.fas: the result a.fasb would replace the input a.fasb: choose"},
    {"a.fas a.fasb.txt -t=P -p=t -e=b", 1, "a.fas: the result a.fasb.txt would replace the input a.fasb.txt: choose"},
    {"a.fas-trim.fasta ./a.fas-trim.fasta -t=P -e=-trim", 1, "a.fas-trim.fasta: only results of earlier runs, and"},
    {"twice -t=P",                  1, "twice: a.fas and a.fas are the same file: list each alignment once"},
    {"a.fas ./a.fas -t=P",          1, "a.fas: a.fas and ./a.fas are the same file: list each alignment once"},
    {"a.fas hard.fas -t=P -a=y",    1, "a.fas: a.fas and hard.fas are the same file: list each alignment once"},
    {"a.fas hard.fas -t=P -p=n -s=n -b4=2", 0, ""},
    {"a.fas -t=P --table=a.fas-tr.fasta", 1, "a.fas: the result a.fas-tr.fasta would be written twice, and the first one lost: name"},
    {"a.fas a.fas.gz -t=P",         1, "a.fas.gz: has the same results as a.fas: take one of them out of the run, or rename it"},
    {"a.fas a.fas-trim.fasta -e=-trim --join -t=P -c=y", 1, "a.fas: a.fas and a.fas-trim.fasta are one gene, which --join would put in twice: name only"},
    {"two.fas-tr.fasta b.fas-tr.fasta -t=P", 1, "two.fas-tr.fasta: only results of earlier runs, and no other alignment: --join"},
    {"a.fas sub/a.fas --into=out",  1, "sub/a.fas: has the same name as a.fas, whose results it would replace in out: rename"},
    {"a.fas --into=bare",           1, "a.fas: the folder bare could not be made: "},
    {"/dev/null",                   1, "/dev/null: is not a file, so that its results have no place: name a folder for them, --into=FOLDER"},
    {"a.fas -t=P -p=n -b4=2 -e=full", 1, "a.fas: a.fasfull.fasta could not be written: No space left on device"},
    {"a.fas -t=P -p=n -s=n -b4=2 --table=/nowhere/t", 1, "/nowhere/t: could not be written: No such file or directory"},
    // notes on the letters
    {"x.fas -t=P -s=n -p=n -b4=2",  0, "x.fas: 40 % of the columns hold X or ? and no gap, and can be selected: where data are missing, write - instead"},
    {"x.fas -t=P -s=n -p=n -b4=2 -b5=a", 0, ""},
    {"xgaps.fas -t=P -s=n -p=n -b4=2", 0, ""},
    {"points.fas -p=n -s=n -b4=2",  0, "points.fas: '.' is read as a gap, but seems to mean 'as in the first sequence' here: write"},
    {"first.fas -p=n -s=n -b4=2", 0, ""},
    {"marks.fas -t=P -p=n -s=n -b4=2", 0, "marks.fas: holds ! (2 in all), which stops IQ-TREE and RAxML: --unknown=x writes X instead\ntrimora-run: marks.fas: holds U or J (1 in all), which stops RAxML: --unknown=x writes X"},
    {"marks.fas -t=P -p=n -s=n -b4=2 --unknown=x", 0, ""},
    {"j.fas -t=P -p=n -s=n -b4=2 --format=phylip", 0, "j.fas: holds U or J (1 in all), which stops RAxML: --unknown=x writes X"},
    {"dna.fas -p=n -s=n -t=P",      0, "dna.fas: is read as protein, but looks like nucleotides: -t=D reads it as DNA, -t=C as codons"},
    {"points.fas -p=n -s=n -t=D -b4=2", 0, "points.fas: is read as nucleotides, but looks like protein: -t=P"},
    {"two.pir -p=n -s=n -t=D", 0, "two.pir: is read as nucleotides, but looks like protein: -t=P"},
    {"dna.fas -p=n -s=n -t=C",      0, "dna.fas: has 22 positions, which is not a multiple of three: does its first column begin a codon?"},
    {"frame.fas -p=n -s=n -t=C -b4=2", 0, "frame.fas: holds stop codons before the end of 1 of its sequences, the first is TAA at column 6 of sequence 1 (a): does"},
    {"uaa.fas -p=n -s=n -t=C -b4=2", 0, "uaa.fas: holds stop codons before the end of 1 of its sequences, the first is TAA at column 4 of sequence 1 (a): does"},
    {"tga.fas -p=n -s=n -t=C -b4=2 --code=4", 0, ""},
    {"gap.fas -p=n -s=n -t=C -b4=2", 0, "gap.fas: holds gaps that are not whole codons in 1 of its sequences, the first at column 4 of sequence 1 (a): what follows in them may be out of frame"},
    {"final.fas -p=n -s=n -t=C -b4=2 -b5=h", 0, ""},
    {"hollow.fas -t=P -p=n -s=n -b4=2 -b5=h", 0, "hollow.fas: sequence 2 (b) has nothing but gaps and unknown letters in the selected positions, and tree programs stop at it: leave it out"},
    {"signs.fas -t=P -p=n -s=n -b4=2 -b5=h --unknown=x", 0, "signs.fas: sequence 2 (b) has nothing but gaps and unknown letters in the selected positions, and"},
    {"hollow.fas -t=P -p=n -s=n -b4=2 -b5=h -c=y --into=made", 0, "made/hollow.fas.seq: sequence 2 (b) has nothing but gaps and unknown letters in the concatenation, and tree"},
    // on names
    {"same.fas -t=P -p=n -s=n -b4=2", 0, "same.fas: sequences 1 and 2 have the same name, a, and tree programs refuse them: rename one"},
    {"bell.fas -t=P -p=n -s=n -b4=2", 0, "bell.fas: sequences 1 and 2 have the same name, a b, and tree programs refuse them: rename one"},
    {"words.fas -t=P -p=n -s=n -b4=2", 0, "words.fas: sequences 1 and 2 have the same name up to the first blank, a, where many"},
    {"tree.fas -t=P -p=n -s=n -b4=2", 0, "tree.fas: names with ( ) [ ] , : ; or ' break trees (first in sequence 1, a:b): --format=phylip or nexus writes _ instead"},
    {"tree.fas -t=P -p=n -s=n -b4=2 --format=phylip", 0, ""},
    {"words2.fas -t=P -p=n -s=n -b4=2", 0, ""},
    // on the selection
    {"hollow.fas -t=P -p=n -s=n",   0, "hollow.fas: nothing was selected, and tree programs stop at an empty alignment. The most gaps or unknown letters: 2 (b, 100 %): leave these out, or try -b5=h"},
    {"hollow.fas -t=P -p=n -s=n -b5=h", 0, "hollow.fas: nothing was selected, and tree programs stop at an empty alignment: no block is as long as b4 asks for: try a lower -b4"},
    {"hollow2.fas -t=P -p=n -s=n -b5=h", 0, "The most gaps or unknown letters: 2 (b, 100 %), 4 (d, 100 %), 5 (e, 100 %): leave these out, or try -b5=a"},
    {"a.fas -t=P -p=n -s=n -b4=2 -b0=6", 0, "a.fas: nothing was selected, and tree programs stop at an empty alignment: no block is as long as b0 asks for: try a lower -b0"},
    {"lost.fas -t=D -p=n -s=n -b2=2", 0, "lost.fas: nothing was selected, and tree programs stop at an empty alignment: no block is as long as b4 asks for"},
    {"differ.fas -t=P -p=n -s=n -b2=3", 0, "differ.fas: nothing was selected, and tree programs stop at an empty alignment: in no position do as many as 3 sequences agree, as b2 asks for: try a lower -b2"},
    {"differ.fas -t=P -p=n -s=n",   0, "differ.fas: nothing was selected, and tree programs stop at an empty alignment: in no position do as many as 2 sequences agree, as b2 asks for\n"},
    {"points.fas -t=D -p=n -s=n", 0, "points.fas: nothing was selected, and tree programs stop at an empty alignment: its letters are of another type than it is read as\n"},
    {"noframe.fas -t=C -p=n -s=n -b4=2", 0, "noframe.fas: nothing was selected, and tree programs stop at an empty alignment: no block holds a whole codon: does"},
    {"noframe.fas -t=C -p=n -s=n -b4=2 --strict", 1, "noframe.fas: nothing"},
    {"--odd -t=P",                  2, "--odd is not an option"},
    {"-- --odd -t=P",               1, "--odd: there is no such file"},
  };
  // Beside what was read: what the account says of it.
  const std::pair<const char*, const char*> accounts[] = {
    {"a.fas -t=P -s=n -p=n -b4=2",      "a.fas: 4 sequences, 5 positions, 5 kept (100 %) in 1 block; protein, by -t\n"},
    {"a.fas -t=P -s=n -p=n -b4=2 -b1=4 --preset=relaxed", "; b2 is 4, as b1\n"},
    {"two.pir -s=n -p=n",               "; protein, as the file says"},
    {"a.fas -t=P -s=n -p=n -b4=2 -b1=10%", "; b1 is 3, half of the sequences + 1\n"},
    {"a.fas -t=P -s=n -p=n -b4=2 -b1=3 -b2=3", "1 block; protein, by -t\n"},
    {"ten.phy -s=n -p=n",               "; DNA, by its letters; read as PHYLIP, "},
    {"sets.nex -s=n -p=n",              "; only the first alignment of the file is read; the character sets in the file no longer hold"},
    {"insert.sto -s=n -p=n",            "; 2 columns are inserts and not aligned, as #=GC RF says: never selected\n"},
    {"two.pir -s=n -p=n",               "; 2 records have no description line (the first: sequence 1): the line after the name is read as sequence\n"},
    {"points.fas -s=n -p=n",            "; 22 dots are read as gaps\n"},
    {"marks.fas -t=P -s=n -p=n -b4=2",  "; the last column holds only '*' and gaps: dropped; 2 '*' inside"},
    {"end.fas -t=P -s=n -p=n -b4=2",    "; 2 '*' at the ends of sequences are read as gaps\n"},
    {"u.fas -s=n -p=n",                 "; 2 U are read as T, which occurs as well\n"},
    {"u.fas -s=n -p=n -t=C",            "; 2 U are read as T, which occurs as well\n"},
    {"frame.fas -t=D -s=n -p=n",        "; 2 columns dropped as gaps in every sequence\n"},
    {"list/../a.fas -t=P -s=n -p=n --quiet", ""},
    {"dna.fas few.fas -s=n -p=n -b4=2 -c=y --into=made", "few.fas: 2 sequences, 4 positions, 4 kept (100 %) in 1 block; DNA, as dna.fas\n"},
    {"few.fas short.fas dna.fas -s=n -p=n -b4=2", "few.fas: 2 sequences, 4 positions, 4 kept (100 %) in 1 block; DNA, as dna.fas\n"},
    {"R.fas -t=P -s=n -p=n -b4=2",      "; _R_, with which mafft marks sequences that it has turned, taken from 1 name\n"},
    {"x.fas -t=P -s=n -p=n -b4=2 --codons=c3", "; of the coding sequences, dropped the final stop codon of 1, one or two letters at the end of 1, the first letters of b\n"},
    {"p.fas -t=P -p=n -s=n -b4=2 --codons=three.cds -c=y --into=made/c", "positions put together: made/c/p.fas.seq.fasta\n  1 alignment, 2 species"},
    {"--version", "trimora-run "},
  };
  // clang-format on
  fs::create_directory("sub");
  fs::create_directory("list");
  fs::create_directory("cds");
  fs::create_directory("own");
  fs::create_directory("dup");
  for (const auto& [path, text] : files) write(path, text);
  write("x.pir", ">P1;a\nx\nACDEF*\n>P1;b\nx\nACDEF*\n");
  fs::create_symlink("loop.fas", "loop.fas");
  fs::create_hard_link("a.fas", "hard.fas");
  fs::create_symlink("/dev/full", "a.fasfull.fasta");

  const std::vector<std::string> messages = documented();
  std::set<std::string> heard;
  const std::string name = "trimora-run: ";
  for (const auto& c : cases) {
    const Said said = run(c.arguments);
    EXPECT_EQ(said.status, c.status) << c.arguments << said.notes;
    EXPECT_TRUE(*c.said == '\0' ? said.notes.empty() : said.notes.find(c.said) != std::string::npos)
        << c.arguments << ": " << said.notes;
    if (said.status == 2) continue;  // wrong usage has its own words
    std::istringstream lines(said.notes);
    for (std::string line; std::getline(lines, line);) {
      const std::string message = first_of(messages, line.substr(line.find(": ", name.size()) + 2));
      EXPECT_FALSE(message.empty()) << "docs/messages.md lacks " << line;
      heard.insert(message);
    }
  }
  for (const auto& [arguments, said] : accounts) {
    const std::string account = run(arguments).account;
    EXPECT_NE(account.find(said), std::string::npos) << arguments << ": " << account;
    for (std::size_t at = account.find("; "); at != std::string::npos; at = account.find("; ", at + 1)) {
      heard.insert(first_of(messages, account.substr(at + 2, account.find_first_of(";\n", at + 2) - at - 2)));
    }
  }
  for (const std::string& message : messages) {
    const bool elsewhere =  // when memory runs out, or somebody writes the file: in other tests
        message.starts_with("there is not enough memory") || message.starts_with("has changed while");
    EXPECT_TRUE(elsewhere || heard.contains(message)) << "never heard: " << message;
  }
}

// Whatever file of a run is called as an input, or leads to one: nothing is run, and the input stays as it was.
TEST_F(Messages, NoInputIsReplaced) {
  const std::string letters = ">a\nACDEF\n>b\nACDEF\n";
  for (const char* result : {"a.fas-tr.fasta",
                             "a.fas-tr.nexus",
                             "a.fas-tr.htm",
                             "a.fas-trMask",
                             "a.fas-trPS",
                             "a.fas-trComp.fasta",
                             "a.fas--.nexus",
                             "a.fas-tr.columns.tsv",
                             "a.fas.names.tsv",
                             "list-tr.seq.fasta",
                             "list.seq.nexus",
                             "list--.seq.fasta",
                             "list.seq.nex",
                             "list-tr.seq.partitions",
                             "list.seq.names.tsv",
                             "list.kept.txt",
                             "list.left_out.tsv",
                             "table",
                             "cells",
                             "page"}) {
    write("a.fas", letters);
    for (const bool linked : {false, true}) {
      write(linked ? "b.fas" : result, letters);
      if (linked) fs::create_symlink("b.fas", result);
      write("list", std::string("a.fas\n") + (linked ? "b.fas" : result) + "\n");
      const Said said = run(
          "list -t=P -b4=2 --format=fasta,nexus -k=y -d=y -n=y -u=y -a=y -c=y -w=y --columns --partitions --table=table "
          "--min-columns=1 --occupancy=cells --overview=page");
      EXPECT_EQ(said.status, 1) << result;
      EXPECT_NE(said.notes.find(std::string("the result ") + result + " would replace the input "), std::string::npos)
          << said.notes;
      EXPECT_EQ(std::distance(fs::directory_iterator("."), {}), linked ? 4 : 3) << result;
      EXPECT_EQ(text_of(result), letters);
      fs::remove(result);
    }
    fs::remove("b.fas");
  }
}

// Also where files are named one by one, so that results of earlier runs among them are left out.
TEST_F(Messages, NoInputIsReplacedThroughALink) {
  write("a.fas", ">a\nACDEF\n>b\nACDEF\n");
  write("b.fas", ">a\nACDEY\n>b\nACDEY\n");
  fs::create_symlink("b.fas", "a.fas-tr.fasta");
  for (const char* files : {"a.fas b.fas", "."}) {
    const Said said = run(std::string(files) + " -t=P -b4=2 -p=n");
    EXPECT_EQ(said.status, 1) << files;
    EXPECT_NE(said.notes.find("a.fas-tr.fasta would replace the input "), std::string::npos) << said.notes;
    EXPECT_EQ(text_of("b.fas"), ">a\nACDEY\n>b\nACDEY\n");
  }
}

// The overview tells the parameters that were in force, whether they were given, of a preset or by default.
TEST_F(Messages, OverviewTellsTheParameters) {
  write("a.fas", ">a\nACDEF\n>b\nACDEF\n");
  const std::pair<const char*, std::vector<const char*>> cases[] = {
      {"--preset=relaxed -b3=6", {"--preset\",\"relaxed", "-b2\",\"51%", "-b3\",\"6", "-b4\",\"5", "-b5\",\"h"}},
      {"-b5=a", {"--preset\",\"classic", "-b2\",\"85%", "-b3\",\"8", "-b5\",\"a"}},
      {"--preset=none", {"-t\",\"P", "--preset\",\"none"}},
  };
  for (const auto& [arguments, said] : cases) {
    run(std::string("a.fas -t=P -p=n -s=n --overview=page ") + arguments);
    const std::string page = text_of("page");
    const std::size_t first = page.find("\"settings\":[");
    const std::string settings = page.substr(first, page.find("]]", first) - first);
    for (const char* each : said) {
      EXPECT_NE(settings.find(std::string("[\"") + each + "\""), std::string::npos) << arguments << ": " << settings;
    }
    EXPECT_EQ(settings.find("[\"-b") == std::string::npos, std::string(arguments) == "--preset=none") << settings;
  }
}

// The sources have no words that are not documented: those of notes and refusals, of failures, and of what was mended.
TEST_F(Messages, OfTheSources) {
  const std::vector<std::string> messages = documented();
  const std::string header = text_of(TRIMORA_SOURCE "/src/trimora_run/words.h");
  const std::regex constant("constexpr W \\w+ = \"(.*)\";");
  int constants = 0;
  for (std::sregex_iterator it(header.begin(), header.end(), constant), end; it != end; ++it, ++constants) {
    const std::string words = (*it)[1];
    EXPECT_EQ(first_of(messages, words), words);
  }
  EXPECT_GT(constants, 20);

  // In trimora-run nothing fails with the first two; to be too long takes more memory than a test has; the words for the
  // last three go on.
  const std::set<Failure::Kind> not_said = {Failure::Kind::name_too_long, Failure::Kind::other_sequences,
                                            Failure::Kind::too_long,      Failure::Kind::undecided_type,
                                            Failure::Kind::unfit_name,    Failure::Kind::same_name};
  for (int k = 0; k <= static_cast<int>(Failure::Kind::out_of_memory); ++k) {
    const auto kind = static_cast<Failure::Kind>(k);
    const Failure failure{.kind = kind, .sequence = 2, .name = "n", .detail = "d", .length = 3, .error = ENOENT};
    const std::string said = words(failure);
    EXPECT_TRUE(not_said.contains(kind) || said == failure.detail || !first_of(messages, said).empty()) << said;
  }
  for (int what = 0; what <= static_cast<int>(Remark::What::charsets_void); ++what) {
    const std::string said =
        words(Remark{.what = static_cast<Remark::What>(what), .sequence = 2, .number = 2, .detail = "d"});
    EXPECT_FALSE(first_of(messages, said).empty()) << said;
  }
}

}  // namespace
}  // namespace trimora::rooms
