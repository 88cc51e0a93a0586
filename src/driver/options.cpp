#include "driver/options.h"

#include <cctype>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

#include "driver/reasons.h"

namespace {

/// An option whose value is one of a few letters or a number within fixed bounds.
struct Option {
  std::string_view name;
  std::variant<int RunState::*, char RunState::*> sets;
  Range numbers;
  std::string_view letters;  // letters and the digits they stand for, in turn; none: the value is a number
  const char* advice;        // end of the warning
};

constexpr Range none = {0, 0};
constexpr const char* yesorno = " It has to be Y (Yes) or N (No)";

// clang-format off
constexpr Option options[] = {
// name  sets                          numbers          letters     end of the warning
  {"b3", &RunState::negblen,           negblenrange,    "",         ""},
  {"b5", &RunState::tog_gaps,          none,            "N1H2A3",   " It has to be N (None), H (With Half) or A (All)"},
  {"b6", &RunState::tog_sim,           none,            "Y1N0",     yesorno},
  {"s",  &RunState::tog_seqfile,       none,            "Y1N0",     yesorno},
  {"p",  &RunState::tog_viewfile,      none,            "Y1N0T2S3", " It has to be Y (Yes, HTML), N (No), T (Text) or S (Short)"},
  {"k",  &RunState::tog_maskfile,      none,            "Y1N0",     yesorno},
  {"d",  &RunState::tog_psfile,        none,            "Y1N0",     yesorno},
  {"n",  &RunState::tog_ncbfile,       none,            "Y1N0",     yesorno},
  {"u",  &RunState::tog_ungappedfile,  none,            "Y1N0",     yesorno},
  {"a",  &RunState::tog_allfile,       none,            "Y1N0",     yesorno},
  {"c",  &RunState::tog_allfile_init,  none,            "Y1N0",     yesorno},
  {"w",  &RunState::tog_allungfile,    none,            "Y1N0",     yesorno},
  {"v",  &RunState::breakcount,        breakcountrange, "",         " It must be between 50 and 32000"},
};
// clang-format on

void warn(std::string_view name, const char* advice = "") {
  std::printf("\nWARNING: Parameter -%s not properly entered.%s\n", std::string(name).c_str(), advice);
}

char upper(char c) {
  return static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
}

/// The number at the start of `value`: leading blanks and a sign allowed, 0 without digits. One beyond 64 bits becomes
/// the nearest that fits, out of every range as well.
long long number(const char* value) {
  return std::strtoll(value, nullptr, 10);
}

/// The letter that `value` begins with, as a capital; only the first one counts.
char letter(const char* value) {
  return upper(value[0]);
}

void apply(const Option& option, const char* value, RunState& run) {
  int setting = 0;
  if (option.letters.empty()) {
    if (!option.numbers.holds(number(value))) return warn(option.name, option.advice);
    setting = static_cast<int>(number(value));
  } else {
    std::size_t k = 0;
    while (k < option.letters.size() && option.letters[k] != letter(value)) k += 2;
    if (k >= option.letters.size()) return warn(option.name, option.advice);
    setting = option.letters[k + 1] - '0';
  }
  std::visit([&](auto member) { run.*member = static_cast<std::decay_t<decltype(run.*member)>>(setting); },
             option.sets);
}

void type(const char* value, RunState& run) {
  const char c = letter(value);
  if (c != 'P' && c != 'C' && c != 'D') return warn("t", " It has to be P (Proteins), C (Codons) or D (DNA)");
  run.seq_type = c;
}

/// b0 and b4: whether the length was accepted.
bool blocklength(std::string_view name, const char* value, int& length) {
  const long long v = number(value);
  if (posblenrange.holds(v)) {
    length = static_cast<int>(v);
    return true;
  }
  warn(name);
  if (v < posblenrange.least) std::puts("The minimum length of a block must be 2 or bigger");
  return false;
}

void conservedsequences(const char* value, RunState& run) {
  const long long v = number(value);
  if (negvalrange(run).holds(v)) {
    run.negval = static_cast<int>(v);
    run.tog_sub = 1;
    return;
  }
  warn("b1");
  if (v < run.initnegval) {
    std::printf(negvaltoolow, run.initnegval);
    std::puts("");
  }
  if (v > run.flankval) std::puts(negvaltoohigh);
}

void flanksequences(const char* value, RunState& run) {
  const long long v = number(value);
  if (flankvalrange(run).holds(v)) {
    run.flankval = static_cast<int>(v);
    run.tog_sub = 1;
    return;
  }
  if (v == 0) {  // "as few as possible": the one improper value that sets something
    run.flankval = run.negval;
    std::puts("\nWARNING: minimum number of sequences for a flank position set to the minimum possible value.");
    return;
  }
  warn("b2");
  if (v > run.numseq) {
    std::printf(flankvaltoohigh, run.numseq);
    std::puts("");
  }
  if (v < run.negval) std::puts(flankvaltoolow);
}

void suffix(const char* value, RunState& run) {
  const std::string_view text = value;
  if (text.empty() || text.size() > longestexten) {
    warn("e");
    std::puts("The string has to have 5 characters maximum");
    return;
  }
  run.exten = text;
}

}  // namespace

void parseoptions(int argc, char* argv[], int first, RunState& run) {
  bool b0accepted = false;
  for (int k = first; k < argc; ++k) {
    const std::string_view argument = argv[k];
    const std::size_t equals = argument.find('=');
    if (!argument.starts_with('-') || equals == std::string_view::npos) continue;
    std::string name(argument.substr(1, equals - 1));
    const char* value = argv[k] + equals + 1;
    if (name.empty() || name == "T") continue;  // -t is the one option whose case counts
    name[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(name[0])));

    if (name == "t") type(value, run);
    if (name == "b0") b0accepted |= blocklength(name, value, run.posblen);
    if (name == "b1") conservedsequences(value, run);
    if (name == "b2") flanksequences(value, run);
    if (name == "b4" && blocklength(name, value, run.posblen2) && !b0accepted) run.posblen = run.posblen2;
    if (name == "e") suffix(value, run);
    for (const Option& option : options) {
      if (name == option.name) apply(option, value, run);
    }
    const bool concatenates = name == "a" || name == "c" || name == "w";
    if (concatenates && letter(value) == 'Y') run.tog_sub = 1;  // the parameters of the first alignment hold for all
  }
}
