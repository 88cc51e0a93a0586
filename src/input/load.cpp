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

constexpr std::size_t longest_name = 74;  // of a name line, its line end included
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

/// What the two formats do not share. Everything else is read_records().
struct RecordFormat {
  char terminator;                                           // ends a sequence, wherever it is
  bool (*skipped)(const std::string& line);                  // a line passed over where a name line is due
  std::string (*take_name)(const std::string& line, int i);  // of sequence i
  bool described;                                            // a description line follows the name line
  bool terminated;                                           // the last sequence needs its terminator as well
};

constexpr RecordFormat pir_format = {
    '*',
    [](const std::string& line) { return is_empty_line(line) || line.starts_with(' ') || line == "*\n"; },
    [](const std::string& line, int i) {
      if (!line.starts_with('>')) throw Failure{.kind = Failure::Kind::bad_record, .sequence = i, .detail = line};
      return line.size() <= 3 ? line : line.substr(4);  // after ">P1;", or whatever is there instead
    },
    true,
    true,
};

constexpr RecordFormat fasta_format = {
    '>',
    [](const std::string& line) { return is_empty_line(line); },
    // The '>' of every record but the first was read as the terminator of the sequence before it.
    [](const std::string& line, int) { return line.starts_with('>') ? line.substr(1) : line; },
    false,
    false,
};

/// Append a stretch of sequence text: everything but line ends and blanks is a letter, and '.' is a gap.
void append_letters(std::vector<char>& letters, const char* first, const char* last) {
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
std::size_t whole_length(const std::string& line, InputFile& file) {
  std::size_t length = line.size();
  if (line.ends_with('\n')) return length;
  const bool ended = file.read_until(
      '\n', [&](const char* first, const char* last) { length += static_cast<std::size_t>(last - first); });
  return length + (ended ? 1 : 0);
}

Alignment read_records(InputFile& file, const RecordFormat& format) {
  Alignment ali;
  std::vector<char> letters;
  allocating("let", 1, [&] { letters.reserve(file.size()); });  // memory that no letter ever touches costs nothing
  std::size_t length = 0;                                       // of the first sequence, and so of all
  std::string line;
  while (!file.ended()) {
    allocating("name", [&] { file.read_line(line); });
    if (file.ended()) break;  // a name line that is not a whole line adds no sequence
    if (format.skipped(line)) continue;
    const int n = ali.name.size() + 1;
    if (line.size() > longest_name) {
      throw failure(Failure::Kind::name_too_long, n, line, whole_length(line, file), longest_name);
    }
    allocating("name", [&] {
      if (n > most) throw std::bad_alloc();
      ali.name.append(format.take_name(line, n));
    });
    const std::string& name = ali.name[n];

    const std::size_t before = letters.size();
    const bool whole = allocating("let", n, [&] {
      if (format.described) file.read_line(line);
      return file.read_until(format.terminator, [&](const char* first, const char* last) {
        append_letters(letters, first, last);
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

}  // namespace

Alignment load_pir(InputFile& file) {
  return read_records(file, pir_format);
}

Alignment load_fasta(InputFile& file) {
  return read_records(file, fasta_format);
}

Alignment load(const InputState& run) {
  if (run.fileformat == 0) return without_gap_columns({});
  InputFile file = allocating("let", [&] { return InputFile(run.fichero1); });
  if (!file) throw Failure{.kind = Failure::Kind::not_readable, .file = run.fichero1, .error = errno};
  return load(file, run);
}

Alignment load(InputFile& file, const InputState& run) {
  return without_gap_columns(run.fileformat == pir ? load_pir(file) : load_fasta(file));
}

}  // namespace trimora::rooms
