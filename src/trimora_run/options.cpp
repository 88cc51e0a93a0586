#include "trimora_run/options.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <iterator>
#include <map>
#include <numeric>
#include <optional>
#include <system_error>
#include <utility>

#include "batch/genetic_code.h"
#include "ground/path.h"
#include "input/letters.h"
#include "trimora_run/wildcards.h"

namespace trimora::rooms {

namespace {

// ---- What the rows of the table need

/// The whole number that `text` is; one too large for an int becomes the nearest that fits.
std::optional<int> whole_number(std::string_view text) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error == std::errc::invalid_argument || end != text.data() + text.size()) return {};
  if (error == std::errc::result_out_of_range) return text.starts_with('-') ? -2'147'483'647 : 2'147'483'647;
  return number;
}

namespace rows {

template <auto member, typename Enum>
void choose(int choice, Settings& settings) {
  settings.*member = static_cast<Enum>(choice);
}

/// b1 and b2: a number from `least`, or a whole per cent.
template <auto member, int least>
std::string_view sequences(std::string_view value, Settings& settings) {
  const bool per_cent = value.ends_with('%');
  if (per_cent) value.remove_suffix(1);
  const auto number = whole_number(value);
  if (per_cent && (!number || *number < 0 || *number > 100)) return "a whole number from 0% to 100%";
  if (!number || (!per_cent && *number < least)) {
    return least > 0 ? "from half of the sequences + 1 to b2, or per cent, as -b1=60%"
                     : "from b1 to the number of sequences, or per cent, as -b2=95%";
  }
  settings.*member = trimora::Sequences{*number, per_cent};
  return "";
}

bool has_separator(std::string_view value) {
  return value.find_first_of(separators) != value.npos;
}

std::string_view suffix(std::string_view value, Settings& settings) {
  const auto continues = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; };  // a letter of UTF-8
  if (has_separator(value)) return "without a folder: that is --into=";
  if (std::ssize(value) - std::count_if(value.begin(), value.end(), continues) > 5) return "1 to 5 characters";
  settings.suffix = value;
  return "";
}

/// A model is one word of a line whose parts end at commas.
std::string_view model(std::string_view value, Settings& settings) {
  const bool word = std::none_of(value.begin(), value.end(), [](char c) { return c == ',' || c == '=' || c <= ' '; });
  settings.model = value;
  return word ? "" : "one word without , and =";
}

std::string_view name(std::string_view value, Settings& settings) {
  settings.name = value;
  return has_separator(value) ? "without a folder: that is --into=" : "";
}

std::string_view genetic_code(std::string_view value, Settings& settings) {
  const auto number = whole_number(value);
  if (!number || !GeneticCode::numbered(*number)) return "the number of a code: 1 to 6, 9 to 16 or 21 to 33";
  settings.code = *number;
  return "";
}

/// An optional word.
std::string_view partitions(std::string_view value, Settings& settings) {
  constexpr std::pair<std::string_view, Division> words[] = {
      {"genes", Division::genes}, {"positions", Division::positions}, {"12+3", Division::third}};
  settings.partitions = true;
  settings.division.reset();
  for (const auto& [word, division] : words) {
    if (value == word) settings.division = division;
  }
  return value.empty() || settings.division ? "" : "genes, positions or 12+3";
}

std::string_view min_filled(std::string_view value, Settings& settings) {
  if (!value.ends_with('%')) return "a whole number of per cent, as 50%";
  const auto number = whole_number(value.substr(0, value.size() - 1));
  if (!number || *number < 1 || *number > 100) return "a whole number from 1% to 100%";
  settings.min_filled = *number;
  return "";
}

/// A number from 1, or a whole per cent.
template <auto member>
std::string_view least(std::string_view value, Settings& settings) {
  const bool per_cent = value.ends_with('%');
  if (per_cent) value.remove_suffix(1);
  const auto number = whole_number(value);
  if (!number || *number < 1 || (per_cent && *number > 100)) return "a whole number from 1, or from 1% to 100%";
  settings.*member = trimora::Sequences{*number, per_cent};
  return "";
}

