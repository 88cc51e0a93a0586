#include "trimora_run/notes.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string_view>
#include <utility>

#include "batch/genetic_code.h"
#include "batch/names.h"
#include "ground/vector_clones.h"
#include "input/letters.h"
#include "trimora_run/words.h"

namespace trimora::rooms {

namespace {

constexpr int share = 5;           // per cent of the columns from which on letters that may mean gaps are worth a note
constexpr std::size_t listed = 5;  // stretches, or sequences, that a note names
constexpr int tile = 4096;         // positions looked at together: their data fit into the first-level cache

/// What is known of a character, and of a position by all of its characters together.
constexpr std::uint8_t gap = 1;
constexpr std::uint8_t unknown_mark = 2;    // '?'
constexpr std::uint8_t unknown_letter = 4;  // X or N

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

/// Add the kinds of `width` characters at `text` to those already found at their positions.
/// Returns  what they are all together.
TRIMORA_VECTOR_CLONES
std::uint8_t classify(const char* text, int width, char unknown, std::uint8_t* known) {
  std::uint8_t all = 0;
  for (int c = 0; c < width; ++c) {
    const auto small = static_cast<std::uint8_t>(text[c] | 0x20);
    const std::uint8_t is_gap = text[c] == '-' ? gap : std::uint8_t{0};
    const std::uint8_t is_mark = text[c] == '?' ? unknown_mark : std::uint8_t{0};
    const std::uint8_t is_unknown = small == static_cast<std::uint8_t>(unknown) ? unknown_letter : std::uint8_t{0};
    const auto what = static_cast<std::uint8_t>(is_gap | is_mark | is_unknown);
    known[c] |= what;
    all |= what;
  }
  return all;
}

/// The letter for an unknown residue, as a small one.
char unknown_of(char seq_type) {
  return seq_type == 'P' ? 'x' : 'n';
}
char unknown_of(const OutputState& run) {
  return unknown_of(run.seq_type);
}

/// Whether there is nothing but gaps and unknown letters.
bool empty(const char* text, std::ptrdiff_t count, char unknown) {
  return std::all_of(text, text + count,
                     [&](char c) { return c == '-' || c == '?' || c == '!' || c == '*' || lower(c) == unknown; });
}

/// What else than known letters and gaps an alignment holds.
struct Characters {
  std::uint8_t all = 0;    // what there is
  long long unknowns = 0;  // positions without a gap in which a residue is unknown
};

Characters characters(const Alignment& ali, const OutputState& run) {
  Characters found;
  const char unknown = unknown_of(run);
  std::uint8_t known[tile];
  for (int start = 1; start <= ali.nupo; start += tile) {
    const int width = std::min(tile, ali.nupo - start + 1);
    bool any = false;  // most alignments hold nothing remarkable, and are looked at but once
    for (int i = 1; i <= ali.numseq && !any; ++i) any = remarkable(ali.let[i].from(start), width, unknown);
    if (!any) continue;
    std::fill_n(known, width, std::uint8_t{0});
    for (int i = 1; i <= ali.numseq; ++i) {
      found.all |= classify(ali.let[i].from(start), width, unknown, known);
    }
    found.unknowns += std::count_if(known, known + width, [](std::uint8_t what) {
      return (what & gap) == 0 && (what & (unknown_mark | unknown_letter)) != 0;
    });
  }
  return found;
}

std::string name_at(const Alignment& ali, int i) {
  return std::string(plain_name(ali.name[i]));
}

/// One alignment, and the notes on it.
struct Notebook {
  const Alignment& ali;
  const OutputState& run;
  std::vector<std::string>& notes;

