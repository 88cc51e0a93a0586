#include "trimora/options.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

#include "input/letters.h"
#include "trimora/reasons.h"

namespace trimora::rooms {

namespace {

/// An option whose value is one of a few letters or a number within fixed bounds.
struct Option {
  std::string_view name;
  std::variant<int RunState::*, char RunState::*> sets;
  Range numbers;
  std::string_view letters;  // letters, each followed by its digit; empty: the value is a number
  const char* advice;        // end of the warning
};

constexpr Range none = {0, 0};
constexpr const char* yesorno = " It has to be Y (Yes) or N (No)";

// clang-format off
constexpr Option options[] = {
// name  sets                          numbers          letters     end of the warning
  {"b3", &RunState::negblen,           negblen_range,    "",         ""},
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
  {"v",  &RunState::breakcount,        breakcount_range, "",         " It must be between 50 and 32000"},
};
// clang-format on

Answer refused(std::string_view name, const std::string& advice, const std::string& reasons = "") {
  return {Answer::refused,
          "\nWARNING: Parameter -" + std::string(name) + " not properly entered." + advice + "\n" + reasons};
}

/// A number as an option gives it.
struct Number {
  long long value;
  Answer::Kind kind;  // taken or guessed
};

/// The number at the start of `text`: leading blanks and a sign allowed, 0 without digits. One beyond 64 bits becomes
/// the nearest that fits, out of every range as well.
Number number(const char* text) {
  char* end = nullptr;
  const long long value = std::strtoll(text, &end, 10);
  return {value, end != text && *end == '\0' ? Answer::taken : Answer::guessed};
}

/// The letter that `value` begins with, as a capital; only the first one counts.
char letter(const char* value) {
  return capital(value[0]);
}

Answer apply(const Option& option, const char* value, RunState& run) {
  Number setting = {0, Answer::taken};
  if (option.letters.empty()) {
    setting = number(value);
    if (!option.numbers.holds(setting.value)) return refused(option.name, option.advice);
  } else {
    std::size_t k = 0;
    while (k < option.letters.size() && option.letters[k] != letter(value)) k += 2;
    if (k >= option.letters.size()) return refused(option.name, option.advice);
    setting.value = option.letters[k + 1] - '0';
  }
  std::visit([&](auto member) { run.*member = static_cast<std::decay_t<decltype(run.*member)>>(setting.value); },
             option.sets);
  return {setting.kind, ""};
}

Answer type(const char* value, RunState& run) {
  const char c = letter(value);
  if (c != 'P' && c != 'C' && c != 'D') return refused("t", " It has to be P (Proteins), C (Codons) or D (DNA)");
  run.seq_type = c;
  return {Answer::taken, ""};
}

/// b0 and b4.
Answer block_length(std::string_view name, const char* value, int& length) {
  const auto [v, kind] = number(value);
  if (posblen_range.holds(v)) {
    length = static_cast<int>(v);
    return {kind, ""};
  }
  return refused(name, "", v < posblen_range.least ? "The minimum length of a block must be 2 or bigger\n" : "");
}

Answer conserved_sequences(const char* value, RunState& run) {
  const auto [v, kind] = number(value);
  if (negval_range(run).holds(v)) {
    run.negval = static_cast<int>(v);
    run.tog_sub = 1;
    return {kind, ""};
  }
  std::string reasons;
  if (v < run.initnegval) reasons += negval_too_low(run.initnegval) + "\n";
  if (v > run.flankval) reasons += std::string(negval_too_high) + "\n";
  return refused("b1", "", reasons);
}

Answer flank_sequences(const char* value, RunState& run) {
  const auto [v, kind] = number(value);
  if (flankval_range(run).holds(v)) {
    run.flankval = static_cast<int>(v);
    run.tog_sub = 1;
    return {kind, ""};
  }
  if (v == 0) {  // "as few as possible": the one improper value that sets something
    run.flankval = run.negval;
    return {kind, "\nWARNING: minimum number of sequences for a flank position set to the minimum possible value.\n"};
  }
  std::string reasons;
  if (v > run.numseq) reasons += flankval_too_high(run.numseq) + "\n";
  if (v < run.negval) reasons += std::string(flankval_too_low) + "\n";
  return refused("b2", "", reasons);
}

Answer suffix(const char* value, RunState& run) {
  const std::string_view text = value;
  if (text.empty() || text.size() > longest_exten) {
    return refused("e", "", "The string has to have 5 characters maximum\n");
  }
  run.exten = text;
  return {Answer::taken, ""};
}

/// One argument. `b0_accepted` tells whether a b0 was taken before it.
Answer apply_option(const char* text, bool& b0_accepted, RunState& run) {
  const std::string_view argument = text;
  const std::size_t equals = argument.find('=');
  if (!argument.starts_with('-') || equals == std::string_view::npos) return {};
  std::string name(argument.substr(1, equals - 1));
  const char* value = text + equals + 1;
  if (name.empty() || name == "T") return {};  // -t is the one option whose case counts
  name[0] = lower(name[0]);

  if (name == "t") return type(value, run);
  if (name == "b0") {
    Answer answer = block_length(name, value, run.posblen);
    b0_accepted |= answer.kind != Answer::refused;
    return answer;
  }
  if (name == "b1") return conserved_sequences(value, run);
  if (name == "b2") return flank_sequences(value, run);
  if (name == "b4") {
    Answer answer = block_length(name, value, run.posblen2);
    if (answer.kind != Answer::refused && !b0_accepted) run.posblen = run.posblen2;
    return answer;
  }
  if (name == "e") return suffix(value, run);
  // Once a concatenation is asked for, the parameters of the first alignment hold for all.
  if ((name == "a" || name == "c" || name == "w") && letter(value) == 'Y') run.tog_sub = 1;
  const auto* option =
      std::find_if(std::begin(options), std::end(options), [&](const Option& o) { return o.name == name; });
  return option == std::end(options) ? Answer{} : apply(*option, value, run);
}

}  // namespace

std::vector<Answer> apply_options(int argc, char* argv[], int first, RunState& run) {
  std::vector<Answer> answers;
  bool b0_accepted = false;
  for (int k = first; k < argc; ++k) answers.push_back(apply_option(argv[k], b0_accepted, run));
  return answers;
}

void parse_options(int argc, char* argv[], int first, RunState& run) {
  for (const Answer& answer : apply_options(argc, argv, first, run)) std::printf("%s", answer.warning.c_str());
}

}  // namespace trimora::rooms
