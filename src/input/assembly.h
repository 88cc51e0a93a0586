// The rows of an alignment, put together as they are read: every character is looked at once, in stretches.
// Fails     with Failure: bad_character (detail: the character, length: its position), unequal_lengths, unfinished_record
//           for a sequence without letters, too_long, too_few_sequences
#pragma once
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "input/reading.h"

namespace trimora::rooms {

class Assembly {
 public:
  /// `bytes`: of the whole input, as far as that is known; memory that no letter ever touches costs nothing.
  explicit Assembly(std::size_t bytes = 0) { reading_.letters.reserve(bytes); }

  /// Begin the row called `name`.
  void begin(std::string name);
  /// Append to it; blanks and tabs are left out.
  void append(std::string_view text) {
    for (; text.size() > portion; text.remove_prefix(portion)) append(text.substr(0, portion));
    reading_.letters.insert(reading_.letters.end(), text.begin(), text.end());
    if (reading_.letters.size() - checked_ >= portion) check();
  }
  /// The row is complete.
  void end();
  /// A whole row.
  void add(std::string name, std::string_view text);

  /// There will be `numseq` rows of `nupo` letters, and blanks that are still to be left out.
  void reserve(std::size_t numseq, std::size_t nupo) { reading_.letters.reserve(numseq * nupo + 2 * portion); }

  bool empty() const { return reading_.names.empty(); }
  /// The positions of the first row, and so of all.
  int nupo() const { return reading_.nupo; }
  /// Fail when the rows are not as long as the file says.
  void expect(int nupo);

  /// Where a3m is refused instead of rows of unequal length: letters in lower case are inserts that no other row shows.
  bool may_be_a3m = false;
  /// Whether lower case against '.' where other columns have capitals and '-' says which columns are not aligned.
  bool may_be_a2m = false;
  /// '.' is the usual gap in this format, so there is no remark about it.
  bool dots_are_usual = false;
  /// '.' is the letter of the first row, when that one has none itself.
  bool dots_match_first = false;

  /// The alignment: '.' and '~' become '-'. The rest is added by the reader: insert columns (before this), its type.
  Reading finish(std::vector<Stretch> inserts = {}, std::vector<Remark> remarks = {});

 private:
  static constexpr std::size_t portion = 32768;  // stays in the first or second cache
  void check();
  [[noreturn]] void refuse(std::size_t at);
  std::size_t length() const { return reading_.letters.size() - row_; }

  Reading reading_;
  std::size_t row_ = 0;      // where the row in work begins
  std::size_t checked_ = 0;  // up to where the characters were looked at
  unsigned seen_ = 0;        // of all characters
};

/// The characters of a text that are neither blanks nor tabs.
struct LetterFacts {
  std::size_t letters = 0;  // how many there are
  bool pure = false;        // whether each of them can be a letter, a gap or an unknown residue
};
LetterFacts letter_facts(std::string_view text);
inline std::size_t letters_in(std::string_view text) {
  return letter_facts(text).letters;
}
inline bool only_letters(std::string_view text) {
  return letter_facts(text).pure;
}
/// Append `text` without blanks and tabs.
void append_letters(std::string& row, std::string_view text);
/// The first character in `text` that cannot; npos when there is none.
std::size_t first_bad(std::string_view text);

/// A character as a message shows it.
std::string shown(char c);

/// The beginning of a line as a message shows it.
std::string excerpt(std::string_view line);

}  // namespace trimora::rooms