  void note(std::string_view words, std::initializer_list<std::string_view> values) const {
    notes.push_back(filled(words, values));
  }
};

/// Letters at which the programs that come next stop, where a form is written that they read.
void note_stops(const Notebook& book, const std::vector<Remark>& remarks, const Settings& settings) {
  const bool plain =
      std::any_of(settings.forms.begin(), settings.forms.end(), [](Form f) { return f != Form::trimora; });
  if (!plain || settings.unknown == Unknown::x) return;
  const bool protein = book.run.seq_type == 'P';
  for (const Remark& remark : remarks) {
    if (remark.what != Remark::What::exclamation_marks) continue;
    book.note(words_of_run::stops_readers,
              {"!", std::to_string(remark.number), "IQ-TREE and RAxML", protein ? "X" : "N"});
  }
  if (!protein) return;
  long long count = 0;
  for (int i = 1; i <= book.ali.numseq; ++i) {
    const std::string_view text(book.ali.let[i].from(1), static_cast<std::size_t>(book.ali.nupo));
    for (const char c : {'U', 'u', 'J', 'j'}) {
      if (text.find(c) != text.npos) count += std::count(text.begin(), text.end(), c);  // few have any
    }
  }
  if (count > 0) book.note(words_of_run::stops_readers, {"U or J", std::to_string(count), "RAxML", "X"});
}

/// Whether the letters are of another type of sequence than the one that they are read as.
bool contrary(const KindByLetters& by_letters, const OutputState& run) {
  return by_letters.kind && (*by_letters.kind == Kind::protein) != (run.seq_type == 'P');
}

/// `as_read`: the type of sequence is the one that it seems to be, so that X or N is an unknown residue.
void note_characters(const Notebook& book, bool as_read) {
  const Alignment& ali = book.ali;
  const Characters found = characters(ali, book.run);
  const bool many = found.unknowns * 100 >= static_cast<long long>(share) * ali.nupo;
  if (!as_read || !many || book.run.tog_gaps == all_gaps) return;
  const bool mark = (found.all & unknown_mark) != 0;
  const bool letters = (found.all & unknown_letter) != 0;
  const std::string letter(1, capital(unknown_of(book.run)));
  book.note(words_of_run::unknown_letters,
            {std::to_string(found.unknowns * 100 / ali.nupo), mark && letters ? letter + " or ?"
                                                              : mark          ? "?"
                                                                              : letter});
}

/// Whether the file writes '.' for the letter of the first sequence: that one has none of them, and the others many.
bool points_at_first(const Alignment& ali, const std::vector<Remark>& remarks) {
  for (const Remark& remark : remarks) {
    if (remark.what != Remark::What::dots_are_gaps || remark.sequence <= 1) continue;
    const char* first = ali.let[1].from(1);
    const auto gaps = static_cast<long long>(std::count(first, first + ali.nupo, '-'));
    const long long others = static_cast<long long>(ali.numseq - 1) * ali.nupo;
    return remark.number * 4 > others && gaps * 10 < ali.nupo;
  }
  return false;
}

/// The codon that begins at position p, as capitals of DNA.
std::array<char, 3> codon_at(const Row& row, int p) {
  std::array<char, 3> codon{};
  for (int k = 0; k < 3; ++k) {
    const char c = capital(row[p + k]);
    codon[static_cast<std::size_t>(k)] = c == 'U' ? 'T' : c;
  }
  return codon;
}

void note_codons(const Notebook& book, const GeneticCode& code) {
  const Alignment& ali = book.ali;
  const ColumnNumbers column_of(ali);
  const auto columnof = [&](int p) { return std::to_string(column_of(p)); };
  if (ali.nupo % 3 != 0) book.note(words_of_run::codon_length, {std::to_string(ali.nupo)});

  int with_stops = 0, with_gaps = 0;
  int stop_in = 0, stop_at = 0, gap_in = 0, gap_at = 0;  // the first of each: sequence and position
  for (int i = 1; i <= ali.numseq; ++i) {
    const Row row = ali.let[i];
    int last = ali.nupo;
    while (last > 0 && row[last] == '-') --last;
    const int end = last - last % 3;  // of the last whole codon, which may be a stop
    bool stop = false;
    for (int p = 1; p + 2 < end && !stop; p += 3) {
      stop = code.stops({row.from(p), 3});
      if (stop && with_stops++ == 0) stop_in = i, stop_at = p;
    }
    int length = 0;   // of the run of gaps that ends here
    int letters = 0;  // before it
    for (int p = 1; p <= last; ++p) {
      if (row[p] == '-') {
        ++length;
        continue;
      }
      if (length % 3 != 0 && letters > 0) {
        if (with_gaps++ == 0) gap_in = i, gap_at = p - length;
        break;
      }
      length = 0;
      ++letters;
    }
  }
  if (with_stops > 0) {
    const std::array<char, 3> codon = codon_at(ali.let[stop_in], stop_at);
    book.note(words_of_run::codon_stops, {std::to_string(with_stops),
                                          {codon.data(), 3},
                                          columnof(stop_at),
                                          std::to_string(stop_in),
                                          name_at(ali, stop_in)});
  }
  if (with_gaps > 0) {
    book.note(words_of_run::codon_gaps,
              {std::to_string(with_gaps), columnof(gap_at), std::to_string(gap_in), name_at(ali, gap_in)});
  }
}

void note_names(const Notebook& book, const Settings& settings) {
  const Table<std::string>& name = book.ali.name;
  if (const Pair whole = same_twice(name, plain_name); whole.first != 0) {
    book.note(words_of_run::same_names,
              {std::to_string(whole.first), std::to_string(whole.second), name_at(book.ali, whole.first)});
    return;
  }
  const auto written = [&](Form form) {
    return std::find(settings.forms.begin(), settings.forms.end(), form) != settings.forms.end();
  };
  if (!written(Form::fasta) && !written(Form::trimora)) return;
  const Pair cut = same_twice(name, [](std::string_view text) { return key_of(text); });
  if (cut.first != 0) {
    book.note(words_of_run::same_words,
              {std::to_string(cut.first), std::to_string(cut.second), key_of(name[cut.first])});
  }
  for (int i = 1; i <= name.size(); ++i) {
    if (key_of(name[i]).find_first_of("()[],:;'") == std::string_view::npos) continue;
    book.note(words_of_run::breaks_trees, {std::to_string(i), name_at(book.ali, i)});
    break;
  }
}

/// The sequences with the most gaps or unknown letters, at least a tenth of the positions, as "3 (Mus, 81 %)".
std::string emptiest(const Alignment& ali, const OutputState& run) {
  const char letter = unknown_of(run);
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
    list += (k > 0 ? ", " : "") + std::to_string(i) + " (" + name_at(ali, i) + ", " +
            std::to_string(count * 100 / ali.nupo) + " %)";
  }
  return list;
}

}  // namespace