/// The fields of a name that tell its species: a number, a range, or a word.
std::string_view name_parts(std::string_view value, Settings& settings) {
  using Style = KeyRule::Style;
  constexpr std::pair<std::string_view, Style> words[] = {
      {"OS", Style::organism}, {"brackets", Style::brackets}, {"letters", Style::letters}};
  for (const auto& [word, style] : words) {
    if (value == word) {
      settings.name_parts = {.style = style};
      return "";
    }
  }
  const std::size_t dash = value.find('-');
  const auto first = whole_number(value.substr(0, dash));
  const auto last = dash == value.npos ? first : whole_number(value.substr(dash + 1));
  if (!first || !last || *first < 1 || *last < *first) return "fields, as 2 or 1-2, or OS, brackets or letters";
  settings.name_parts = {.style = Style::fields, .first = *first, .last = *last};
  return "";
}

template <Asked asked>
std::string_view ask(std::string_view, Settings& settings) {
  settings.asked = asked;
  return "";
}

// ---- The table

using enum Group;
using S = Settings;
constexpr std::string_view yes_or_no = "Y yes|N no";

// clang-format off
constexpr Option options[] = {
// group       name            values                            default        sets
//   brief (range, more)
  {parameters, "-t",           "P protein|D DNA|C codons",       "by the letters", choose<&S::kind, trimora::Kind>,
   "type of sequence: protein, DNA, codons; codons are never guessed"},
  {parameters, "-b1",          "NUMBER",                         "half + 1",    sequences<&S::b1, 1>,
   "sequences a conserved position needs", {0, 0, "half + 1 to b2"}},
  {parameters, "-b2",          "NUMBER",                         "85 %",        sequences<&S::b2, 0>,
   "sequences a flank position needs", {0, 0, "b1 to all sequences"}},
  {parameters, "-b3",          "NUMBER",                         "8",           &S::b3,
   "most nonconserved positions in a row", {0, 32000}},
  {parameters, "-b4",          "NUMBER",                         "10",          &S::b4,
   "shortest block, after gap positions are cut out", {2, 32000},
   "With `-t=C` keep it at 5 or more: a shorter block may hold no whole codon."},
  {parameters, "-b0",          "NUMBER",                         "as b4",       &S::b0,
   "shortest initial block, before that", {2, 32000}},
  {parameters, "-b5",          "N none|H half with-half|A all",  "N",           choose<&S::gaps, trimora::Gaps>,
   "gaps in a position: none, in up to half the sequences, any"},
  {parameters, "-b6",          yes_or_no,                        "Y",           &S::similarity,
   "use the similarity matrix, for proteins"},

  {files,      "-s",           yes_or_no,                        "Y",           &S::blocks,
   "write the selected blocks, FILE-tr.fasta"},
  {files,      "-p",           "Y HTML yes|T text|S short|N none no", "Y",      choose<&S::report, Report>,
   "write the report, FILE-tr.htm: HTML, text, short text, none"},
  {files,      "-v",           "NUMBER",                         "60",          &S::line_length,
   "characters per line of the report", {50, 32000}},
  {files,      "-k",           yes_or_no,                        "N",           &S::mask,
   "write the mask, FILE-trMask"},
  {files,      "-d",           yes_or_no,                        "N",           &S::map,
   "write the PostScript map of the blocks, FILE-trPS"},
  {files,      "-n",           yes_or_no,                        "N",           &S::nonconserved,
   "write the nonconserved blocks, FILE-trComp.fasta", {},
   "All positions that are not selected."},
  {files,      "-u",           yes_or_no,                        "N",           &S::ungapped,
   "write the ungapped alignment, FILE--.fasta", {},
   "All positions without a gap, selected or not."},
  {files,      "-e",           "TEXT",                           "-tr",         suffix,
   "suffix of the files written", {0, 0, "1 to 5 characters"}},
  {files,      "--format",     "fasta|phylip|nexus|trimora[,...]", "fasta",      &S::forms,
   "forms of the alignments written, several with commas", {},
   "See [the forms](files.md#forms). `trimora` writes the groups of ten of the program trimora, without an ending of its own."},
  {files,      "--unknown",    "keep|x",                         "keep",        choose<&S::unknown, Unknown>,
   "residues that stop other programs: as they are, or as X, in DNA N", {},
   "These are `!`, `*` and, in proteins, U, O and J."},
  {files,      "--into",       "FOLDER",                         "",            &S::into,
   "write everything into this folder, not beside the alignments", {},
   "It is made when it is missing. Two alignments of one name are refused."},
  {files,      "--columns",    "",                               "",            &S::columns,
   "write what became of each column, FILE-tr.columns.tsv", {},
   "See [the file](files.md#columns)."},

  {batch,      "-a",           yes_or_no,                        "N",           &S::all_blocks,
   "write the concatenated selected blocks"},
  {batch,      "-c",           yes_or_no,                        "N",           &S::all_input,
   "write the concatenated input alignments"},
  {batch,      "-w",           yes_or_no,                        "N",           &S::all_ungapped,
   "write the concatenated ungapped alignments"},
  {batch,      "--match",      "same|name|order",                "same",        choose<&S::match, Match>,
   "concatenate by order, where names have to be the same; by name, with ? where an alignment lacks one; or by order, whatever the names", {},
   "With `name`, species come in the order in which they first appear, and each alignment has its own b1 and b2."},
  {batch,      "--name-end",   "CHARACTERS",                     "",            &S::name_end,
   "with --match=name: the name of a species ends before the first of these characters, not at the first blank", {},
   "`--name-end='|'` takes `Homo_sapiens|gene1` as `Homo_sapiens`."},
  {batch,      "--name-begin", "CHARACTERS",                     "",            &S::name_begin,
   "the name of a species begins after the first of these characters", {},
   "`--name-begin=_` takes `uce-7_homo_sapiens` as `homo_sapiens`."},
  {batch,      "--name-parts", "FIELDS",                         "",            name_parts,
   "the name of a species is these fields between _, | and blanks: one, as 2, or several, as 1-2", {},
   "`--name-parts=1-2` takes `Homo_sapiens_XP_000.1` as `Homo_sapiens`. `OS` takes what follows `OS=`, `brackets` what is in the last `[ ]`, `letters` the letters before the first digit, as in the identifiers of Ensembl."},
  {batch,      "--codons",     "PATH",                           "",            &S::codons,
   "coding sequences of protein alignments, aligned or not, a folder, list or file: writes the codons of the selected columns, FILE-tr.codons.fasta", {},
   "Files are matched by name up to the first dot, sequences by name; see [codons](files.md#codons)."},
  {batch,      "--codon-names", "FILE",                          "",            &S::codon_names,
   "two columns: names of proteins, and names of their coding sequences"},
  {batch,      "--code",       "NUMBER",                         "1",           genetic_code,
   "genetic code, under its number at NCBI, for --codons and -t=C", {0, 0, "1 to 6, 9 to 16 or 21 to 33"}},
  {batch,      "--join",       "",                               "",            &S::join,
   "put alignments together that were trimmed before: nothing is selected, dropped or written for each", {},
   "It writes the concatenation of the alignments as they are, as -c=y does; with one column or none they are taken, too."},
  {batch,      "--occupancy",  "FILE",                           "",            &S::occupancy,
   "with a concatenation, write the letters of each species in each alignment", {},
   "See [the file](files.md#occupancy)."},
  {batch,      "--species",    "FILE",                           "",            &S::species,
   "keep only the species listed in FILE, in its order; a second column renames them"},
  {batch,      "--min-filled", "SHARE",                          "",            min_filled,
   "before selection, leave out sequences with fewer letters than this share of the median of their alignment, as 50%"},
  {batch,      "--min-species", "SHARE",                         "",            least<&S::min_species>,
   "leave out alignments with fewer species, as 75% of those of all alignments or as a number"},
  {batch,      "--min-columns", "NUMBER",                        "",            &S::min_columns,
   "leave out alignments with fewer selected columns", {1, 2'000'000'000}},
  {batch,      "--min-genes",  "SHARE",                          "",            least<&S::min_genes>,
   "leave species out of the concatenations that are in fewer of the alignments, as 25% or as a number"},
  {batch,      "--partitions", "genes|positions|12+3",           "",            partitions,
   "with each concatenation, write which columns are of which alignment, for RAxML (.partitions), IQ-TREE and MrBayes (.nex)", {},
   "`genes` makes one partition of each alignment, `positions` three of its codon positions, as is usual with -t=C, `12+3` two. For the codon models of IQ-TREE (`-st CODON`, with the number of the genetic code) write `genes`. See [partitions](files.md#partitions).", true},
  {batch,      "--model",      "NAME",                           "DNA, LG",     model,
   "model named in the partitions for RAxML"},
  {batch,      "--name",       "NAME",                           "",            name,
   "name of the concatenations, not that of the input"},
  {batch,      "--keep-going", "",                               "",            &S::keep_going,
   "go on after an alignment that fails", {},
   "It is named and left out of the concatenations, and the exit status is 1."},

  {run,        "--table",      "FILE",                           "",            &S::table,
   "write a line for each alignment: sizes, status, message", {},
   "See [the table](files.md#table). With `--table=-` it goes to standard output, and the account of the run to standard error."},
  {run,        "--strict",     "",                               "",            &S::strict,
   "make the exit status 1 if there was any note"},
  {run,        "--quiet",      "",                               "",            &S::quiet,
   "say nothing on standard output; notes are said all the same"},
  {run,        "--help",       "",                               "",            ask<Asked::help>,
   "show the options, and run nothing"},
  {run,        "--version",    "",                               "",            ask<Asked::version>,
   "show the version, and run nothing"},
};
// clang-format on

}  // namespace rows

using rows::options;

constexpr char help_opening[] = R"(Usage: trimora-run FILE ... [-X=VALUE ...] [--OPTION ...]
Trims each FILE: an alignment, a folder of alignments, or a list of them, one a
line. FASTA, NBRF/PIR, CLUSTAL, PHYLIP, NEXUS, Stockholm, MSF; also as .gz.
Example: trimora-run globins.fas -b5=h    writes globins.fas-tr.fasta, the
selected blocks, and globins.fas-tr.htm, the report, beside the alignment.
FILE may be -: zcat x.fas.gz | trimora-run - -t=D > out.fasta
Exit status: 0 done, 1 failed or something is incomplete, 2 wrong usage.
)";
constexpr char help_end[] = R"(Defaults are in parentheses. -b1 and -b2 take per cent of the sequences, too:
-b1=60% -b2=95%. Options and files come in any order; -- ends the options.
)";

