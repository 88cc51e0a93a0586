#include "trimora_run/arguments.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <charconv>
#include <cstddef>
#include <filesystem>
#include <iterator>
#include <numeric>
#include <string_view>
#include <system_error>
#include <utility>

#include "ground/system_path.h"
#include "input/letters.h"

namespace {

/// An option that only trimora-run has.
struct Own {
  std::string_view name;
  std::string_view values;  // the words it takes, as "one|two", or what they are, in capitals; "": it takes none
  bool (*take)(const std::string& value, Arguments& arguments);  // tells whether the value is one that it takes
};

constexpr std::pair<std::string_view, Match> matches[] = {
    {"same", Match::same}, {"name", Match::name}, {"order", Match::order}};

bool takematch(const std::string& value, Arguments& arguments) {
  const auto* found =
      std::find_if(std::begin(matches), std::end(matches), [&](const auto& m) { return m.first == value; });
  if (found == std::end(matches)) return false;
  arguments.match = found->second;
  return true;
}

bool takeforms(const std::string& value, Arguments& arguments) {
  const auto forms = formsof(value);
  if (forms) arguments.forms = *forms;
  return forms.has_value();
}

/// A model is one word of a line that is taken apart at commas.
bool takemodel(const std::string& value, Arguments& arguments) {
  arguments.model = value;
  return std::none_of(value.begin(), value.end(), [](char c) { return c == ',' || c == '=' || c <= ' '; });
}

// clang-format off
constexpr Own options[] = {
// name           values                                     sets
  {"--match",      "same|name|order",                         takematch},
  {"--name-end",   "CHARACTERS",                              [](const std::string& v, Arguments& a) { a.nameend = v; return true; }},
  {"--partitions", "",                                        [](const std::string&, Arguments& a) { return a.partitions = true; }},
  {"--model",      "NAME",                                    takemodel},
  {"--format",     "trimora|fasta|phylip|nexus[,...]",        takeforms},
  {"--into",       "FOLDER",                                  [](const std::string& v, Arguments& a) { a.into = v; return true; }},
  {"--columns",    "",                                        [](const std::string&, Arguments& a) { return a.columns = true; }},
  {"--table",      "FILE",                                    [](const std::string& v, Arguments& a) { a.table = v; return true; }},
  {"--keep-going", "",                                        [](const std::string&, Arguments& a) { return a.keepgoing = true; }},
  {"--strict",     "",                                        [](const std::string&, Arguments& a) { return a.strict = true; }},
};
// clang-format on

/// How many letters have to be changed, added or taken away to make `b`, the name of an option, of `a`.
std::size_t distance(std::string_view a, std::string_view b) {
  std::array<std::size_t, 32> row{};
  assert(b.size() < row.size());
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t diagonal = row[0]++;
    for (std::size_t k = 1; k <= b.size(); ++k) {
      const std::size_t changed = diagonal + (a[i - 1] == b[k - 1] ? 0 : 1);
      diagonal = row[k];
      row[k] = std::min({changed, row[k] + 1, row[k - 1] + 1});
    }
  }
  return row[b.size()];
}

std::string unknown(const std::string& word, std::string_view name) {
  const auto* nearest = std::min_element(std::begin(options), std::end(options), [&](const Own& a, const Own& b) {
    return distance(name, a.name) < distance(name, b.name);
  });
  std::string text = word + " is not an option";
  if (distance(name, nearest->name) <= 3) text += ": did you mean " + std::string(nearest->name) + "?";
  return text;
}

std::string takeown(const std::string& word, Arguments& arguments) {
  const std::size_t equals = word.find('=');
  const std::string name = word.substr(0, equals);
  const auto* own = std::find_if(std::begin(options), std::end(options), [&](const Own& o) { return o.name == name; });
  if (own == std::end(options)) return unknown(word, name);
  const bool valued = equals != std::string::npos;
  if (own->values.empty() && valued) return word + " takes no value";
  const std::string value = valued ? word.substr(equals + 1) : "";
  if (!own->values.empty() && value.empty()) {
    return word + " is refused: it needs a value, " + name + "=" + std::string(own->values);
  }
  if (!own->take(value, arguments)) return word + " is refused: it has to be " + std::string(own->values);
  return "";
}

/// Take -b1=NUMBER% or -b2=NUMBER%.
std::string takepercent(const std::string& word, Arguments& arguments) {
  int percent = -1;
  const char* end = word.data() + word.size() - 1;
  const auto [read, error] = std::from_chars(word.data() + 4, end, percent);
  if (error != std::errc() || read != end || percent < 0 || percent > 100) {
    return word + " is refused: it has to be a whole number from 0% to 100%";
  }
  (word[2] == '1' ? arguments.b1percent : arguments.b2percent) = percent;
  return "";
}

