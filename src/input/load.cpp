#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <limits>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "ground/failure.h"
#include "input/alignment.h"
#include "input/input_file.h"

namespace trimora::rooms {

namespace {

constexpr std::size_t longestname = 74;  // of a name line, its line end included
// Sequences and positions: loops step up to a tile, or a line of the report, past the last one.
constexpr int most = std::numeric_limits<int>::max() - 65536;

/// A failure of sequence `i`, whose name is `name`.
Failure failure(Failure::Kind kind, int i, const std::string& name, std::size_t length, std::size_t expected) {
  return {.kind = kind,
          .sequence = i,
          .name = name.substr(0, name.find('\n')),
          .length = static_cast<long long>(length),
          .expected = static_cast<long long>(expected)};
}

/// What the two formats do not share. Everything else is readrecords().
struct Format {
  char terminator;                                          // ends a sequence, wherever it stands
  bool (*skipped)(const std::string& line);                 // a line passed over where a name line is due
  std::string (*takename)(const std::string& line, int i);  // of sequence i
  bool described;                                           // a description line follows the name line
  bool terminated;                                          // the last sequence needs its terminator as well
};

constexpr Format pirformat = {
    '*',
    [](const std::string& line) { return emptyline(line) || line.starts_with(' ') || line == "*\n"; },
    [](const std::string& line, int i) {
      if (!line.starts_with('>')) throw Failure{.kind = Failure::Kind::bad_record, .sequence = i, .detail = line};
      return line.size() <= 3 ? line : line.substr(4);  // behind ">P1;", whatever stands there
    },
    true,
    true,
};

constexpr Format fastaformat = {
    '>',
    [](const std::string& line) { return emptyline(line); },
    // The '>' of every record but the first was read as the terminator of the sequence before it.
    [](const std::string& line, int) { return line.starts_with('>') ? line.substr(1) : line; },
    false,
    false,
};

/// Append a stretch of sequence text: everything but line ends and blanks is a letter, and '.' is a gap.
void appendletters(std::vector<char>& letters, const char* first, const char* last) {
  if (first == last) return;
  const std::size_t before = letters.size();
  while (first < last) {
    const void* newline = std::memchr(first, '\n', static_cast<std::size_t>(last - first));
    const char* lineend = newline != nullptr ? static_cast<const char*>(newline) : last;
    letters.insert(letters.end(), first, lineend);
    first = lineend + 1;
  }
  const auto fresh = letters.begin() + static_cast<std::ptrdiff_t>(before);
  if (std::memchr(letters.data() + before, ' ', letters.size() - before) != nullptr) {
    letters.erase(std::remove(fresh, letters.end(), ' '), letters.end());
  }
  // Storing every letter, changed or not, lets the compiler turn the loop into vector code.
  std::transform(fresh, letters.end(), fresh, [](char c) { return c == '.' ? '-' : c; });
}

/// The characters of a name line that begins with `line`, its line end included.
std::size_t wholelength(const std::string& line, InputFile& file) {
  std::size_t length = line.size();
  if (line.ends_with('\n')) return length;
  const bool ended = file.readuntil(
      '\n', [&](const char* first, const char* last) { length += static_cast<std::size_t>(last - first); });
  return length + (ended ? 1 : 0);
}

Alignment readrecords(InputFile& file, const Format& format) {
  Alignment ali;
  std::vector<char> letters;
  allocating("let", 1, [&] { letters.reserve(file.size()); });  // memory that no letter ever touches costs nothing
  std::size_t length = 0;                                       // of the first sequence, and so of all
  std::string line;
  while (!file.ended()) {
    allocating("name", [&] { file.readline(line); });
    if (file.ended()) break;  // a name line that is not a whole line adds no sequence
    if (format.skipped(line)) continue;
    const int n = ali.name.size() + 1;
    if (line.size() > longestname) {
      throw failure(Failure::Kind::name_too_long, n, line, wholelength(line, file), longestname);
    }
    allocating("name", [&] {
      if (n > most) throw std::bad_alloc();
      ali.name.append(format.takename(line, n));
    });
    const std::string& name = ali.name[n];

    const std::size_t before = letters.size();
    const bool whole = allocating("let", n, [&] {
      if (format.described) file.readline(line);
      return file.readuntil(format.terminator, [&](const char* first, const char* last) {
        appendletters(letters, first, last);
        const std::size_t reached = letters.size() - before;
        if (reached > most) throw failure(Failure::Kind::too_long, n, name, reached, most);
      });
    });
    const std::size_t found = letters.size() - before;
    if (format.terminated && !whole) throw failure(Failure::Kind::unfinished_record, n, name, found, 0);
    if (n == 1) length = found;
    if (found != length) {
      throw failure(Failure::Kind::unequal_lengths, n, name, found, length);
    }
  }
  ali.numseq = ali.name.size();
  ali.nupo = static_cast<int>(length);
  allocating("let", [&] { ali.let = Rows(std::move(letters), ali.nupo); });
  return ali;
}

/// The stretches that are left when the positions that are gaps in every sequence are taken out: the whole alignment as
/// one stretch when there are none. Some may be empty.
/// A tile of positions at a time: few sequences are looked at before each of its positions has a letter.
std::vector<Stretch> keptpositions(const Alignment& ali) {
  constexpr int tile = 4096;
  char allgap[tile];  // 1 as long as the position is a gap in every sequence looked at
  std::vector<Stretch> kept = {{1, 0}};
  for (int start = 1; start <= ali.nupo; start += tile) {
    const int width = std::min(tile, ali.nupo - start + 1);
    std::fill_n(allgap, width, '\1');
    char left = 1;
    for (int i = 1; i <= ali.numseq && left != 0; ++i) {
      const char* text = ali.let[i].from(start);
      left = 0;
      for (int c = 0; c < width; ++c) {
        allgap[c] = text[c] == '-' ? allgap[c] : '\0';
        left = std::max(left, allgap[c]);
      }
    }
    for (int c = 0; c < width && left != 0; ++c) {
      if (allgap[c] == 0) continue;
      kept.back().last = start + c - 1;
      kept.push_back({start + c + 1, 0});
    }
  }
  kept.back().last = ali.nupo;
  return kept;
}

/// An alignment as it was read, without the positions that are gaps in every sequence.
Alignment checked(Alignment ali) {
  if (ali.numseq < 2) {
    throw Failure{.kind = Failure::Kind::too_few_sequences, .length = ali.numseq};
  }
  const std::vector<Stretch> kept = allocating("let", [&] { return keptpositions(ali); });
  if (kept.size() > 1) {
    ali.dropped = allocating("let", [&] { return complement(kept, ali.nupo); });
    ali.let.keep(kept);
    ali.nupo = totallength(kept);
  }
  if (ali.nupo < 2) {
    throw Failure{.kind = Failure::Kind::too_few_positions, .length = ali.nupo};
  }
  return ali;
}

}  // namespace

Alignment load_pir(InputFile& file) {
  return readrecords(file, pirformat);
}

Alignment load_fasta(InputFile& file) {
  return readrecords(file, fastaformat);
}

Alignment load(const InputState& run) {
  if (run.fileformat == 0) return checked({});
  InputFile file = allocating("let", [&] { return InputFile(run.fichero1); });
  if (!file) throw Failure{.kind = Failure::Kind::not_readable, .file = run.fichero1, .error = errno};
  return load(file, run);
}

Alignment load(InputFile& file, const InputState& run) {
  return checked(run.fileformat == pir ? load_pir(file) : load_fasta(file));
}

}  // namespace trimora::rooms
