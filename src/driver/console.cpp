#include "driver/console.h"

#include <cctype>
#include <cstdio>

#include "driver/errfunc.h"

namespace {

/// The next character of an answer that has to begin here.
int firstcharacter() {
  std::fflush(stdout);
  const int c = std::getchar();
  if (c == EOF) throw ExecutionTerminated{};
  return c;
}

/// The same behind blanks and empty lines.
int firstvisible() {
  int c = firstcharacter();
  while (std::isspace(c) != 0) c = firstcharacter();
  return c;
}

void droprest(int c) {
  while (c != '\n' && c != EOF) c = std::getchar();
}

}  // namespace

void readchoice(RunState& run) {
  const int c = firstcharacter();
  droprest(c);
  run.menu = static_cast<char>(std::tolower(c));
  if (c != '\n') std::puts("\n");
}

std::string readanswer() {
  std::string answer;
  for (int c = firstcharacter(); c != '\n' && c != EOF; c = std::getchar()) answer += static_cast<char>(c);
  return answer.substr(0, answer.find('\0'));
}

std::optional<long long> readnumber() {
  std::ungetc(firstvisible(), stdin);
  long long number = 0;
  const bool read = std::scanf("%lli", &number) == 1;
  droprest(std::getchar());
  return read ? std::optional(number) : std::nullopt;
}

std::string readword() {
  std::string word;
  int c = firstvisible();
  for (; c != EOF && std::isspace(c) == 0; c = std::getchar()) word += static_cast<char>(c);
  droprest(c);
  return word.substr(0, word.find('\0'));
}
