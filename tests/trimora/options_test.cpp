#include "trimora/options.h"

#include <map>

#include "support.h"

namespace trimora::rooms {
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

// With 10 sequences: b1 is 6 and may not be less, b2 is 8. Answers: t taken, r refused, g guessed, - no option. The words
// of the warnings are compared by a whole run.
TEST(Options, ChangesAndAnswers) {
  // clang-format off
  const struct { const char* arguments; const char* changes; const char* answers; } cases[] = {
    {"-b1=8 -b1=5",                         "b1=8 sub=1",      "tr"},        // fewer than half + 1
    {"-b1=9 -b2=9",                         "b2=9 sub=1",      "rt"},        // each meets the bounds of its moment
    {"-b2=9 -b1=9",                         "b1=9 b2=9 sub=1", "tt"},
    {"-b2=10 -b2=11 -b2=5 -b2=-1",          "b2=10 sub=1",     "trrr"},
    {"-b2=abc",                             "b2=6",            "g"},         // 0 sets without fixing
    {"-b0=32000 -b3=32000",                 "b0=32000 b3=32000", "tt"},
    {"-b0=1 -b0=32001 -b4=1 -b4=32001",     "",                "rrrr"},
    {"-b3= -b3=-1 -b3=32001 -v=49 -v=32001", "b3=0",           "grrrr"},
    {"-b3=4294967297 -v=99999999999999999999", "",             "rr"},        // 1 in 32 bits
    {"-b3=+012x7 -v=50",                    "b3=12 v=50",      "gt"},        // always decimal
    {"-b4=2",                               "b0=2 b4=2",       "t"},
    {"-b0=20 -b4=12",                       "b0=20 b4=12",     "tt"},
    {"-b4=12 -b0=20",                       "b0=20 b4=12",     "tt"},
    {"-b0=1 -b4=12",                        "b0=12 b4=12",     "rt"},        // a refused b0 does not hold b4 back
    {"-b0=20 -b0=1 -b4=4",                  "b0=20 b4=4",      "trt"},       // nor does it undo one that was taken
    {"-b5=h -b6=n -b6=Y",                   "b5=2",            "ttt"},
    {"-b5=All -b5=1 -b6=No -b6=x -b6=",     "b5=3 b6=0",       "trtrr"},     // letters alone
    {"-b5=a -b5=N",                         "",                "tt"},
    {"-t=Codons -b4=3",                     "b0=3 b4=3 t=C",   "tt"},
    {"-t=P -t=x -T=D",                      "t=P",             "tr-"},
    {"-B3=5 -S=N -E=.out",                  "b3=5 e=.out s=0", "ttt"},
    {"-s=n -k=y -d=y -n=y -u=y -p=n -t=d",  "d=1 k=1 n=1 p=0 s=0 t=D u=1", "ttttttt"},
    {"-p=text",                             "p=2",             "t"},
    {"-p=S -p= -p=h",                       "p=3",             "trr"},
    {"-a=y -p=Y",                           "a=1 sub=1",       "tt"},
    {"-c=y",                                "c=1 sub=1",       "t"},
    {"-w=y",                                "sub=1 w=1",       "t"},
    {"-a=n -c=n -w=n -a=x -c=x -w=x",       "",                "tttrrr"},
    {"-e=a=bcd -e=abcdef -e=",              "e=a=bcd",         "trr"},
    {"b3=5 -x=1 -b7=1 -b3 -b33=1 -b=1 -= - --b3=5 -ss=n", "",  "----------"},
  };
  // clang-format on
  for (const auto& c : cases) {
    RunState run;
    run.numseq = 10;
    derive_defaults(run);
    const auto before = values(run);
    std::string answers, changes;
    for (const Answer& answer : with_words(c.arguments, apply_options, 0, run)) answers += "-rgt"[answer.kind];
    for (const auto& [name, value] : values(run)) {
      if (value != before.at(name)) changes += (changes.empty() ? "" : " ") + name + "=" + value;
    }
    EXPECT_EQ(changes, c.changes) << c.arguments;
    EXPECT_EQ(answers, c.answers) << c.arguments;
  }
}

TEST(RunState, DerivedDefaults) {
  // Sequences, b1 and b2. 85 times the last number is beyond 32 bits.
  const int cases[][3] = {{0, 1, 0}, {1, 1, 0}, {2, 2, 2}, {3, 2, 2}, {10, 6, 8}, {30'000'000, 15'000'001, 25'500'000}};
  for (const auto& [numseq, b1, b2] : cases) {
    SelectionState run;
    run.numseq = numseq;
    derive_defaults(run);
    EXPECT_TRUE(run.negval == b1 && run.initnegval == b1 && run.flankval == b2) << numseq;
  }
}

}  // namespace
}  // namespace trimora::rooms
