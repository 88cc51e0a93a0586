// The words of a line, between blanks and tabs.
#pragma once
#include <algorithm>
#include <cstddef>
#include <cstring>
#include <optional>
#include <string_view>

#include "input/letters.h"

namespace trimora::rooms {

constexpr bool is_blank(char c) {
  return c == ' ' || c == '\t';
}

/// Where `wanted` is first found, `last` when it is not.
inline const char* found_in(const char* first, const char* last, char wanted) {
  const void* found = std::memchr(first, wanted, static_cast<std::size_t>(last - first));
  return found != nullptr ? static_cast<const char*>(found) : last;
}

/// Whether `text` holds nothing but characters for which `member` is true.
template <typename Member>
constexpr bool all_are(std::string_view text, Member member) {
  return std::all_of(text.begin(), text.end(), member);
}

/// Whether nothing but blanks and tabs.
inline bool blank(std::string_view text) {
  return all_are(text, is_blank);
}

/// `text` from its first character that is neither blank nor tab.
inline std::string_view without_indent(std::string_view text) {
  while (!text.empty() && is_blank(text.front())) text.remove_prefix(1);
  return text;
}

/// `text` without blanks and tabs at either end.
inline std::string_view trimmed(std::string_view text) {
  text = without_indent(text);
  while (!text.empty() && is_blank(text.back())) text.remove_suffix(1);
  return text;
}

/// `text` up to the first `end`; all of it when it has none.
inline std::string_view up_to(std::string_view text, char end) {
  return text.substr(0, text.find(end));  // which is a fast search: words are short or very long
}

/// `text` up to the first of the two characters; all of it when it has neither.
inline std::string_view up_to(std::string_view text, char one, char other) {
  return up_to(up_to(text, one), other);
}

/// The first line of `text`.
inline std::string_view first_line(std::string_view text) {
  return up_to(text, '\n', '\r');
}

/// Take the first word off `text`; empty when there is none. What is left begins with the next word.
inline std::string_view take_word(std::string_view& text) {
  text = without_indent(text);
  const std::string_view word = up_to(text, ' ', '\t');
  text.remove_prefix(word.size());
  text = without_indent(text);
  return word;
}

inline bool digits(std::string_view word) {
  return !word.empty() && all_are(word, is_digit);
}

/// A whole number of at most nine digits.
inline std::optional<int> number_in(std::string_view word) {
  if (!digits(word) || word.size() > 9) return std::nullopt;
  int number = 0;
  for (const char c : word) number = number * 10 + (c - '0');
  return number;
}

/// Whether `text` begins with `beginning`, which is in capitals, in either case.
inline bool begins_like(std::string_view text, std::string_view beginning) {
  if (text.size() < beginning.size()) return false;
  for (std::size_t k = 0; k < beginning.size(); ++k) {
    if (capital(text[k]) != beginning[k]) return false;
  }
  return true;
}

/// Whether `text` is `capitals`, in either case.
inline bool same_word(std::string_view text, std::string_view capitals) {
  return text.size() == capitals.size() && begins_like(text, capitals);
}

}  // namespace trimora::rooms
