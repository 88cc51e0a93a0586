#include "trimora_run/notes.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <numeric>
#include <string>
#include <string_view>
#include <vector>

#include "ground/vector_clones.h"
#include "input/input_file.h"
#include "input/letters.h"
#include "trimora_run/diagnosis.h"
#include "batch/names.h"
#include "trimora_run/words.h"

namespace trimora::rooms {

namespace {

constexpr std::size_t telling = 20;  // letters: a protein of that length is not made of nucleotides' letters alone
constexpr int share = 5;           // per cent of the columns from which on letters that may mean gaps are worth a note
constexpr std::size_t listed = 5;  // stretches, or sequences, that a note names
constexpr int tile = 4096;         // positions looked at together: what is known of them stays in the first cache

/// What is known of a character, and of a position by all of its characters together.
constexpr std::uint8_t gap = 1;
constexpr std::uint8_t unknownmark = 2;    // '?'
constexpr std::uint8_t unknownletter = 4;  // X or N
constexpr std::uint8_t odd = 8;            // neither a letter nor one of the above

/// Whether any of `width` characters is more than a known letter or a gap; `unknown` is the small letter for unknown ones.
TRIMORA_VECTOR_CLONES
bool remarkable(const char* text, int width, char unknown) {
  std::uint8_t any = 0;
  for (int c = 0; c < width; ++c) {
    const auto small = static_cast<std::uint8_t>(text[c] | 0x20);  // of a letter
    const bool plain = static_cast<std::uint8_t>(small - 'a') < 26 || text[c] == '-';
    any |= !plain || small == static_cast<std::uint8_t>(unknown) ? 1 : 0;
  }
  return any != 0;
}

/// Add what `width` characters at `text` are to what is known of their positions.
/// Returns  what they are all together.
TRIMORA_VECTOR_CLONES
std::uint8_t classify(const char* text, int width, char unknown, std::uint8_t* known) {
  std::uint8_t all = 0;
  for (int c = 0; c < width; ++c) {
    const auto small = static_cast<std::uint8_t>(text[c] | 0x20);
    const std::uint8_t isgap = text[c] == '-' ? gap : std::uint8_t{0};
    const std::uint8_t ismark = text[c] == '?' ? unknownmark : std::uint8_t{0};
    const std::uint8_t isunknown = small == static_cast<std::uint8_t>(unknown) ? unknownletter : std::uint8_t{0};
    const std::uint8_t isodd =
        static_cast<std::uint8_t>(small - 'a') < 26 || isgap != 0 || ismark != 0 ? std::uint8_t{0} : odd;
    const auto what = static_cast<std::uint8_t>(isgap | ismark | isunknown | isodd);
    known[c] |= what;
    all |= what;
  }
  return all;
}

/// The letter for an unknown residue, as a small one.
char unknownof(const BatchState& run) {
  return run.seq_type == 'P' ? 'x' : 'n';
}

/// What else than known letters and gaps an alignment holds.
struct Characters {
  std::array<int, 256> firstin{};  // the first sequence that holds the odd character, 0: none does
  std::uint8_t all = 0;            // what there is
  long long unknowns = 0;          // positions without a gap in which a residue is unknown
};

Characters characters(const Alignment& ali, const BatchState& run) {
  Characters found;
  const char unknown = unknownof(run);
  std::uint8_t known[tile];
  for (int start = 1; start <= ali.nupo; start += tile) {
    const int width = std::min(tile, ali.nupo - start + 1);
    bool any = false;  // most alignments hold nothing remarkable, and are looked at but once
    for (int i = 1; i <= ali.numseq && !any; ++i) any = remarkable(ali.let[i].from(start), width, unknown);
    if (!any) continue;
    std::fill_n(known, width, std::uint8_t{0});
    for (int i = 1; i <= ali.numseq; ++i) {
      const char* text = ali.let[i].from(start);
      const std::uint8_t all = classify(text, width, unknown, known);
      found.all |= all;
      if ((all & odd) == 0) continue;
      std::for_each(text, text + width, [&](char c) {
        int& first = found.firstin[static_cast<unsigned char>(c)];
        first = first == 0 ? i : std::min(first, i);
      });
    }
    found.unknowns += std::count_if(known, known + width, [](std::uint8_t what) {
      return (what & gap) == 0 && (what & (unknownmark | unknownletter)) != 0;
    });
  }
  return found;
}

/// Columns in a note: the first few stretches and, where there are more, how many they are.
std::string columns(const std::vector<Stretch>& stretches) {
  const int number = totallength(stretches);
  std::string list = number == 1 ? "column " : "columns ";
  for (std::size_t k = 0; k < std::min(listed, stretches.size()); ++k) {
    const Stretch& s = stretches[k];
    list += (k > 0 ? ", " : "") + std::to_string(s.first) + (s.length() > 1 ? "-" + std::to_string(s.last) : "");
  }
  return stretches.size() > listed ? list + ", ... (" + std::to_string(number) + " in all)" : list;
}

/// The letters of the first sequence, as capitals.
std::string firstletters(const Alignment& ali) {
  std::string letters;
  for (int p = 1; p <= ali.nupo; ++p) {
    const char c = capital(ali.let[1][p]);
    if (isletter(c)) letters += c;
  }
  return letters;
}

/// The column of the file in which position p stands.
std::string columnof(const Alignment& ali, int p) {
  for (const Stretch& dropped : ali.dropped) {
    if (dropped.first <= p) p += dropped.length();
  }
  return std::to_string(p);
}

std::string nameof(const Alignment& ali, int i) {
  return withoutlineend(ali.name[i]);
}

/// One alignment, and where notes on it go.
struct Desk {
  const Alignment& ali;
  const BatchState& run;
  Messages& messages;
  std::string file = typed(run.fichero1);  // as it is typed into a shell

