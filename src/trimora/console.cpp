#include "trimora/console.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <limits>
#include <string_view>
#include <system_error>

#include "trimora/errfunc.h"
#include "input/letters.h"

namespace trimora::rooms {

namespace {

constexpr std::size_t longestanswer = 65536;  // longer than any that is taken; an endless line must not fill the memory

/// The next character of an answer that has to begin here.
int firstcharacter() {
  std::fflush(stdout);
  const int c = std::getchar();
  if (c == EOF) throw AnswersEnded{};
  return c;
}

/// The same behind blanks and empty lines.
int firstvisible() {
  int c = firstcharacter();
  while (whitespace(static_cast<char>(c))) c = firstcharacter();
  return c;
}

/// The rest of a line that goes on with `c`, without its line end. What is beyond the longest answer is dropped.
std::string restofline(int c) {
  std::string rest;
  for (; c != '\n' && c != EOF; c = std::getchar()) {
    if (rest.size() < longestanswer) rest += static_cast<char>(c);
  }
  return rest;
}

std::string uptonul(const std::string& text) {
  return text.substr(0, text.find('\0'));
}

}  // namespace

void readchoice(RunState& run) {
  const int c = firstcharacter();
  for (int rest = c; rest != '\n' && rest != EOF;) rest = std::getchar();
  run.menu = lower(static_cast<char>(c));
  if (c != '\n') std::puts("\n");
}

std::string readanswer() {
  return uptonul(restofline(firstcharacter()));
}

// Not scanf(): what it makes of "0x" and "0b1" depends on the library and its age.
std::optional<long long> readnumber() {
  const std::string line = restofline(firstvisible());
  const char* first = line.data();
  const char* last = first + line.size();
  const bool negative = line.starts_with('-');
  if (negative || line.starts_with('+')) ++first;
  int base = 10;
  const std::string_view unsigneddigits = std::string_view(line).substr(static_cast<std::size_t>(first - line.data()));
  if (unsigneddigits.starts_with("0x") || unsigneddigits.starts_with("0X")) {
    base = 16;
    first += 2;
  } else if (unsigneddigits.starts_with('0')) {
    base = 8;
  }
  unsigned long long digits = 0;
  const std::errc error = std::from_chars(first, last, digits, base).ec;
  if (error == std::errc::invalid_argument) return std::nullopt;
  constexpr long long beyond = std::numeric_limits<long long>::max();  // every range
  const long long number = error == std::errc{} && digits < beyond ? static_cast<long long>(digits) : beyond;
  return negative ? -number : number;
}

std::string readword() {
  const std::string line = restofline(firstvisible());
  const auto blank = std::find_if(line.begin(), line.end(), whitespace);
  return uptonul(std::string(line.begin(), blank));
}

}  // namespace trimora::rooms
