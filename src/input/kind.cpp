#include "input/kind.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>

#include "input/letter_vectors.h"

namespace trimora::rooms {
namespace {

/// How often letters occur, in either case.
struct LetterCounts {
  std::array<long long, 6> of{};
  enum { all, t, u, acg, amino, other };  // amino: E, F, I, L, P, Q; other: J, O, Z; all: without N and X

  long long operator[](int kind) const { return of[static_cast<std::size_t>(kind)]; }
  void add(const LetterCounts& more) {
    for (std::size_t k = 0; k < of.size(); ++k) of[k] += more.of[k];
  }
  bool enough() const { return of[all] >= 10; }
  bool dna() const { return of[amino] == 0 && of[other] == 0 && (of[t] + of[u] + of[acg]) * 10 >= of[all] * 9; }
  bool protein() const { return of[amino] * 20 >= of[all]; }
};

LetterCounts counts_of(const char* text, std::size_t length) {
  constexpr std::size_t at_once = 255 * sizeof(LetterVector);  // each place counts up to 255
  LetterCounts counts;
  for (std::size_t start = 0; start < length; start += at_once) {
    LetterVector all{}, t{}, u{}, acg{}, amino{}, other{};
    for_letters(text + start, std::min(length - start, at_once), [&](LetterVector letters) {
      const LetterVector c = letters | 0x20;
      all -= between(c, 'a', 'z') & ~where(c, 'n') & ~where(c, 'x');  // 255 is -1
      t -= where(c, 't');
      u -= where(c, 'u');
      acg -= where(c, 'a') | where(c, 'c') | where(c, 'g');
      amino -= where(c, 'e') | where(c, 'f') | where(c, 'i') | where(c, 'l') | where(c, 'p') | where(c, 'q');
      other -= where(c, 'j') | where(c, 'o') | where(c, 'z');
    });
    for (std::size_t k = 0; k < sizeof(LetterVector); ++k) {
      counts.add({{all[k], t[k], u[k], acg[k], amino[k], other[k]}});
    }
  }
  return counts;
}

}  // namespace

KindByLetters kind_by_letters(const Reading& reading) {
  LetterCounts total;
  KindByLetters found;
  for (int i = 1; i <= reading.numseq(); ++i) {
    const LetterCounts counts = counts_of(reading.row(i), static_cast<std::size_t>(reading.nupo));
    total.add(counts);
    if (!counts.enough()) continue;
    if (found.dna == 0 && counts.dna()) found.dna = i;
    if (found.protein == 0 && counts.protein()) found.protein = i;
  }
  found.letters = total[LetterCounts::all];
  found.rare = total[LetterCounts::u] + total[LetterCounts::other];
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
  const LetterCounts counts = counts_of(reading.letters.data(), reading.letters.size());
  const long long number = counts[LetterCounts::u];
  if (number == 0 || counts[LetterCounts::t] == 0) return;
  for (char& letter : reading.letters) letter = letter == 'U' ? 'T' : letter == 'u' ? 't' : letter;
  reading.remarks.push_back({.what = Remark::What::u_read_as_t, .number = number});
}

}  // namespace trimora::rooms
