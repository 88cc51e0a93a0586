#include "input/kind.h"

#include <cstddef>
#include <cstring>
#include <string_view>

#include "input/letter_vectors.h"

namespace trimora::rooms {
namespace {

/// How often letters occur, in either case.
struct LetterCounts {
  long long letters = 0;      // without N and X
  long long amino = 0;        // of them E, F, I, L, P, Q
  long long nucleotides = 0;  // A, C, G, T, U; not counted in rows with amino acids, which are no DNA
  long long neither = 0;      // J, O, Z; likewise

  void add(const LetterCounts& more) {
    letters += more.letters;
    amino += more.amino;
    nucleotides += more.nucleotides;
    neither += more.neither;
  }
  bool enough() const { return letters >= 10; }
  bool dna() const { return amino == 0 && neither == 0 && nucleotides * 10 >= letters * 9; }
  bool protein() const { return amino * 20 >= letters; }
};

LetterVector in_lower_case(LetterVector letters) {
  return letters | 0x20;
}

LetterCounts counts_of(std::string_view row) {
  LetterCounts counts;
  const auto known = count_letters(
      row,
      [](LetterVector letters) {
        const LetterVector c = in_lower_case(letters);
        return between(c, 'a', 'z') & ~(where(c, 'n') | where(c, 'x'));
      },
      [](LetterVector letters) {
        const LetterVector c = in_lower_case(letters);
        return where(c, 'e') | where(c, 'f') | where(c, 'i') | where(c, 'l') | where(c, 'p') | where(c, 'q');
      });
  counts.letters = known[0];
  counts.amino = known[1];
  if (counts.amino > 0) return counts;
  const auto rest = count_letters(
      row,
      [](LetterVector letters) {
        const LetterVector c = in_lower_case(letters);
        return where(c, 'a') | where(c, 'c') | where(c, 'g') | where(c, 't') | where(c, 'u');
      },
      [](LetterVector letters) {
        const LetterVector c = in_lower_case(letters);
        return where(c, 'j') | where(c, 'o') | where(c, 'z');
      });
  counts.nucleotides = rest[0];
  counts.neither = rest[1];
  return counts;
}

}  // namespace

KindByLetters kind_by_letters(const Reading& reading) {
  LetterCounts total;
  KindByLetters found;
  for (int i = 1; i <= reading.numseq(); ++i) {
    const LetterCounts counts = counts_of({reading.row(i), static_cast<std::size_t>(reading.nupo)});
    total.add(counts);
    if (!counts.enough()) continue;
    if (found.dna == 0 && counts.dna()) found.dna = i;
    if (found.protein == 0 && counts.protein()) found.protein = i;
  }
  found.letters = total.letters;
  if (!total.enough()) {
    found.why = KindByLetters::Undecided::few_letters;
  } else if (found.dna != 0 && found.protein != 0) {
    found.why = KindByLetters::Undecided::both;
  } else if (total.dna()) {
    found.kind = Kind::dna;
  } else if (total.protein()) {
    found.kind = Kind::protein;
  } else {
    found.why = KindByLetters::Undecided::neither;
  }
  return found;
}

void read_u_as_t(Reading& reading) {
  const auto has = [&](char c) { return std::memchr(reading.letters.data(), c, reading.letters.size()) != nullptr; };
  if (reading.letters.empty() || !(has('U') || has('u'))) return;  // as most
  const auto [t, u] = count_letters(
      {reading.letters.data(), reading.letters.size()}, [](LetterVector c) { return where(c, 'T') | where(c, 't'); },
      [](LetterVector c) { return where(c, 'U') | where(c, 'u'); });
  if (t == 0) return;
  for (char& letter : reading.letters) letter = letter == 'U' ? 'T' : letter == 'u' ? 't' : letter;
  reading.remarks.push_back({.what = Remark::What::u_read_as_t, .number = u});
}

}  // namespace trimora::rooms