const Option* option_called(std::string_view name) {
  const auto* found =
      std::find_if(std::begin(options), std::end(options), [&](const Option& o) { return o.name == name; });
  return found == std::end(options) ? nullptr : found;
}

std::string lowered(std::string_view text) {
  std::string letters(text);
  std::transform(letters.begin(), letters.end(), letters.begin(), lower);
  return letters;
}

std::vector<std::string> split(std::string_view text, char at) {
  std::vector<std::string> parts(1);
  for (const char c : text) {
    if (c == at) {
      parts.emplace_back();
    } else {
      parts.back() += c;
    }
  }
  return parts;
}

/// The number of the choice that `value` names in letters of either case, from 0.
std::optional<int> choice_called(std::string_view value, const Option& option) {
  std::string word = lowered(value);
  std::replace(word.begin(), word.end(), ' ', '-');  // "with half"
  const auto all = choices(option);
  for (std::size_t k = 0; k < all.size(); ++k) {
    for (const std::string& known : all[k]) {
      if (lowered(known) == word) return static_cast<int>(k);
    }
  }
  return {};
}

/// What a value has to be: "Y (yes), T (text) or N (no)", "same, name or order".
std::string choices_in_words(const Option& option) {
  const auto all = choices(option);
  std::string text;
  for (std::size_t k = 0; k < all.size(); ++k) {
    if (k > 0) text += k + 1 < all.size() ? ", " : " or ";
    text += all[k].front();
    if (all[k].size() > 1) text += " (" + all[k][1] + ")";
  }
  return text;
}

