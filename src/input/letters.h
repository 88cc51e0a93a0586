// Letters, digits and blanks of ASCII: what a byte is does not depend on the user's language.
#pragma once

namespace trimora::rooms {

/// The capital of a letter; any other byte as it is.
constexpr char capital(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

/// The small letter of a letter; any other byte as it is.
constexpr char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Whether a letter, in either case.
constexpr bool is_letter(char c) {
  return capital(c) >= 'A' && capital(c) <= 'Z';
}

constexpr bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

/// Blank, tab, line end and the like.
constexpr bool whitespace(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

}  // namespace trimora::rooms