  void note(std::string_view words, std::initializer_list<std::string_view> values) const {
    messages.note(run.fichero1, filled(words, values));
  }
};

/// `asread`: the type of sequence is the one that it seems to be, so that X or N is an unknown residue.
void notecharacters(const Desk& desk, bool asread) {
  const Alignment& ali = desk.ali;
  const Characters found = characters(ali, desk.run);
  const auto firstof = [&](std::string_view set) {
    int first = 0;
    for (const char c : set) {
      const int i = found.firstin[static_cast<unsigned char>(c)];
      if (i != 0 && (first == 0 || i < first)) first = i;
    }
    return first;
  };
  const auto noteif = [&](std::string_view set, std::string_view words) {
    const int i = firstof(set);
    if (i != 0) desk.note(words, {std::to_string(i), nameof(ali, i), desk.file});
  };
  if (firstof("\r") != 0) desk.note(words::windows, {desk.file});
  noteif("\t", words::tabs);
  noteif("0123456789", words::digits);
  noteif("*", words::stars);
  noteif("~", words::tildes);

  std::string others;
  std::string list;
  for (int c = 0; c < 256; ++c) {
    const char byte = static_cast<char>(c);
    if (found.firstin[static_cast<std::size_t>(c)] == 0 || isletter(byte)) continue;
    if (std::string_view("\r\t0123456789*~-?").find(byte) != std::string_view::npos) continue;
    others += byte;
    char code[16];
    std::snprintf(code, sizeof code, c > ' ' && c < 127 ? " %c" : " (byte %d)", c);
    list += code;
  }
  if (const int i = firstof(others); i != 0) {
    desk.note(words::oddcharacters, {std::to_string(i), nameof(ali, i), std::string_view(list).substr(1)});
  }

  const bool many = found.unknowns * 100 >= static_cast<long long>(share) * ali.nupo;
  if (!asread || !many || desk.run.tog_gaps == allgaps) return;
  const bool mark = (found.all & unknownmark) != 0;
  const bool letters = (found.all & unknownletter) != 0;
  const char letter = unknownof(desk.run);
  const std::string capitalletter(1, capital(letter));
  desk.note(words::unknownletters, {mark && letters ? capitalletter + " and ?"
                                    : mark          ? "?"
                                                    : capitalletter,
                                    std::to_string(found.unknowns * 100 / ali.nupo),
                                    (letters ? capitalletter + letter : "") + (mark ? "?" : ""), desk.file});
}

/// Whether the file writes '.' for the letter of the first sequence: the others seem to have many more gaps than that one,
/// and in the file these are points, of which the first one has none.
bool pointsatfirst(const Alignment& ali, const std::string& path) {
  const auto gaps = [&](int i) {
    const char* text = ali.let[i].from(1);
    return static_cast<long long>(std::count(text, text + ali.nupo, '-'));
  };
  const long long few = gaps(1);
  const auto many = [&](int i) { return gaps(i) * 10 >= ali.nupo && gaps(i) >= 2 * few; };
  if (!many(2) && !many(ali.numseq)) return false;
  const InputFile file(path);
  const std::string_view text = file ? file.unread() : "";
  int records = 0;
  long long points = 0;
  long long others = 0;
  bool dashes = false;  // a file with both signs does not mean the same by them
  bool inname = false;
  for (const char c : text) {
    records += c == '>' ? 1 : 0;
    inname = c == '>' || (inname && c != '\n');
    if (inname || whitespace(c)) continue;
    if (records == 1 && c == '.') return false;
    dashes |= c == '-';
    if (records > 1) ++(c == '.' ? points : others);
  }
  return points * (dashes ? 9 : 3) > others;  // a tenth of all letters, or a quarter
}

/// The codon that begins at position p, as capitals of DNA.
std::array<char, 3> codonat(const Row& row, int p) {
  std::array<char, 3> codon{};
  for (int k = 0; k < 3; ++k) {
    const char c = capital(row[p + k]);
    codon[static_cast<std::size_t>(k)] = c == 'U' ? 'T' : c;
  }
  return codon;
}

bool isstop(const std::array<char, 3>& codon) {
  return codon[0] == 'T' &&
         ((codon[1] == 'A' && (codon[2] == 'A' || codon[2] == 'G')) || (codon[1] == 'G' && codon[2] == 'A'));
}

void notecodons(const Desk& desk) {
  const Alignment& ali = desk.ali;
  if (ali.nupo % 3 != 0) desk.note(words::codonlength, {std::to_string(ali.nupo)});

  int withstops = 0, withgaps = 0;
  int stopin = 0, stopat = 0, gapin = 0, gapat = 0;  // the first of each: sequence and position
  for (int i = 1; i <= ali.numseq; ++i) {
    const Row row = ali.let[i];
    int last = ali.nupo;
    while (last > 0 && row[last] == '-') --last;
    const int end = last - last % 3;  // of the last whole codon, which may be a stop
    bool stop = false;
    for (int p = 1; p + 2 < end && !stop; p += 3) {
      stop = capital(row[p]) >= 'T' && isstop(codonat(row, p));
      if (stop && withstops++ == 0) stopin = i, stopat = p;
    }
    int length = 0;   // of the run of gaps that ends here
    int letters = 0;  // before it
    for (int p = 1; p <= last; ++p) {
      if (row[p] == '-') {
        ++length;
        continue;
      }
      if (length % 3 != 0 && letters > 0) {
        if (withgaps++ == 0) gapin = i, gapat = p - length;
        break;
      }
      length = 0;
      ++letters;
    }
  }
  if (withstops > 0) {
    const std::array<char, 3> codon = codonat(ali.let[stopin], stopat);
    desk.note(words::codonstops, {std::to_string(withstops),
                                  {codon.data(), 3},
                                  columnof(ali, stopat),
                                  std::to_string(stopin),
                                  nameof(ali, stopin)});
  }
  if (withgaps > 0) {
    desk.note(words::codongaps,
              {std::to_string(withgaps), columnof(ali, gapat), std::to_string(gapin), nameof(ali, gapin)});
  }
}

void notenames(const Desk& desk) {
  const Table<std::string>& name = desk.ali.name;
  const auto say = [&](const Pair& pair, std::string_view words, std::string_view shown) {
    if (pair.first == 0) return;
    desk.note(words, {std::to_string(pair.first), std::to_string(pair.second), shown, desk.file});
  };
  const Pair cut = sametwice(name, [](std::string_view text) { return keyof(text); });
  if (cut.first == 0) return;
  const Pair whole = sametwice(name, [](std::string_view text) { return text; });
  if (whole.first != 0) {
    desk.note(words::samenames,
              {std::to_string(whole.first), std::to_string(whole.second), nameof(desk.ali, whole.first)});
  } else {
    say(cut, words::samewords, keyof(name[cut.first]));
  }
}

/// The sequences with the most gaps or unknown letters, at least a tenth of the positions, as "3 (Mus, 81 %)".
std::string emptiest(const Alignment& ali, const BatchState& run) {
  const char letter = unknownof(run);
  std::vector<std::pair<long long, int>> missing;
  for (int i = 1; i <= ali.numseq; ++i) {
    const char* text = ali.let[i].from(1);
    const auto count =
        std::count_if(text, text + ali.nupo, [&](char c) { return c == '-' || c == '?' || lower(c) == letter; });
    if (count * 10LL >= ali.nupo) missing.emplace_back(count, i);
  }
  std::stable_sort(missing.begin(), missing.end(), [](const auto& a, const auto& b) { return a.first > b.first; });
  std::string list;
  for (std::size_t k = 0; k < std::min(listed, missing.size()); ++k) {
    const auto [count, i] = missing[k];
    list += (k > 0 ? ", " : "") + std::to_string(i) + " (" + nameof(ali, i) + ", " +
            std::to_string(count * 100 / ali.nupo) + " %)";
  }
  return list;
}

}  // namespace

void notealignment(const Alignment& ali, const BatchState& run, Messages& messages) {
  const Desk desk{ali, run, messages};
  if (!ali.dropped.empty()) {
    desk.note(words::dropped, {columns(ali.dropped)});
  }
  const std::string letters = firstletters(ali);
  const bool protein = run.seq_type == 'P';
  const bool nucleotides = letters.size() >= telling && letters.find_first_not_of("ACGTUN") == std::string::npos;
  const bool residues = letters.find_first_of("EFILPQ") != std::string::npos;
  notecharacters(desk, protein ? !nucleotides : !residues);
  if (pointsatfirst(ali, run.fichero1)) desk.note(words::points, {});
  if (run.fileformat == fasta && ali.name[1].size() > 2 && ali.name[1][2] == ';') desk.note(words::looksnbrf, {});
  if (protein && nucleotides) desk.note(words::looksnucleotide, {});
  if (!protein && residues) desk.note(words::looksprotein, {});
  if (run.seq_type == 'C') notecodons(desk);
  notenames(desk);
}

void noteselection(const Alignment& ali, const Selection& found, const BatchState& run, Messages& messages) {
  const Desk desk{ali, run, messages};
  if (found.blocks.nupo3 == 0) {
    const Table<float>& val = found.scores.val;
    int gaps = 0, flanks = 0;
    for (int p = 1; p <= val.size(); ++p) {
      gaps += val[p] == 0 ? 1 : 0;
      flanks += val[p] >= static_cast<float>(run.flankval) ? 1 : 0;
    }
    const std::string sequences = gaps * 4LL >= ali.nupo ? emptiest(ali, run) : "";
    if (!sequences.empty()) {
      desk.note(words::nothingbygaps, {sequences});
    } else if (flanks == 0) {
      desk.note(words::nothingbyflanks, {std::to_string(run.flankval)});
    } else {
      desk.note(words::nothingbylength, {});
    }
    return;
  }
  for (int i = 1; i <= ali.numseq; ++i) {
    const Row row = ali.let[i];
    const bool empty = std::all_of(found.blocks.newpos.begin(), found.blocks.newpos.end(), [&](const Stretch& block) {
      const char* first = row.from(block.first);
      return std::all_of(first, first + block.length(), [](char c) { return c == '-'; });
    });
    if (empty) desk.note(words::emptyrow, {std::to_string(i), nameof(ali, i)});
  }
}

void notespecies(const Sheet& concatenation, const std::string& path, Messages& messages) {
  for (int i = 1; i <= concatenation.name->size(); ++i) {
    bool empty = true;
    concatenation.row(i, [&](const char* text, std::ptrdiff_t count) {
      empty = empty && std::all_of(text, text + count, [](char c) { return c == '-' || c == '?'; });
    });
    if (empty) {
      messages.note(path, filled(words::emptyspecies, {std::to_string(i), plainname((*concatenation.name)[i])}));
    }
  }
}

}  // namespace trimora::rooms