/// How many letters have to be changed, added or taken away to make `b` of `a`.
std::size_t distance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (const char letter : a) {
    std::size_t diagonal = row[0]++;
    for (std::size_t k = 1; k <= b.size(); ++k) {
      const std::size_t changed = diagonal + (letter == b[k - 1] ? 0 : 1);
      diagonal = row[k];
      row[k] = std::min({changed, row[k] + 1, row[k - 1] + 1});
    }
  }
  return row[b.size()];
}

/// An option that is not in the table, with the nearest one that is.
std::string unknown_option(const std::string& word, std::string_view name) {
  const auto bare = [](std::string_view text) {
    return lowered(text.substr(std::min(text.find_first_not_of('-'), text.size())));
  };
  const auto steps = [&](const Option& o) { return distance(bare(name), bare(o.name)); };
  const auto* nearest = std::min_element(std::begin(options), std::end(options),
                                         [&](const Option& a, const Option& b) { return steps(a) < steps(b); });
  std::string text = word + " is not an option";
  if (steps(*nearest) == 0 || 2 * steps(*nearest) < bare(nearest->name).size()) {
    return text + ": did you mean " + std::string(nearest->name) + "?";
  }
  return text + "; if it is a file: ./" + word;
}

// ---- The command line

/// What has been read of it.
struct CommandLine {
  Settings settings;
  std::map<std::string_view, std::string> given;  // each option that was given, by its name, as it was written last

