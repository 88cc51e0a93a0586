// The text of a NEXUS file as words, without its comments.
#pragma once
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "input/assembly.h"
#include "input/lines.h"
#include "input/words.h"

namespace trimora::rooms {

/// The text without its comments, word by word and, in a matrix, stretch by stretch.
class NexusText {
 public:
  explicit NexusText(Lines& in) : in_(in) {}

  struct Token {
    std::string text;
    bool quoted = false;
    bool is(std::string_view capitals) const { return !quoted && same_word(text, capitals); }
  };

  /// The next word or sign; nothing at the end of the text.
  std::optional<Token> token() {
    for (;;) {
      if (skip()) break;
      if (!next_line()) return std::nullopt;
    }
    if (line_.front() == '\'') return Token{quoted(), true};
    constexpr std::string_view signs = ";=,(){}\"";
    const std::size_t length = signs.find(line_.front()) != signs.npos ? 1 : line_.find_first_of(";=,(){}\"[' \t");
    Token found{std::string(line_.substr(0, length))};
    line_.remove_prefix(found.text.size());
    return found;
  }

  /// The next character; 0 at the end of the text.
  char character() {
    while (!skip()) {
      if (!next_line()) return 0;
    }
    if (line_.front() == '\'') {
      const std::string text = quoted();
      return text.empty() ? ' ' : text.front();
    }
    const char c = line_.front();
    line_.remove_prefix(1);
    return c;
  }

  /// Pass over blanks and comments on this line; false at its end.
  bool skip() {
    for (;;) {
      line_ = without_indent(line_);
      if (line_.empty()) return false;
      if (line_.front() != '[') return true;
      skip_comment();
    }
  }

  bool next_line() {
    begun_ = true;
    return in_.next(line_);
  }
  /// Whether nothing of this line was taken since it began, which forgets it.
  bool begun() { return std::exchange(begun_, false); }
  bool blank_line() const { return begun_ && blank(line_); }

  /// A name: a word, or anything between quotes, which lives until the next one. skip() was true.
  std::string_view name() {
    if (line_.front() == '\'') return quoted_name_ = quoted();
    const std::string_view found = up_to(up_to(line_, ' ', '\t'), '[');
    line_.remove_prefix(found.size());
    return found;
  }

  /// Up to the next comment, ';' or line end.
  std::string_view stretch() {
    const std::string_view text = up_to(line_, ';', '[');
    line_.remove_prefix(text.size());
    return text;
  }
  /// The rest of the line when all of it is letters, gaps and unknown residues; else nothing.
  std::string_view letters() {
    const LetterFacts facts = letter_facts(line_);
    return facts.pure && facts.letters == line_.size() ? std::exchange(line_, {}) : std::string_view();
  }
  /// The lines from here on, the last one up to the next ';'.
  std::string up_to_semicolon() {
    std::string text;
    do {
      const std::string_view part = up_to(line_, ';');
      text.append(part) += '\n';
      line_.remove_prefix(part.size());
    } while (line_.empty() && next_line());
    return text;
  }
  bool at_semicolon() const { return line_.front() == ';'; }
  void take_semicolon() { line_.remove_prefix(1); }

  long long number() const { return in_.number(); }
  std::size_t bytes() const { return in_.bytes(); }
  std::string_view line() const { return line_; }

 private:
  void skip_comment() {
    int depth = 0;
    do {
      if (line_.empty()) {
        if (!next_line()) return;
        continue;
      }
      depth += line_.front() == '[' ? 1 : line_.front() == ']' ? -1 : 0;
      line_.remove_prefix(1);
    } while (depth > 0);
  }

  /// The text between quotes; two quotes in a row are one.
  std::string quoted() {
    std::string text;
    do {
      line_.remove_prefix(1);
      const std::size_t end = std::min(line_.find('\''), line_.size());
      text += line_.substr(0, end);
      line_.remove_prefix(std::min(end + 1, line_.size()));
      if (!line_.starts_with('\'')) return text;
      text += '\'';
    } while (true);
  }

  Lines& in_;
  std::string_view line_;  // what is left of it
  bool begun_ = false;
  std::string quoted_name_;
};

using NexusToken = std::optional<NexusText::Token>;

}  // namespace trimora::rooms
