// The words of a line, between blanks and tabs.
#pragma once
#include <algorithm>
#include <cstddef>
#include <optional>
#include <string_view>

#include "input/letters.h"

namespace trimora::rooms {

inline constexpr std::string_view blanks = " \t";

/// Whether nothing but blanks and tabs.
inline bool blank(std::string_view text) {
  return text.find_first_not_of(blanks) == text.npos;
}

/// `text` without blanks and tabs at either end.
inline std::string_view trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == text.npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// Take the first word off `text`; empty when there is none. What is left begins with the next word.
inline std::string_view take_word(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
  const std::string_view word = text.substr(0, text.find_first_of(blanks));
  text.remove_prefix(word.size());
  text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
  return word;
}

/// What is left of `text` without blanks and tabs, counted.
inline std::size_t letters_in(std::string_view text) {
  if (text.find(' ') == text.npos && text.find('\t') == text.npos) return text.size();
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return c != ' ' && c != '\t'; }));
}

inline bool digits(std::string_view word) {
  return !word.empty() && word.find_first_not_of("0123456789") == word.npos;
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