  bool has(std::string_view name) const { return given.contains(name); }
};

/// Sets what an option says. Each returns what the value has to be when it is not, and otherwise "".
struct Taking {
  const Option& option;
  std::string_view value;
  Settings& settings;

  std::string operator()(bool Settings::*member) const {
    return chosen(option.takes_value() ? choice_called(value, option) : 0,
                  [&](int choice) { settings.*member = choice == 0; });
  }
  std::string operator()(void (*set)(int, Settings&)) const {
    return chosen(choice_called(value, option), [&](int choice) { set(choice, settings); });
  }
  template <typename Number>  // which may be optional
  std::string operator()(Number Settings::*member) const {
    const auto number = whole_number(value);
    if (!number || *number < option.range.least || *number > option.range.most) return "from " + option.range.text();
    settings.*member = *number;
    return "";
  }
  std::string operator()(std::string Settings::*member) const {
    settings.*member = value;
    return "";
  }
  std::string operator()(std::vector<trimora::Form> Settings::*member) const {
    std::vector<trimora::Form> forms;
    for (const std::string& word : split(value, ',')) {
      const auto choice = choice_called(word, option);
      const auto form = static_cast<trimora::Form>(choice.value_or(0));
      if (!choice || std::count(forms.begin(), forms.end(), form) > 0) {
        return choices_in_words(option) + ", or several with commas";
      }
      forms.push_back(form);
    }
    settings.*member = std::move(forms);
    return "";
  }
  std::string operator()(std::string_view (*set)(std::string_view, Settings&)) const {
    return std::string(set(value, settings));
  }

 private:
  template <typename Set>
  std::string chosen(std::optional<int> choice, Set set) const {
    if (!choice) return choices_in_words(option);
    set(*choice);
    return "";
  }
};

void take(const Option& option, const std::string& word, std::string_view value, CommandLine& line) {
  const std::string right = std::visit(Taking{option, value, line.settings}, option.sets);
  if (!right.empty()) {
    const bool no_number = option.values == "NUMBER" && !value.ends_with('%') && !whole_number(value);
    throw WrongUsage{word + (no_number ? " is not a whole number" : " is refused") + ": it has to be " + right};
  }
  line.given[option.name] = word;
}

/// Read the option that argv[k] begins with. Returns the number of the last word that belongs to it: its value may be the
/// next one.
int take_option(int argc, char* argv[], int k, CommandLine& line) {
  std::string word = argv[k];
  const std::size_t equals = word.find('=');
  std::string name = word.substr(0, equals);
  if (!name.starts_with("--") && name.size() > 1 && name[1] != 'T') name[1] = lower(name[1]);
  const Option* option = option_called(name);
  if (!option) throw WrongUsage{unknown_option(word, name)};
  const bool joined = equals != word.npos;
  if (!option->takes_value() || (option->optional && !joined)) {
    if (joined) throw WrongUsage{word + " takes no value"};
    take(*option, word, "", line);
    return k;
  }
  std::string value = joined ? word.substr(equals + 1) : "";
  if (!joined && k + 1 < argc && (argv[k + 1][0] != '-' || argv[k + 1][1] == '\0')) {
    value = argv[++k];
    word += '=' + value;
  }
  if (value.empty()) {
    throw WrongUsage{word + " is refused: it needs a value, " + name + "=" + shown_values(*option)};
  }
  take(*option, word, value, line);
  return k;
}

