#include "trimora_run/options.h"

#include <gtest/gtest.h>

#include <iterator>
#include <sstream>

#include "trimora_run/wildcards.h"

namespace trimora::rooms {
namespace {

std::string text(const std::optional<Sequences>& sequences) {
  return sequences ? std::to_string(sequences->number) + (sequences->percent ? "%" : "") : "";
}

/// All settings as text, under the names of their options: "b3=8 ...".
std::vector<std::string> told(const Settings& s) {
  std::string files, forms;
  for (const std::string& file : s.files) files += '<' + file + '>';
  for (const Form form : s.forms) forms += "fpnt"[static_cast<int>(form)];
  const std::pair<const char*, std::string> texts[] = {
      {"files", files},         {"t", s.kind ? std::string(1, "PDC"[static_cast<int>(*s.kind)]) : ""},
      {"b1", text(s.b1)},       {"b2", text(s.b2)},
      {"e", s.suffix},          {"p", std::string(1, "YTSN"[static_cast<int>(s.report)])},
      {"format", forms},        {"into", s.into},
      {"name_end", s.name_end}, {"model", s.model},
      {"name", s.name},         {"table", s.table}};
  const std::pair<const char*, int> numbers[] = {{"asked", static_cast<int>(s.asked)},
                                                 {"b3", s.b3},
                                                 {"b4", s.b4},
                                                 {"b0", s.b0.value_or(-1)},
                                                 {"b5", static_cast<int>(s.gaps)},
                                                 {"b6", s.similarity},
                                                 {"every", s.every},
                                                 {"s", s.blocks},
                                                 {"v", s.line_length},
                                                 {"k", s.mask},
                                                 {"d", s.map},
                                                 {"n", s.nonconserved},
                                                 {"u", s.ungapped},
                                                 {"columns", s.columns},
                                                 {"unknown", static_cast<int>(s.unknown)},
                                                 {"a", s.all_blocks},
                                                 {"c", s.all_input},
                                                 {"w", s.all_ungapped},
                                                 {"match", static_cast<int>(s.match)},
                                                 {"partitions", s.partitions},
                                                 {"keep_going", s.keep_going},
                                                 {"strict", s.strict},
                                                 {"quiet", s.quiet}};
  std::vector<std::string> all;
  for (const auto& [name, value] : texts) all.push_back(std::string(name) + '=' + value);
  for (const auto& [name, value] : numbers) all.push_back(std::string(name) + '=' + std::to_string(value));
  return all;
}

using Words = std::vector<std::string>;

Settings parsed(Words words) {
  char program[] = "trimora-run";
  std::vector<char*> argv = {program};
  for (std::string& word : words) argv.push_back(word.data());
  return parse_command_line(static_cast<int>(argv.size()), argv.data());
}

/// What a command line sets beside the file x, or why it is refused.
std::string outcome(const Words& words) {
  try {
    const Words usual = told(parsed({"x"})), given = told(parsed(words));
    std::string changes;
    for (std::size_t k = 0; k < usual.size(); ++k) {
      if (given[k] != usual[k]) changes += (changes.empty() ? "" : " ") + given[k];
    }
    return changes;
  } catch (const WrongUsage& wrong) {
    return "! " + wrong.why;
  }
}

// A refusal begins with "!" and is compared as far as it is written here.
TEST(CommandLine, BecomesSettings) {
  // clang-format off
  const char* const cases[][2] = {
    // files and options in any order
    {"-b3=5 x --strict",               "b3=5 strict=1"},
    {"x -b3=5 y z",                    "files=<x><y><z> b3=5"},
    {"-- -b3=5 --strict -h",           "files=<-b3=5><--strict><-h>"},
    {"x=y ./b3=5",                     "files=<x=y><./b3=5>"},
    {"x b3=5",                         "! b3=5 is not an option: options begin with -"},
    {"x -- b3=5",                      "files=<x><b3=5>"},
    {"",                               "! no file name"},
    {"--strict",                       "! no file name"},
    {"- x",                            "! -, the standard input, goes with no other file"},
    {"x -b9 --help",                   "files= asked=1"},
    {"x --columns=y -h",               "files= asked=1"},
    {"--version",                      "files= asked=2"},
    // names of options
    {"x -B3=5 -V=70 -E=.out",          "e=.out b3=5 v=70"},
    {"x -T=D",                         "! -T=D is not an option: did you mean -t?"},
    {"x --formt=fasta",                "! --formt=fasta is not an option: did you mean --format?"},
    {"x --quite",                      "! --quite is not an option: did you mean --quiet?"},
    {"x --t=D",                        "! --t=D is not an option: did you mean -t?"},
    {"x --Strict",                     "! --Strict is not an option: did you mean --strict?"},
    {"x -b7=1",                        "! -b7=1 is not an option; if it is a file: ./-b7=1"},
    {"x --output=y",                   "! --output=y is not an option; if"},
    {"x --=1",                         "! --=1 is not an option"},
    // values that are the next word
    {"-t D x --into y -b3 5",          "t=D into=y b3=5"},
    {"x --table -",                    "table=-"},
    {"x --strict y",                   "files=<x><y> strict=1"},
    {"x --into --strict",              "! --into is refused: it needs a value, --into=FOLDER"},
    {"x -p",                           "! -p is refused: it needs a value, -p=Y|T|S|N"},
    {"-t x",                           "! -t=x is refused: it has to be P (protein), D (DNA) or C (codons)"},
    {"x --into=",                      "! --into= is refused: it needs a value"},
    {"x --columns=y",                  "! --columns=y takes no value"},
    // numbers
    {"x -b3=0 -v=50 -b4=2",            "b3=0 b4=2 v=50"},
    {"x -b3=32000 -v=32000 -b0=32000", "b3=32000 b0=32000 v=32000"},
    {"x -b3=32001",                    "! -b3=32001 is refused: it has to be from 0 to 32000"},
    {"x -b3=-1",                       "! -b3=-1 is refused: it has to be from 0"},
    {"x -v=49",                        "! -v=49 is refused: it has to be from 50 to 32000"},
    {"x -b4=1",                        "! -b4=1 is refused: it has to be from 2 to 32000"},
    {"x -b0=1",                        "! -b0=1 is refused: it has to be from 2 to 32000"},
    {"x -b3=5x",                       "! -b3=5x is not a whole number: it has to be from 0 to 32000"},
    {"x -b3=0x5",                      "! -b3=0x5 is not a whole number"},
    {"x -b3=4294967297",               "! -b3=4294967297 is refused: it has to be from 0"},
    {"x -b4=-99999999999999999999",    "! -b4=-99999999999999999999 is refused: it has to be from 2"},
    // presets, over which single options win
    {"x --preset=relaxed",             "b2=51% b4=5 b5=1"},
    {"-b3=6 x -b2=45 --preset=relaxed -b5=a", "b2=45 b3=6 b4=5 b5=2"},
    {"x --preset=relaxed -b1=80% -b0=8", "b1=80% b2=51% b4=5 b0=8 b5=1"},
    {"x --preset=relaxed -b1=30",      "b1=30 b2=51% b4=5 b5=1"},
    {"x --preset=relaxed --preset=classic", ""},
    {"x --preset=none -a=y -t=C",      "t=C p=N every=1 a=1"},
    {"x -b3=4 --preset=none -b5=h",    "! -b3=4 -b5=h does not go with --preset=none"},
    {"x --preset=none -d=y",           "! -d=y does not go with --preset=none"},
    {"x --preset=none --join",         "! --preset=none does not go with --join"},
    {"x --preset=strict",              "! --preset=strict is refused: it has to be classic, relaxed or none"},
    // b1 and b2
    {"x -b1=40 -b2=45",                "b1=40 b2=45"},
    {"x -b2=45 -b1=45",                "b1=45 b2=45"},
    {"x -b1=46 -b2=45",                "! -b1 is more than -b2"},
    {"x -b1=60% -B2=95%",              "b1=60% b2=95%"},
    {"x -b1=0% -b2=100%",              "b1=0% b2=100%"},
    {"x -b1=96% -b2=95%",              "! -b1 is more than -b2"},
    {"x -b1=60% -b2=3",                "! -b1 and -b2: give both in per cent"},
    {"x -b1=6x%",                      "! -b1=6x% is refused: it has to be a whole number from 0% to 100%"},
    {"x -b2=101%",                     "! -b2=101% is refused: it has to be a whole number from 0%"},
    {"x -b2=-1%",                      "! -b2=-1% is refused"},
    {"x -b2=%",                        "! -b2=% is refused"},
    {"x -b3=5%",                       "! -b3=5% is refused: it has to be from 0 to 32000"},
    {"x -b1=x",                        "! -b1=x is not a whole number: it has to be from half of the sequences + 1"},
    {"x -b1=0",                        "! -b1=0 is refused: it has to be from half"},
    {"x -b1=3 -b2=0",                  "b1=3 b2=0"},
    {"x -b2=-1",                       "! -b2=-1 is refused: it has to be from b1 to"},
    // letters and words
    {"x -t=c -b5=H -b6=n -p=s",        "t=C p=S b5=1 b6=0"},
    {"x -t=Codons -b5=half -p=text",   "t=C p=T b5=1"},
    {"x -b5=With-Half -t=DNA -k=YES",  "t=D b5=1 k=1"},
    {"x -b5=halff",                    "! -b5=halff is refused: it has to be N (none), H (half) or A (all)"},
    {"x -p=x",                         "! -p=x is refused: it has to be Y (HTML), T (text), S (short) or N (none)"},
    {"x -k=1",                         "! -k=1 is refused: it has to be Y (yes) or N (no)"},
    {"x -s=n -p=n -d=y -n=y -u=y -b5=a", "p=N b5=2 s=0 d=1 n=1 u=1"},
    {"x -a=y -c=y -w=y --unknown=x",   "unknown=1 a=1 c=1 w=1"},
    {"x --match=order --keep-going --quiet", "match=2 keep_going=1 quiet=1"},
    {"x --match=nam",                  "! --match=nam is refused: it has to be same, name or order"},
    {"x -b3=5 -b3=6 -k=y -k=n",        "b3=6"},
    {"x -b3=5x -b3=6",                 "! -b3=5x is not"},
    // texts
    {"x -e=a=bcd",                     "e=a=bcd"},
    {"x -e=äöüßé",                     "e=äöüßé"},
    {"x -e=abcdef",                    "! -e=abcdef is refused: it has to be 1 to 5 characters"},
    {"x -e=a/b",                       "! -e=a/b is refused: it has to be without a folder"},
    {"x --format=nexus,TRIMORA",       "format=nt"},
    {"x --format=fasta,",              "! --format=fasta, is refused: it has to be fasta, phylip, nexus or trimora, or several"},
    {"x --format=fasta,fasta",         "! --format=fasta,fasta is refused"},
    {"x --into=~/y",                   "! --into=~/y: ~ is not understood there: --into=\"$HOME\"/y"},
    {"x --into=~y --columns",          "into=~y columns=1"},
    // what goes together
    {"x -a=y --match=name --name-end=| --partitions --model=WAG --name=all",
                                       "name_end=| model=WAG name=all a=1 match=1 partitions=1"},
    {"x --name-end=_ -a=y",            "! --name-end goes with --match=name"},
    {"x --partitions",                 "! --partitions goes with a concatenation: -a=y, -c=y or -w=y"},
    {"x --name=all -a=n",              "! --name goes with a concatenation"},
    {"x -c=y --name=a/b",              "! --name=a/b is refused: it has to be without a folder"},
    {"x -a=y --model=LG",              "! --model goes with --partitions"},
    {"x -w=y --partitions --model=DNA,x", "! --model=DNA,x is refused: it has to be one word"},
    {"x -b1=3 --match=name",           "! -b1=3 is a number of sequences, but with --match=name"},
    {"x -b2 5 --match=name",           "! -b2=5 is a number of sequences"},
    {"x -b2=90% --match=name",         "b2=90% match=1"},
    {"x -u=y -e=--",                   "! -e=-- and -u=y give two files one name"},
    {"x -e=-- -a=y -w=y -s=n",         "! -e=--, -a=y and -w=y give two files one name"},
    {"x -u=y -e=-- -s=n",              "e=-- s=0 u=1"},
    // the standard input
    {"-t=D -",                         "files=<-> t=D p=N"},
    {"- --format=trimora -p=n -k=n",   "files=<-> p=N format=t"},
    {"- -k=y",                         "! -k=y does not go with -, which writes no file"},
    {"- -p=t",                         "! -p=t does not go with -"},
    {"- --table=-",                    "! --table=- does not go with -"},
    {"- --overview=x",                 "! --overview=x does not go with -"},
    {"x --overview=-",                 "! --overview=- is no file: --table=- alone goes to standard output"},
    {"- --into y",                     "! --into=y does not go with -"},
    {"- -a=y --partitions",            "! -a=y does not go with -"},
    {"x -a=y --partitions=12+3",       "! --partitions=12+3 goes with -t=C or --codons"},
    {"x -a=y --codons=y --partitions=positions", "a=1 partitions=1"},
    {"x --name-begin=_",               "! --name-begin goes with --match=name"},
    {"x -a=y --match=name --name-parts=1-2 --name-end=_", "! --name-parts goes with neither"},
    {"x -a=y --match=name --name-parts=2-1", "! --name-parts=2-1 is refused: it has to be fields"},
    {"x -t=C --code=7",                "! --code=7 is refused: it has to be the number of a code"},
    {"x --code=2",                     "! --code goes with --codons or -t=C"},
    {"x -a=y --min-genes=2",           "! --min-genes goes with --match=name"},
    {"x --min-filled=5",               "! --min-filled=5 is refused: it has to be a whole number of per cent"},
    {"x --min-filled=0%",              "! --min-filled=0% is refused: it has to be a whole number from 1% to 100%"},
    {"x --min-filled=1%",              ""},
    {"x --min-species=0",              "! --min-species=0 is refused"},
    {"x --min-columns=0",              "! --min-columns=0 is refused"},
    {"x --min-species=101%",           "! --min-species=101% is refused"},
    {"x --join -a=y",                  "! -a=y does not go with --join"},
    {"- --join",                       "! --join does not go with -"},
    {"- -s=n",                         "! -s=n leaves nothing to write with -"},
    {"- --format=fasta,nexus",         "! --format takes one form with -"},
  };
  // clang-format on
  for (const auto& [line, expected] : cases) {
    std::istringstream text(line);
    const std::string found = outcome({std::istream_iterator<std::string>(text), {}});
    EXPECT_EQ(expected[0] == '!' ? found.substr(0, std::string_view(expected).size()) : found, expected) << line;
  }
  // What selects or writes goes with neither the standard input nor --join.
  for (const std::string word :
       {"-p=t", "-k=y", "-d=y", "-n=y", "-u=y", "-a=y", "-w=y", "--columns", "--min-columns=2", "--codons=y"}) {
    EXPECT_EQ(outcome({"-", word}), "! " + word + " does not go with -, which writes no file");
    EXPECT_EQ(outcome({"x", "--join", word}), "! " + word + " does not go with --join, which selects nothing");
  }
  for (const std::string word : {"-c=y", "--into=y", "--table=y", "--min-species=2"}) {
    EXPECT_EQ(outcome({"-", word}), "! " + word + " does not go with -, which writes no file");
  }
  EXPECT_EQ(outcome({"x", ""}), "! a file name is empty");
  EXPECT_EQ(outcome({"x", "-b5=with half", "--name-end", " |", "-a=y", "--match=name"}),
            "name_end= | b5=1 a=1 match=1");
}

// Of each row of the table: the values that it shows are taken, and those that it calls the default change nothing.
TEST(CommandLine, OptionsAreWhatTheyTellOfThemselves) {
  std::string described;  // defaults that are no values
  for (const Option& option : all_options()) {
    const std::string name(option.name);
    for (const auto& words : choices(option)) {
      for (const std::string& word : words) {
        EXPECT_EQ(outcome({"x", name + '=' + word, "-t=C", "-a=y"}).find('!'), std::string::npos) << name << word;
      }
    }
    if (option.standard.empty()) continue;
    const std::string found = outcome({"x", name + '=' + std::string(option.standard)});
    if (found.starts_with('!')) {
      described += name + ' ';
    } else {
      EXPECT_EQ(found, "") << name;
    }
  }
  EXPECT_EQ(described, "-t -b1 -b2 -b0 --code --model ");
}

TEST(CommandLine, HelpHasEachOptionWithinEightyColumns) {
  const std::string all = help();
  std::istringstream lines(all);
  for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 80U) << line;
  for (const Option& option : all_options()) {
    EXPECT_NE(all.find("\n  " + std::string(option.name) +
                       (option.optional        ? "[="
                        : option.takes_value() ? "="
                                               : " ")),
              std::string::npos);
  }
}

TEST(CommandLine, WildcardsOfWindows) {
  const struct {
    const char *pattern, *name;
    bool fit;
  } cases[] = {
      {"*.fas", "a.fas", true},
      {"*.fas", "A.FAS", true},
      {"*.fas", "a.fasta", false},
      {"*", "a", true},
      {"*.fas", ".fas", true},
      {"?.fas", "a.fas", true},
      {"?.fas", "ä.fas", true},
      {"?.fas", "ab.fas", false},
      {"a*b*c", "aXbYbZc", true},
      {"a*b*c", "aXbYb", false},
      {"a?", "a", false},
      {"a*", "a", true},
      {"*a*.fas", "b.fas", false},
      {"**", "", true},
      {"", "a", false},
  };
  for (const auto& c : cases) EXPECT_EQ(fits(c.pattern, c.name), c.fit) << c.pattern << ' ' << c.name;
}

}  // namespace
}  // namespace trimora::rooms
