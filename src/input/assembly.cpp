#include "input/assembly.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

#include "ground/failure.h"
#include "ground/vector_clones.h"
#include "input/letter_vectors.h"
#include "input/words.h"

namespace trimora::rooms {
namespace {

// Sequences and positions: loops step up to a tile past the last one.
constexpr std::size_t most_entries = std::numeric_limits<int>::max() - 65536;

// What occurs in a text.
constexpr unsigned has_blank = 1, has_dot = 2, has_tilde = 4, has_bang = 8, has_lower = 16, has_else = 64;

LetterVector blanks(LetterVector c) {
  return where(c, ' ') | where(c, '\t');
}
LetterVector all_letters(LetterVector c) {
  return between(c | 0x20, 'a', 'z');
}

unsigned contents(std::string_view text) {
  LetterVector blank{}, letters{}, rare{};  // letters: the bits of all of them
  for_letters(text, [&](LetterVector c) {
    const LetterVector blank_here = where(c, ' '), letter_here = all_letters(c);
    blank |= blank_here;
    letters |= c & letter_here;
    rare |= ~(blank_here | letter_here | where(c, '-'));
  });
  const unsigned found = (any(blank) ? has_blank : 0) | (any(letters & 0x20) ? has_lower : 0);
  if (!any(rare)) return found;  // as in most
  LetterVector tab{}, dot{}, tilde{}, bang{}, other{};
  for_letters(text, [&](LetterVector c) {
    tab |= where(c, '\t');
    dot |= where(c, '.');
    tilde |= where(c, '~');
    bang |= where(c, '!');
    other |= ~(blanks(c) | all_letters(c) | where(c, '-') | where(c, '?') | where(c, '.') | where(c, '~') |
               where(c, '*') | where(c, '!'));
  });
  return found | (any(tab) ? has_blank : 0) | (any(dot) ? has_dot : 0) | (any(tilde) ? has_tilde : 0) |
         (any(bang) ? has_bang : 0) | (any(other) ? has_else : 0);
}

// The kinds of characters in a column of A2M.
enum : unsigned char { insert_letter = 1, insert_gap = 2, match_letter = 4, match_gap = 8 };

TRIMORA_VECTOR_CLONES void add_kinds(unsigned char* kinds, const char* row, std::size_t length) {
  for (std::size_t k = 0; k < length; ++k) {
    const auto c = static_cast<unsigned char>(row[k]);
    const unsigned char kind = c == '.'                                   ? insert_gap
                               : c == '-'                                 ? match_gap
                               : static_cast<unsigned char>(c - 'a') < 26 ? insert_letter
                               : static_cast<unsigned char>(c - 'A') < 26 ? match_letter
                                                                          : 0;
    kinds[k] = static_cast<unsigned char>(kinds[k] | kind);
  }
}

/// The insert columns of A2M; none when the alignment is something else.
std::vector<Stretch> a2m_inserts(const Reading& reading) {
  std::vector<unsigned char> kinds(static_cast<std::size_t>(reading.nupo));
  for (int i = 1; i <= reading.numseq(); ++i) add_kinds(kinds.data(), reading.row(i), kinds.size());
  constexpr unsigned insert = insert_letter | insert_gap;
  bool inserts = false, matches = false;
  std::vector<Stretch> columns;
  for (int p = 1; p <= reading.nupo; ++p) {
    const unsigned kind = kinds[static_cast<std::size_t>(p) - 1];
    if ((kind & insert) == 0) {
      matches |= (kind & match_letter) != 0;
      continue;
    }
    if ((kind & ~insert) != 0) return {};
    inserts |= kind == insert;
    if (columns.empty() || columns.back().last != p - 1) columns.push_back({p, p});
    columns.back().last = p;
  }
  if (!inserts || !matches) return {};
  return columns;
}

/// Replace `from` by a gap everywhere. Returns how often.
long long into_gaps(std::vector<char>& letters, char from) {
  const auto times = std::count(letters.begin(), letters.end(), from);
  std::replace(letters.begin(), letters.end(), from, '-');
  return times;
}

/// Put the letters of the first row in the place of dots below them, if it has no dots itself.
void resolve_dots(Reading& reading) {
  const char* first = reading.row(1);
  const auto nupo = static_cast<std::size_t>(reading.nupo);
  if (std::memchr(first, '.', nupo) != nullptr) return;
  long long dots = 0;
  for (int i = 2; i <= reading.numseq(); ++i) {
    char* row = reading.row(i);
    for (std::size_t k = 0; k < nupo; ++k) {
      dots += row[k] == '.' ? 1 : 0;
      row[k] = row[k] == '.' ? first[k] : row[k];
    }
  }
  reading.remarks.push_back({.what = Remark::What::dots_resolved, .number = dots, .detail = "."});
}

/// Move the words of a text to its front. Returns their end.
char* without_blanks(char* first, char* last) {
  if (found_in(first, last, '\t') != last) std::replace(first, last, '\t', ' ');
  char* to = first;
  while (first != last) {
    const auto length = static_cast<std::size_t>(found_in(first, last, ' ') - first);
    std::memmove(to, first, length);
    to += length;
    first += length;
    while (first != last && *first == ' ') ++first;
  }
  return to;
}

/// How many letters of a row of A3M are in columns that all rows have.
std::ptrdiff_t matches_in(const char* first, const char* last) {
  return std::count_if(first, last, [](char c) { return c < 'a' || c > 'z'; });
}

}  // namespace

void Assembly::begin(std::string name) {
  if (reading_.names.size() >= most_entries) throw Failure{.kind = Failure::Kind::too_long, .expected = most_entries};
  reading_.names.push_back(std::move(name));
  row_ = checked_ = reading_.letters.size();
  const std::string& added = reading_.names.back();
  if (added.find('\0') != added.npos) {
    throw Failure{.kind = Failure::Kind::bad_character,
                  .sequence = reading_.numseq(),
                  .name = added.substr(0, added.find('\0')),
                  .detail = shown('\0')};
  }
}

void Assembly::add(std::string name, std::string_view text) {
  begin(std::move(name));
  append(text);
  end();
}

void Assembly::check() {
  std::vector<char>& letters = reading_.letters;
  const unsigned seen = contents({letters.data() + checked_, letters.size() - checked_});
  seen_ |= seen;
  if ((seen & has_blank) != 0) {
    const char* end = without_blanks(letters.data() + checked_, letters.data() + letters.size());
    letters.resize(static_cast<std::size_t>(end - letters.data()));
  }
  if ((seen & has_else) != 0) {
    refuse(checked_ + first_bad({letters.data() + checked_, letters.size() - checked_}));
  }
  checked_ = letters.size();
  if (length() > most_entries) {
    throw Failure{.kind = Failure::Kind::too_long,
                  .sequence = reading_.numseq(),
                  .name = reading_.names.back(),
                  .length = static_cast<long long>(length()),
                  .expected = most_entries};
  }
}

void Assembly::refuse(std::size_t at) {
  throw Failure{.kind = Failure::Kind::bad_character,
                .sequence = reading_.numseq(),
                .name = reading_.names.back(),
                .detail = shown(reading_.letters[at]),
                .length = static_cast<long long>(at - row_) + 1};
}

void Assembly::end() {
  check();
  Failure failure{.sequence = reading_.numseq(),
                  .name = reading_.names.back(),
                  .length = static_cast<long long>(length()),
                  .expected = reading_.nupo};
  if (length() == 0) {
    failure.kind = Failure::Kind::unfinished_record;
    throw failure;
  }
  if (reading_.numseq() == 1) reading_.nupo = static_cast<int>(length());
  const auto width = static_cast<std::size_t>(reading_.nupo);
  if (length() == width) return;
  failure.kind = Failure::Kind::unequal_lengths;
  const char* text = reading_.letters.data();
  if (may_be_a3m && (seen_ & (has_lower | has_dot)) == has_lower &&
      matches_in(text, text + width) == matches_in(text + row_, text + row_ + length())) {
    failure.kind = Failure::Kind::refused_format;
    failure.detail = "A3M";
  }
  throw failure;
}

void Assembly::expect(int nupo) {
  if (reading_.nupo == nupo) return;
  throw Failure{.kind = Failure::Kind::unequal_lengths,
                .sequence = 1,
                .name = reading_.names.front(),
                .length = reading_.nupo,
                .expected = nupo};
}

Reading Assembly::finish(std::vector<Stretch> inserts, std::vector<Remark> remarks) {
  if (reading_.numseq() < 2) {
    throw Failure{.kind = Failure::Kind::too_few_sequences, .length = reading_.numseq(), .expected = 2};
  }
  Reading reading = std::move(reading_);
  reading.inserts = std::move(inserts);
  reading.remarks = std::move(remarks);
  std::string authority = "#=GC RF";
  if (reading.inserts.empty() && may_be_a2m && (seen_ & has_lower) != 0 && (seen_ & has_dot) != 0) {
    reading.inserts = a2m_inserts(reading);
    authority = "lower case against '.'";
  }
  const bool inserted = !reading.inserts.empty();
  if (inserted) {
    reading.remarks.push_back({.what = Remark::What::insert_columns,
                               .number = total_length(reading.inserts),
                               .detail = std::move(authority)});
  }
  if ((seen_ & has_dot) != 0) {
    if (dots_match_first) resolve_dots(reading);
    const auto first = std::find(reading.letters.begin(), reading.letters.end(), '.') - reading.letters.begin();
    const long long dots = into_gaps(reading.letters, '.');
    if (dots > 0 && !inserted && !dots_are_usual) {
      reading.remarks.push_back({.what = Remark::What::dots_are_gaps,
                                 .sequence = static_cast<int>(first / reading.nupo) + 1,
                                 .number = dots});
    }
  }
  if ((seen_ & has_tilde) != 0) into_gaps(reading.letters, '~');
  if ((seen_ & has_bang) != 0) {
    const auto marks = std::count(reading.letters.begin(), reading.letters.end(), '!');
    reading.remarks.push_back({.what = Remark::What::exclamation_marks, .number = marks});
  }
  return reading;
}

LetterFacts letter_facts(std::string_view text) {
  LetterVector rare{};
  const auto [blank] = count_letters(text, [&](LetterVector c) {
    const LetterVector blanks_here = blanks(c);
    rare |= ~(blanks_here | all_letters(c) | where(c, '-'));
    return blanks_here;
  });
  return {text.size() - static_cast<std::size_t>(blank), !any(rare) || (contents(text) & has_else) == 0};
}

void append_letters(std::string& row, std::string_view text) {
  const std::size_t before = row.size();
  row += text;
  const char* end = without_blanks(row.data() + before, row.data() + row.size());
  row.resize(static_cast<std::size_t>(end - row.data()));
}

std::size_t first_bad(std::string_view text) {
  if (only_letters(text)) return text.npos;
  std::size_t at = 0;
  while (only_letters(text.substr(at, 1))) ++at;
  return at;
}

std::string shown(char c) {
  const auto byte = static_cast<unsigned char>(c);
  if (byte == 0) return "NUL";
  if (byte > ' ' && byte < 0x7F) return {c};
  constexpr char hex[] = "0123456789ABCDEF";
  return {'0', 'x', hex[byte >> 4], hex[byte & 15]};
}

std::string excerpt(std::string_view line) {
  constexpr std::size_t most_shown = 60;
  std::string text(line.substr(0, most_shown));
  std::replace_if(
      text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < ' ' || c == 0x7F; }, ' ');
  return line.size() > most_shown ? text + "..." : text;
}

}  // namespace trimora::rooms
