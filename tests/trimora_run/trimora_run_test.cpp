#include "trimora_run/trimora_run.h"

#include "driver/entry.h"
#include "support.h"

namespace {

namespace fs = std::filesystem;

// A file of 4 sequences: b1 is 3 at least, b2 is 3. What goes through is compared by the whole-program runs.
class TrimoraRun : public FolderTest {};

TEST_F(TrimoraRun, TellsByStatusAndNotes) {
  // clang-format off
  const struct { const char* arguments; int status; const char* named; /* on standard error */ } cases[] = {
    {"",                          2, "no file name"},
    {"-p=n",                      2, "-p=n stands where"},
    {"-p=n a.fas",                2, "-p=n stands where"},
    {"a.fas -p",                  2, "-p is not an option"},
    {"a.fas -p=x",                2, "-p=x is refused"},
    {"a.fas -b3=5x",              2, "-b3=5x is not a whole number"},
    {"a.fas -p=n -b1=2",          2, "-b1=2 is refused"},              // known only when the file has been read
    {"a.fas -p=n -b1=4 -b2=4",    2, "-b1=4 is refused"},              // b2 is still 3
    {"a.fas -p=n -u=y -e=--",     2, "two files one name"},
    {"ended -p=n -a=y -w=y -e=--", 2, "two files one name"},
    {"absent.fas -p=x",           2, "-p=x is refused"},               // known before
    {"absent.fas -b1=99",         1, "absent.fas: there is no such file in "},  // the file is to blame
    {"a.fas -s=n -p=n -b4=2 -b2=4 -b1=4", 0, ""},
    {"a.fas -s=n -p=n -b4=2 -b2=0 -b1=3", 0, ""},                      // each is judged by itself beforehand
    {"--odd -s=n -p=n -b4=2",     0, ""},                              // a file all the same
    {"unended -s=n -p=n",         1, "unended: lists no alignment that was trimmed"},
    {"emptyline -s=n -p=n",       1, "emptyline: not every alignment in the list"},
    {"ended -s=n -p=n -b4=2",     0, ""},
    {"odd.fas -s=n -p=n",         0, "columns 2, 6-7\ntrimora-run: odd.fas: has Windows line ends"},
    {"dna.fas -s=n -p=n",         0, "looks like nucleotides"},
    {"dna.fas -s=n -p=n -t=D -b5=a", 0, ""},
    {"a.fas -s=n -p=n -t=C",      0, "looks like protein"},
    {"mixed -s=n -p=n",           0, "b.pir: is read as FASTA"},
    {"names -s=n -p=n -w=y",      1, "odd.fas: sequence 2 is c, but b in dna.fas"},
    {"a.fas --formt=fasta",       2, "--formt=fasta is not an option: did you mean --format?"},
    {"a.fas --format=fasta,",     2, "it has to be trimora|fasta|phylip|nexus"},
    {"a.fas --columns=y",         2, "--columns=y takes no value"},
    {"a.fas --into=",             2, "it needs a value, --into=FOLDER"},
    {"a.fas --partitions",        2, "--partitions goes with a concatenation"},
    {"ended -a=y --model=LG",     2, "--model goes with --partitions"},
    {"ended -a=y --partitions --model=DNA,x", 2, "--model=DNA,x is refused"},
    {"ended -a=y --name-end=|",   2, "--name-end goes with --match=name"},
    {"ended -a=y --match=name -b1=3", 2, "give per cent, as -b1=60%"},
    {"a.fas -b1=101%",            2, "a whole number from 0% to 100%"},
    {"a.fas -b1=90% -b2=80%",     2, "-b1 is more than -b2"},
    {"a.fas -b1=60% -b2=3",       2, "give both in per cent"},
    {"- -k=y",                    2, "-k=y does not go with -"},
    {"- --table=t",               2, "--table does not go with -"},
    {"- --format=fasta,nexus",    2, "only one alignment"},
    {"a.fas --table=a.fas",       1, "would replace the input"},
    {"a.fas --table=./a.fas-tr",  2, "is the name of another file"},
    {"ended",                     1, "the result a.fas-tr would be written twice"},
    {"marked -s=n -p=n",          1, "mark.fas: begins with an invisible mark"},
    {"nested -s=n -p=n",          1, "ended: is a list of alignments"},
    {"pipes -s=n -p=n",           1, "/dev/null: is a pipe"},              // where a named one would wait for ever
    {"cut --keep-going",          1, "cut.pir: sequence 2 (b) does not end with '*'"},  // nor is it read as FASTA
    {"ended --into=folder",       1, "a.fas and a.fas would have results of the same name in folder"},
    {"blanks.fas -p=n -b4=2 --format=phylip", 1, "sequence 1 (a 1) holds a blank, and PHYLIP cannot hold it"},
    {"blanks -p=n -s=n -a=y --match=name -b4=2", 1, "sequences 1 and 2 are both called a"},
    {"--help",                    0, ""},
    {"a.fas --into=~/x",          2, "--into=\"$HOME\"/x"},
    {"a.fas -s=n -p=n -a=y",      0, "a.fas: is one alignment and no list"},
    {"long.fas",                  1, "substr($0, 1, 60) : 1' long.fas"},  // without a blank
    {"mac.fas",                   1, "tr '\\r' '\\n' < mac.fas"},
    {"dropped.fas -s=n -p=n -t=C", 0, "the first is TAA at column 6 of"},
    {"a.fas --version",           0, ""},
  };
  // clang-format on
  const std::string letters = ">a\nACDEF\n>b\nACDEF\n>c\nACDEF\n>d\nACDEF\n";
  write("a.fas", letters);
  write("--odd", letters);
  write("unended", "a.fas");
  write("emptyline", "a.fas\na.fas\n\n");
  write("ended", "a.fas\n\na.fas\n");
  write("odd.fas", ">a\nA-CD\r--7\n>c\nA-CD\r--E\n");
  write("b.pir", ">P1;a\n\nACDEF*\n>P1;b\n\nACDEF*\n");
  write("long.fas", ">" + std::string(80, 'x') + "\nACDEF\n");
  write("mac.fas", ">a\r" + std::string(80, 'A') + "\r>b\r" + std::string(80, 'A') + "\r");
  write("dropped.fas", ">a\nACG--TAAACG\n>b\nACG--TTTACG\n");
  write("cut.pir", ">P1;a\nACDEF\n*\n>P1;b\nACDEF\n");
  write("cut", "cut.pir\n");
  write("mark.fas", "\xef\xbb\xbf" + letters);
  write("marked", "a.fas\nmark.fas\n");
  write("pipes", "a.fas\n/dev/null\n");
  write("nested", "a.fas\nended\n");
  write("mixed", "a.fas\nb.pir\n");
  write("dna.fas", ">a\nACGUNACGTTACGTTACGTT--\n>b\nACGTTACGTTACGTTACGTTAC\n");
  write("blanks.fas", ">a 1\nACDEF\n>a 2\nACDEF\n");
  write("blanks", "blanks.fas\n");
  write("names", "dna.fas\nodd.fas\nabsent.fas\n");  // fails before anything is concatenated
  for (const auto& c : cases) {
    int status = -1;
    testing::internal::CaptureStderr();
    printedby([&] { status = withwords(std::string("trimora-run ") + c.arguments, trimora_run); });
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_EQ(status, c.status) << c.arguments;
    EXPECT_TRUE(*c.named == '\0' ? said.empty() : said.find(c.named) != std::string::npos)
        << c.arguments << ": " << said;
  }
  EXPECT_EQ(std::distance(fs::directory_iterator("."), {}), 21);  // nothing was written
}

TEST_F(TrimoraRun, TabulatesWhatFailsToBeginWith) {
  write("a.fas", ">a\nACDEF\n");
  write("list", "a.fas\n");
  for (const char* line : {"a.fas --table=t", "list --table=t", "list --table=t --keep-going"}) {
    printedby([&] { EXPECT_EQ(withwords(std::string("trimora-run ") + line, trimora_run), 1); });
    EXPECT_NE(textof("t").find("\tfailed\tholds one sequence only"), std::string::npos) << line;
    fs::remove("t");
  }
}

// Of 7 sequences, of which at least 4 have to agree.
TEST_F(TrimoraRun, PercentOfTheSequences) {
  const char* const cases[][2] = {{"", "4\t5"},       {"-b1=60%", "4\t5"}, {"-b1=75% -b2=100%", "5\t7"},
                                  {"-b1=0%", "4\t5"}, {"-b2=10%", "4\t4"}, {"-B1=100%", "7\t7"}};
  std::string letters;
  for (const char name : {'a', 'b', 'c', 'd', 'e', 'f', 'g'}) letters += std::string(">") + name + "\nACDEF\n";
  write("a.fas", letters);
  for (const auto& [options, numbers] : cases) {
    const std::string line = std::string("trimora-run a.fas -p=n -s=n -b4=2 --table=t ") + options;
    printedby([&] { EXPECT_EQ(withwords(line, trimora_run), 0); });
    EXPECT_NE(textof("t").find(std::string("a.fas\t7\t5\t5\t5\t5\t100\t1\t") + numbers + "\tok\t\n"), std::string::npos)
        << options << textof("t");
  }
}

// /dev/full takes no byte. What is incomplete is named, the run goes on, and the status tells.
TEST_F(TrimoraRun, TellsIncompleteFiles) {
  write("a.fas", ">a\nACDEF\n>b\nACDEF\n");
  fs::create_symlink("/dev/full", "a.fas-tr");
  testing::internal::CaptureStderr();
  printedby([&] { EXPECT_EQ(withwords("trimora-run a.fas -p=s -b4=2", trimora_run), 1); });
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "trimora-run: a.fas-tr could not be written completely: No space left on device\n");
  EXPECT_TRUE(fs::exists("a.fas-tr.txts"));

  for (const auto program : {trimora, trimora_run}) {
    const auto intofull = [&] {
      std::exit(std::freopen("/dev/full", "w", stdout) ? withwords("trimora a.fas -s=n -p=n", program) : 9);
    };
    EXPECT_EXIT(intofull(), testing::ExitedWithCode(1), "standard output could not be written completely: No space");
  }
}

}  // namespace