void take_file(const std::string& word, bool options_ended, CommandLine& line) {
  if (word.empty()) throw WrongUsage{"a file name is empty"};
  const std::size_t equals = word.find('=');
  if (!options_ended && equals != word.npos && option_called("-" + word.substr(0, equals))) {
    throw WrongUsage{word + " is not an option: options begin with -"};
  }
  for (std::string& file : expand_wildcards(word)) line.settings.files.push_back(std::move(file));
}

// ---- What contradicts itself or would be without effect

/// What a filter cannot do: it writes no file.
void check_filter(const CommandLine& line) {
  const Settings& s = line.settings;
  if (s.forms.size() > 1) {
    throw WrongUsage{"--format takes one form with -: only one alignment goes to standard output"};
  }
  const std::pair<std::string_view, bool> writing[] = {
      {"-p", s.report != Report::none},
      {"-k", s.mask},
      {"-d", s.map},
      {"-n", s.nonconserved},
      {"-u", s.ungapped},
      {"-a", s.all_blocks},
      {"-c", s.all_input},
      {"-w", s.all_ungapped},
      {"--into", true},
      {"--columns", true},
      {"--partitions", true},
      {"--table", true},
      {"--join", true},
      {"--codons", true},
      {"--min-species", true},
      {"--min-columns", true},
  };
  for (const auto& [option, writes] : writing) {
    if (line.has(option) && writes) {
      throw WrongUsage{line.given.at(option) + " does not go with -, which writes no file"};
    }
  }
  if (!s.blocks) throw WrongUsage{"-s=n leaves nothing to write with -"};
}

void check(const CommandLine& line) {
  const Settings& s = line.settings;
  const auto refuse = [](const std::string& why) { throw WrongUsage{why}; };
  if (s.files.empty()) refuse("no file name");
  if (s.files.size() > 1 && std::find(s.files.begin(), s.files.end(), "-") != s.files.end()) {
    refuse("-, the standard input, goes with no other file");
  }
  if (s.b1 && s.b2) {
    const bool lowest = !s.b2->percent && s.b2->number == 0;
    if (s.b1->percent != s.b2->percent && !lowest) refuse("-b1 and -b2: give both in per cent, or both as numbers");
    if (s.b1->number > s.b2->number && !lowest) refuse("-b1 is more than -b2: a flank position is conserved, too");
  }
  for (const auto& [option, sequences] : {std::pair("-b1", s.b1), std::pair("-b2", s.b2)}) {
    if (s.match == Match::name && sequences && !sequences->percent) {
      refuse(line.given.at(option) +
             " is a number of sequences, but with --match=name alignments may differ in it: give per cent, as -b1=60%");
    }
  }
  if ((s.into + '/').starts_with("~/")) {
    refuse("--into=" + s.into + ": ~ is not understood there: --into=\"$HOME\"" + s.into.substr(1));
  }
  if (!s.concatenates()) {
    for (const char* option : {"--partitions", "--name", "--occupancy", "--min-genes"}) {
      if (line.has(option)) refuse(std::string(option) + " goes with a concatenation: -a=y, -c=y or -w=y");
    }
  }
  if (s.division && *s.division != Division::genes && s.kind != trimora::Kind::codons && s.codons.empty()) {
    refuse(line.given.at("--partitions") + " goes with -t=C or --codons");
  }
  if (!s.model.empty() && !s.partitions) refuse("--model goes with --partitions");
  for (const char* option : {"--name-begin", "--name-end", "--name-parts"}) {
    const bool tells = s.match == Match::name || !s.species.empty() || (s.min_species && s.min_species->percent);
    if (line.has(option) && !tells) refuse(std::string(option) + " goes with --match=name");
    if (line.has(option) && line.has("--name-parts") && option != std::string_view("--name-parts")) {
      refuse("--name-parts goes with neither --name-begin nor --name-end");
    }
  }
  if (s.min_genes && s.match != Match::name) refuse("--min-genes goes with --match=name");
  if (!s.codon_names.empty() && s.codons.empty()) refuse("--codon-names goes with --codons");
  if (s.code && s.codons.empty() && s.kind != trimora::Kind::codons) refuse("--code goes with --codons or -t=C");
  if (!s.codons.empty() && s.kind.value_or(trimora::Kind::protein) != trimora::Kind::protein)
    refuse("--codons goes with proteins, not with " + line.given.at("-t"));
  if (s.join) {
    for (const char* option :
         {"-s", "-p", "-k", "-d", "-n", "-u", "-a", "-w", "--columns", "--min-filled", "--min-columns", "--codons"}) {
      const bool on =
          line.has(option) && !line.given.at(option).ends_with("=n") && !line.given.at(option).ends_with("=N");
      if (on) refuse(line.given.at(option) + " does not go with --join, which selects nothing");
    }
  }
  if (s.suffix == "--" && s.ungapped && s.blocks) refuse("-e=-- and -u=y give two files one name");
  if (s.suffix == "--" && s.all_blocks && s.all_ungapped) refuse("-e=--, -a=y and -w=y give two files one name");
  if (s.filter()) check_filter(line);
}

}  // namespace

