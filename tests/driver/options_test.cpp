#include "driver/options.h"

#include <map>
#include <sstream>

#include "support.h"

namespace {

/// What options set, under the letters of the options.
std::map<std::string, std::string> values(const RunState& run) {
  // clang-format off
  std::map<std::string, std::string> values = {{"t", {run.seq_type}}, {"e", run.exten}};
  const std::pair<const char*, int> numbers[] = {
    {"b0", run.posblen}, {"b1", run.negval}, {"b2", run.flankval}, {"b3", run.negblen}, {"b4", run.posblen2},
    {"b5", run.tog_gaps}, {"b6", run.tog_sim}, {"sub", run.tog_sub}, {"s", run.tog_seqfile}, {"p", run.tog_viewfile},
    {"k", run.tog_maskfile}, {"d", run.tog_psfile}, {"n", run.tog_ncbfile}, {"u", run.tog_ungappedfile},
    {"a", run.tog_allfile}, {"c", run.tog_allfile_init}, {"w", run.tog_allungfile}, {"v", run.breakcount}};
  // clang-format on
  for (const auto& [name, number] : numbers) values[name] = std::to_string(number);
  return values;
}

/// The options about which `text` warns. The words of the warnings are compared by a whole-program run.
std::string warnedabout(const std::string& text) {
  std::istringstream words(text);
  std::string warned;
  for (std::string word; words >> word;) {
    if (word == "WARNING:") warned += warned.empty() ? "" : " ";
    if (word == "possible") warned += "minimum";
    if (word.starts_with('-')) warned += word.substr(1);
  }
  return warned;
}

// With 10 sequences: b1 is 6 and may not be less, b2 is 8.
TEST(Options, ChangesAndWarnings) {
  // clang-format off
  const struct { const char* arguments; const char* changes; const char* warnings; } cases[] = {
    {"-b1=8",                               "b1=8 sub=1",      ""},
    {"-b1=5",                               "",                "b1"},        // fewer than half + 1
    {"-b1=9 -b2=9",                         "b2=9 sub=1",      "b1"},        // each meets the bounds of its moment
    {"-b2=9 -b1=9",                         "b1=9 b2=9 sub=1", ""},
    {"-b2=10 -b2=11 -b2=5 -b2=-1",          "b2=10 sub=1",     "b2 b2 b2"},
    {"-b2=abc",                             "b2=6",            "minimum"},   // sets without fixing
    {"-b0=32000 -b3=32000",                 "b0=32000 b3=32000", ""},
    {"-b0=1 -b0=32001 -b4=1 -b4=32001",     "",                "b0 b0 b4 b4"},
    {"-b3=",                                "b3=0",            ""},
    {"-b3=-1 -b3=32001 -v=49 -v=32001",     "",                "b3 b3 v v"},
    {"-b3=4294967297 -v=99999999999999999999", "",             "b3 v"},      // 1 in 32 bits
    {"-b3=+012x7 -v=50",                    "b3=12 v=50",      ""},          // always decimal
    {"-b4=2",                               "b0=2 b4=2",       ""},
    {"-b0=20 -b4=12",                       "b0=20 b4=12",     ""},
    {"-b4=12 -b0=20",                       "b0=20 b4=12",     ""},
    {"-b0=1 -b4=12",                        "b0=12 b4=12",     "b0"},        // a refused b0 does not hold b4 back
    {"-b5=h -b6=n -b6=Y",                   "b5=2",            ""},
    {"-b5=All -b5=1 -b6=No -b6=x -b6=",     "b5=3 b6=0",       "b5 b6 b6"},  // letters alone
    {"-b5=a -b5=N",                         "",                ""},
    {"-t=Codons -b4=3",                     "b0=3 b4=3 t=C",   ""},
    {"-t=P -t=x -T=D",                      "t=P",             "t"},
    {"-B3=5 -S=N -E=.out",                  "b3=5 e=.out s=0", ""},
    {"-s=n -k=y -d=y -n=y -u=y",            "d=1 k=1 n=1 s=0 u=1", ""},
    {"-s=x -k=x -d=x -n=x -u=x",            "",                "s k d n u"},
    {"-p=n -t=d",                           "p=0 t=D",         ""},
    {"-p=text",                             "p=2",             ""},
    {"-p=S -p= -p=h",                       "p=3",             "p p"},
    {"-a=y -p=Y",                           "a=1 sub=1",       ""},
    {"-c=y",                                "c=1 sub=1",       ""},
    {"-w=y",                                "sub=1 w=1",       ""},
    {"-a=n -c=n -w=n -a=x -c=x -w=x",       "",                "a c w"},
    {"-e=a=bcd -e=abcdef -e=",              "e=a=bcd",         "e e"},
    {"b3=5 -x=1 -b7=1 -b3 -b33=1 -b=1 -= - --b3=5 -ss=n", "",  ""},          // no option, no word
  };
  // clang-format on
  for (const auto& c : cases) {
    RunState run;
    run.numseq = 10;
    derivedefaults(run);
    const auto before = values(run);
    std::istringstream line(c.arguments);
    std::vector<std::string> arguments = {std::istream_iterator<std::string>(line), {}};
    std::vector<char*> argv;
    for (std::string& argument : arguments) argv.push_back(argument.data());
    const std::string text = printedby([&] { parseoptions(static_cast<int>(argv.size()), argv.data(), 0, run); });
    std::string changes;
    for (const auto& [name, value] : values(run)) {
      if (value != before.at(name)) changes += (changes.empty() ? "" : " ") + name + "=" + value;
    }
    EXPECT_EQ(changes, c.changes) << c.arguments;
    EXPECT_EQ(warnedabout(text), c.warnings) << c.arguments;
  }
}

TEST(RunState, DerivedDefaults) {
  // Sequences, b1 and b2. 85 times the last number is beyond 32 bits.
  const int cases[][3] = {{0, 1, 0}, {1, 1, 0}, {2, 2, 2}, {3, 2, 2}, {10, 6, 8}, {30'000'000, 15'000'001, 25'500'000}};
  for (const auto& [numseq, b1, b2] : cases) {
    RunState run;
    run.numseq = numseq;
    derivedefaults(run);
    EXPECT_EQ(run.negval, b1);
    EXPECT_EQ(run.initnegval, b1);
    EXPECT_EQ(run.flankval, b2);
  }
}

}  // namespace
