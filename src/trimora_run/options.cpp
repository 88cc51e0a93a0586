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
  for (const Option& option : all_options()) {
    if (option.name == name) return &option;
  }
  return nullptr;
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
  const std::span<const Option> all = all_options();
  const auto nearest =
      std::min_element(all.begin(), all.end(), [&](const Option& a, const Option& b) { return steps(a) < steps(b); });
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
      {"--overview", true},
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

/// What the preset says where no option does.
void apply_preset(CommandLine& line) {
  Settings& s = line.settings;
  const Parameters& p = s.preset->parameters;
  if (!line.has("-b2")) s.b2 = p.b2;
  if (!line.has("-b3")) s.b3 = p.b3;
  if (!line.has("-b4")) s.b4 = p.b4;
  if (!line.has("-b5")) s.gaps = p.gaps;
  s.every = p.every;
  for (const char* option : {"-b0", "-b1", "-b2", "-b3", "-b4", "-b5", "-b6"}) {
    if (line.has(option)) s.in_place_of_preset += (s.in_place_of_preset.empty() ? "" : " ") + line.given.at(option);
  }
}

/// Keeping every column leaves nothing for the parameters to do, and a report on them would mislead.
void check_every(const CommandLine& line) {
  const Settings& s = line.settings;
  if (!s.in_place_of_preset.empty()) {
    throw WrongUsage{s.in_place_of_preset + " does not go with --preset=none, which keeps every column"};
  }
  for (const auto& [option, on] : {std::pair("-p", s.report != Report::none), std::pair("-d", s.map)}) {
    if (line.has(option) && on) {
      throw WrongUsage{line.given.at(option) + " does not go with --preset=none, which selects nothing"};
    }
  }
}

void check(const CommandLine& line) {
  const Settings& s = line.settings;
  const auto refuse = [](const std::string& why) { throw WrongUsage{why}; };
  if (s.files.empty()) refuse("no file name");
  if (s.files.size() > 1 && std::find(s.files.begin(), s.files.end(), "-") != s.files.end()) {
    refuse("-, the standard input, goes with no other file");
  }
  if (s.b1 && s.b2 && line.has("-b2")) {  // not with the b2 of a preset, which is at least b1
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
  if (s.into.starts_with('~') && separators.find((s.into + '/')[1]) != separators.npos) {
    const std::string rest = s.into.substr(1);
#ifdef _WIN32
    const std::string other = "--into=\"%USERPROFILE%\"" + rest + ", in PowerShell ";
#else
    const std::string other;
#endif
    refuse("--into=" + s.into + ": ~ is not understood there: " + other + "--into=\"$HOME\"" + rest);
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
  if (!s.codons.empty() && s.kind.value_or(trimora::Kind::protein) != trimora::Kind::protein) {
    refuse("--codons goes with proteins, not with " + line.given.at("-t"));
  }
  if (s.join) {
    for (const char* option : {"--preset", "-s", "-p", "-k", "-d", "-n", "-u", "-a", "-w", "--columns", "--min-filled",
                               "--min-columns", "--codons"}) {
      const bool on =
          line.has(option) && !line.given.at(option).ends_with("=n") && !line.given.at(option).ends_with("=N");
      if (on) refuse(line.given.at(option) + " does not go with --join, which selects nothing");
    }
  }
  if (s.every) check_every(line);
  for (const char* option : {"--occupancy", "--overview"}) {
    if (line.has(option) && line.given.at(option).ends_with("=-")) {
      refuse(line.given.at(option) + " is no file: --table=- alone goes to standard output");
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
  for (const Option& option : all_options()) {
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
  apply_preset(line);
  check(line);
  if (line.settings.join) {
    line.settings.blocks = false;
    line.settings.report = Report::none;
  }
  if (line.settings.filter() || line.settings.every) {
    line.settings.report = Report::none;
  }
  line.settings.command.assign(argv + 1, argv + argc);
  line.settings.given.assign(line.given.begin(), line.given.end());
  return line.settings;
}

}  // namespace trimora::rooms
