#include "trimora_run/arguments.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstddef>
#include <filesystem>
#include <iterator>
#include <numeric>
#include <string_view>
#include <system_error>

namespace {

/// An option that only trimora-run has.
struct Own {
  std::string_view name;
  std::string_view values;  // the words it takes, as "one|two"; "": it takes none
  void (*take)(const std::string& value, Arguments& arguments);
};

// clang-format off
constexpr Own options[] = {
// name         values         sets
  {"--match",   "same|order",  [](const std::string& v, Arguments& a) { a.match = v == "order" ? Match::order : Match::same; }},
  {"--strict",  "",            [](const std::string&, Arguments& a) { a.strict = true; }},
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

/// Whether `value` is one of the words of `values`.
bool oneof(std::string_view value, std::string_view values) {
  while (!values.empty()) {
    const std::size_t bar = std::min(values.find('|'), values.size());
    if (values.substr(0, bar) == value) return true;
    values.remove_prefix(std::min(bar + 1, values.size()));
  }
  return false;
}

std::string takeown(const std::string& word, Arguments& arguments) {
  const std::size_t equals = word.find('=');
  const std::string name = word.substr(0, equals);
  const auto* own = std::find_if(std::begin(options), std::end(options), [&](const Own& o) { return o.name == name; });
  if (own == std::end(options)) return unknown(word, name);
  if (own->values.empty() != (equals == std::string::npos)) {
    return word +
           (own->values.empty() ? " takes no value" : " is refused: it needs a value, " + std::string(own->values));
  }
  const std::string value = own->values.empty() ? "" : word.substr(equals + 1);
  if (!own->values.empty() && !oneof(value, own->values)) {
    return word + " is refused: it has to be one of " + std::string(own->values);
  }
  own->take(value, arguments);
  return "";
}

bool exists(const char* path) {
  std::error_code ignored;
  return std::filesystem::exists(path, ignored);
}

}  // namespace

std::string takeapart(int argc, char* argv[], Arguments& arguments) {
  bool named = false;
  for (int k = 1; k < argc; ++k) {
    const std::string word = argv[k];
    std::string wrong;
    if (word.starts_with("--") && (named || !exists(argv[k]))) {
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
  return named ? "" : "no file name";
}
