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
    {"--help",                    0, ""},
    {"--version",                 0, ""},
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
  write("mixed", "a.fas\nb.pir\n");
  write("dna.fas", ">a\nACGUNACGTTACGTTACGTT--\n>b\nACGTTACGTTACGTTACGTTAC\n");
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
  EXPECT_EQ(std::distance(fs::directory_iterator("."), {}), 10);  // nothing was written
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