std::vector<std::string> notes_on_alignment(const Alignment& ali, const std::vector<Remark>& remarks,
                                            const KindByLetters& by_letters, const OutputState& run,
                                            const Settings& settings) {
  std::vector<std::string> notes;
  const Notebook book{ali, run, notes};
  const bool contrary_type = contrary(by_letters, run);
  note_characters(book, !contrary_type);
  note_stops(book, remarks, settings);
  if (points_at_first(ali, remarks)) book.note(words_of_run::points, {});
  if (contrary_type) {
    book.note(run.seq_type == 'P' ? words_of_run::looks_nucleotide : words_of_run::looks_protein, {});
  }
  if (run.seq_type == 'C') note_codons(book, *GeneticCode::numbered(settings.code.value_or(1)));
  note_names(book, settings);
  return notes;
}

std::vector<std::string> notes_on_selection(const Alignment& ali, const Selection& found,
                                            const KindByLetters& by_letters, const OutputState& run) {
  std::vector<std::string> notes;
  const Notebook book{ali, run, notes};
  if (found.blocks.nupo3 == 0) {
    if (contrary(by_letters, run)) {
      book.note(words_of_run::nothing_by_type, {});
      return notes;
    }
    const Table<float>& val = found.scores.val;
    int gaps = 0, flanks = 0;
    for (int p = 1; p <= val.size(); ++p) {
      gaps += val[p] == 0 ? 1 : 0;
      flanks += flank(found.scores, p, run) ? 1 : 0;
    }
    const std::string sequences = gaps * 4LL >= ali.nupo ? emptiest(ali, run) : "";
    if (!sequences.empty()) {
      const char* advice = run.tog_gaps == no_gaps ? "-b5=h" : run.tog_gaps == with_half ? "-b5=a" : "a lower -b2";
      book.note(words_of_run::nothing_by_gaps, {sequences, advice});
    } else if (flanks == 0) {
      const char* advice = run.flankval > run.initnegval ? ": try a lower -b2" : "";
      book.note(words_of_run::nothing_by_flanks, {std::to_string(run.flankval), advice});
    } else if (!found.blocks.newpos.empty()) {  // of codons
      book.note(words_of_run::nothing_by_frame, {});
    } else {
      const std::string parameter = found.blocks.pos.empty() ? "b0" : "b4";
      const bool together = run.posblen == run.posblen2;  // b0 follows b4
      book.note(words_of_run::nothing_by_length, {together ? "b4" : parameter, together ? "b4" : parameter});
    }
    return notes;
  }
  const char unknown = unknown_of(run);
  for (int i = 1; i <= ali.numseq; ++i) {
    const Row row = ali.let[i];
    const bool nothing = std::all_of(found.blocks.newpos.begin(), found.blocks.newpos.end(), [&](const Stretch& block) {
      return empty(row.from(block.first), block.length(), unknown);
    });
    if (nothing) book.note(words_of_run::empty_row, {std::to_string(i), name_at(ali, i)});
  }
  return notes;
}

std::vector<std::string> notes_on_species(const Sheet& concatenation, char seq_type) {
  std::vector<std::string> notes;
  const char unknown = unknown_of(seq_type);
  for (int i = 1; i <= concatenation.name->size(); ++i) {
    bool nothing = true;
    concatenation.row(
        i, [&](const char* text, std::ptrdiff_t count) { nothing = nothing && empty(text, count, unknown); });
    if (!nothing) continue;
    notes.push_back(filled(words_of_run::empty_species, {std::to_string(i), plain_name((*concatenation.name)[i])}));
  }
  return notes;
}

}  // namespace trimora::rooms