bool ispercent(std::string_view word) {
  return word.size() > 4 && word[0] == '-' && lower(word[1]) == 'b' && (word[2] == '1' || word[2] == '2') &&
         word[3] == '=' && word.back() == '%';
}

/// The last of trimora's own options that begins with `name`, such as "-b1=", as far as it was given.
std::string settled(const Arguments& arguments, std::string_view name) {
  for (auto word = arguments.settled.rbegin(); word != arguments.settled.rend(); ++word) {
    std::string text = *word;
    if (text.size() > 1) text[1] = lower(text[1]);
    if (text.starts_with(name)) return text;
  }
  return "";
}

/// Whether the option is given with another value than N.
bool wanted(const Arguments& arguments, std::string_view name) {
  const std::string text = settled(arguments, name);
  return text.size() > name.size() && capital(text[name.size()]) != 'N';
}

/// What a filter cannot do: it writes no file.
std::string nofilter(const Arguments& arguments) {
  if (arguments.forms.size() > 1) return "--format takes one form with -: only one alignment goes to standard output";
  for (const char* name : {"-p=", "-k=", "-d=", "-n=", "-u=", "-a=", "-c=", "-w="}) {
    if (wanted(arguments, name)) return settled(arguments, name) + " does not go with -, which writes no file";
  }
  if (!settled(arguments, "-s=").empty() && !wanted(arguments, "-s=")) return "-s=n leaves nothing to write with -";
  const std::pair<bool, const char*> others[] = {{!arguments.into.empty(), "--into"},
                                                 {arguments.columns, "--columns"},
                                                 {!arguments.table.empty(), "--table"},
                                                 {arguments.partitions, "--partitions"}};
  for (const auto& [given, name] : others) {
    if (given) return std::string(name) + " does not go with -, which writes no file";
  }
  return "";
}

/// What contradicts itself or would be without effect.
std::string contradiction(const Arguments& arguments) {
  const auto& [b1, b2] = std::pair(arguments.b1percent, arguments.b2percent);
  const std::string b1number = settled(arguments, "-b1="), b2number = settled(arguments, "-b2=");
  if (b1 && b2 && *b1 > *b2) return "-b1 is more than -b2: a flank position is conserved, too";
  if ((b1 || b2) && !(b1number.empty() && b2number.empty())) {
    return "-b1 and -b2: give both in per cent, or both as numbers";
  }
  const bool concatenates = wanted(arguments, "-a=") || wanted(arguments, "-c=") || wanted(arguments, "-w=");
  if (arguments.match == Match::name && !(b1number.empty() && b2number.empty())) {
    return (b1number.empty() ? b2number : b1number) +
           " is a number of sequences, but with --match=name alignments may differ in it: give per cent, as -b1=60%";
  }
  if ((arguments.into + '/').starts_with("~/")) {
    return "--into=" + arguments.into + ": ~ is not understood there: --into=\"$HOME\"" + arguments.into.substr(1);
  }
  if (arguments.partitions && !concatenates) return "--partitions goes with a concatenation: -a=y, -c=y or -w=y";
  if (!arguments.model.empty() && !arguments.partitions) return "--model goes with --partitions";
  if (!arguments.nameend.empty() && arguments.match != Match::name) return "--name-end goes with --match=name";
  return arguments.filter ? nofilter(arguments) : "";
}

bool exists(const char* path) {
  std::error_code ignored;
  return std::filesystem::exists(systempath(path), ignored);
}

}  // namespace

std::string takeapart(int argc, char* argv[], Arguments& arguments) {
  bool named = false;
  for (int k = 1; k < argc; ++k) {
    const std::string word = argv[k];
    std::string wrong;
    if (word == "-" && !named) {
      arguments.file = word;
      named = arguments.filter = true;
    } else if (named && ispercent(word)) {
      wrong = takepercent(word, arguments);
    } else if (word.starts_with("--") && (named || !exists(argv[k]))) {
      wrong = takeown(word, arguments);
    } else if (!named && (!word.starts_with('-') || exists(argv[k]))) {
      arguments.file = word;
      named = true;
    } else if (!named) {
      wrong = word + " stands where the file name is expected";
    } else if (word.starts_with('-') && word.find('=') == std::string::npos) {
      wrong = word + " is not an option: a value follows its =, as in -t=D";
    } else if (word.starts_with('-')) {
      arguments.settled.push_back(argv[k]);
    } else if (word.find('=') != std::string::npos) {
      wrong = word + " is not an option: options begin with -";
    } else {
      wrong = word + " is a second file name: one file a run; for several, list them: ls genes/*.fas > paths.txt";
    }
    if (!wrong.empty()) return wrong;
  }
  return named ? contradiction(arguments) : "no file name";
}