std::string_view heading(Group group) {
  switch (group) {
    case Group::parameters: return "What is selected";
    case Group::files: return "Files written";
    case Group::batch: return "Several alignments";
    case Group::run: return "The run";
  }
  return "";
}

std::span<const Option> all_options() {
  return options;
}

std::vector<std::vector<std::string>> choices(const Option& option) {
  std::vector<std::vector<std::string>> all;
  if (option.values.find('|') == option.values.npos) return all;
  for (const std::string& words : split(option.values.substr(0, option.values.find('[')), '|')) {
    all.push_back(split(words, ' '));
  }
  return all;
}

std::string shown_values(const Option& option) {
  const auto all = choices(option);
  if (all.empty()) return std::string(option.values);
  std::string text;
  for (const auto& words : all) text += (text.empty() ? "" : "|") + words.front();
  return text + std::string(option.values.substr(std::min(option.values.find('['), option.values.size())));
}

std::string ValueRange::text() const {
  return most == 0 ? std::string(words) : std::to_string(least) + " to " + std::to_string(most);
}

std::string help() {
  constexpr std::size_t width = 80, column = 14;  // of the texts
  std::string text = help_opening;
  const Option* previous = nullptr;
  for (const Option& option : options) {
    if (!previous || option.group != previous->group) text += std::string(heading(option.group)) + ":\n";
    previous = &option;
    const std::string equals = option.optional ? "[=" : option.takes_value() ? "=" : "";
    std::string line =
        "  " + std::string(option.name) + equals + shown_values(option) + (option.optional ? "]  " : "  ");
    line.resize(std::max(line.size(), column), ' ');
    std::vector<std::string> words = split(option.brief, ' ');
    if (const std::string range = option.range.text(); !range.empty()) {
      words.back() += ':';
      for (std::string& word : split(range, ' ')) words.push_back(std::move(word));
    }
    if (!option.standard.empty()) words.push_back("(" + std::string(option.standard) + ")");
    bool first = true;
    for (const std::string& word : words) {
      if (line.size() + word.size() + (first ? 0 : 1) > width) {
        text += line.substr(0, line.find_last_not_of(' ') + 1) + '\n';
        line.assign(column, ' ');
        first = true;
      }
      line += (first ? "" : " ") + word;
      first = false;
    }
    text += line + '\n';
  }
  return text + help_end;
}

Settings parse_command_line(int argc, char* argv[]) {
  CommandLine line;
  for (int k = 1; k < argc && argv[k] != std::string_view("--"); ++k) {  // even where all else is wrong
    const std::string word = argv[k] == std::string_view("-h") ? "--help" : argv[k];
    if (word != "--help" && word != "--version") continue;
    take(*option_called(word), word, "", line);
    return line.settings;
  }
  bool options_ended = false;
  for (int k = 1; k < argc; ++k) {
    const std::string_view word = argv[k];
    if (options_ended || !word.starts_with('-') || word == "-") {
      take_file(argv[k], options_ended, line);
    } else if (word == "--") {
      options_ended = true;
    } else {
      k = take_option(argc, argv, k, line);
    }
  }
  if (line.settings.join) line.settings.all_input = true;
  check(line);
  if (line.settings.join) {
    line.settings.blocks = false;
    line.settings.report = Report::none;
  }
  if (line.settings.filter()) {
    line.settings.report = Report::none;
  }
  return line.settings;
}

}  // namespace trimora::rooms
