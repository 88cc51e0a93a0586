#include "trimora/console.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <limits>
#include <string_view>
#include <system_error>

#include "input/letters.h"
#include "trimora/errfunc.h"

namespace trimora::rooms {

namespace {

constexpr std::size_t longest_answer =
    65536;  // longer than any that is taken; an endless line must not fill the memory

/// The next character of an answer that has to begin here.
int first_character() {
  std::fflush(stdout);
  const int c = std::getchar();
  if (c == EOF) throw AnswersEnded{};
  return c;
}

/// The same, after blanks and empty lines.
int first_visible() {
  int c = first_character();
  while (whitespace(static_cast<char>(c))) c = first_character();
  return c;
}

/// The rest of a line that goes on with `c`, without its line end. Anything longer than the longest answer is cut off.
std::string rest_of_line(int c) {
  std::string rest;
  for (; c != '\n' && c != EOF; c = std::getchar()) {
    if (rest.size() < longest_answer) rest += static_cast<char>(c);
  }
  return rest;
}

std::string up_to_nul(const std::string& text) {
  return text.substr(0, text.find('\0'));
}

}  // namespace

void read_choice(RunState& run) {
  const int c = first_character();
  for (int rest = c; rest != '\n' && rest != EOF;) rest = std::getchar();
  run.menu = lower(static_cast<char>(c));
  if (c != '\n') std::puts("\n");
}

std::string read_answer() {
  return up_to_nul(rest_of_line(first_character()));
}

// Not scanf(): what it makes of "0x" and "0b1" depends on the library and its age.
std::optional<long long> read_number() {
  const std::string line = rest_of_line(first_visible());
  const char* first = line.data();
  const char* last = first + line.size();
  const bool negative = line.starts_with('-');
  if (negative || line.starts_with('+')) ++first;
  int base = 10;
  const std::string_view unsigned_digits = std::string_view(line).substr(static_cast<std::size_t>(first - line.data()));
  if (unsigned_digits.starts_with("0x") || unsigned_digits.starts_with("0X")) {
    base = 16;
    first += 2;
  } else if (unsigned_digits.starts_with('0')) {
    base = 8;
  }
  unsigned long long digits = 0;
  const std::errc error = std::from_chars(first, last, digits, base).ec;
  if (error == std::errc::invalid_argument) return std::nullopt;
  constexpr long long beyond = std::numeric_limits<long long>::max();  // every range
  const long long number = error == std::errc{} && digits < beyond ? static_cast<long long>(digits) : beyond;
  return negative ? -number : number;
}

std::string read_word() {
  const std::string line = rest_of_line(first_visible());
  const auto blank = std::find_if(line.begin(), line.end(), whitespace);
  return up_to_nul(std::string(line.begin(), blank));
}

}  // namespace trimora::rooms
