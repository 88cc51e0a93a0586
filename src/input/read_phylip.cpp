// PHYLIP: "sequences positions", then the rows: one after the other or interleaved in blocks, with names of ten columns or
// of one word, or as PAML writes them. The file does not say which: it is read in the one way that gives the numbers of
// its first line.
#include <algorithm>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ground/failure.h"
#include "input/assembly.h"
#include "input/formats.h"
#include "input/words.h"

namespace trimora::rooms {
namespace {

struct PhylipHeader {
  int numseq = 0;
  int nupo = 0;
  std::string options;  // letters after the numbers, in capitals
};

std::optional<PhylipHeader> phylip_header(std::string_view line) {
  line = without_indent(line);
  if (line.empty() || !is_digit(line.front())) return std::nullopt;  // as most lines
  const auto numseq = number_in(take_word(line));
  const auto nupo = number_in(take_word(line));
  if (!numseq || !nupo) return std::nullopt;
  PhylipHeader header{*numseq, *nupo, {}};
  for (const char c : line) {
    if (!is_letter(c) && !is_blank(c)) return std::nullopt;
    if (is_letter(c)) header.options += capital(c);
  }
  return header;
}

/// The lines of a data set, with their text, which is given back piece by piece.
class PhylipLines {
 public:
  struct Line {
    const char* first;
    unsigned length;
    unsigned letters : 30;  // but for blanks
    unsigned pure : 1;      // all of it can be letters
    unsigned apart : 1;     // after an empty line
    std::string_view text() const { return {first, length}; }
  };

  /// `bytes`: of the whole input, as far as that is known.
  explicit PhylipLines(std::size_t bytes) : bytes_(bytes) {}

  /// `apart`: after an empty line.
  void add(std::string_view text, bool apart) {
    constexpr std::size_t chunk = 1U << 20, longest = (1U << 30) - 1;
    if (text.size() > longest) throw Failure{.kind = Failure::Kind::too_long, .expected = longest};
    if (chunks_.empty() || chunks_.back().capacity() - chunks_.back().size() < text.size()) {
      chunks_.emplace_back().reserve(std::max(chunk, text.size()));
    }
    std::string& kept = chunks_.back();
    const char* first = kept.data() + kept.size();
    kept += text;  // which moves nothing: there is room for it
    const auto length = static_cast<unsigned>(text.size());
    const LetterFacts facts = letter_facts(text);
    if (lines_.empty()) lines_.reserve(bytes_ / (text.size() + 1));  // memory that is never touched costs nothing
    lines_.push_back({first, length, static_cast<unsigned>(facts.letters) & unsigned{longest}, facts.pure, apart});
  }
  std::size_t size() const { return lines_.size(); }
  const Line& operator[](std::size_t k) const { return lines_[k]; }

  /// Line `k` is read for the last time, and so are all before it.
  void release(std::size_t k) {
    while (chunks_.size() > 1 && !holds(chunks_.front(), lines_[k].first)) chunks_.pop_front();
  }

 private:
  static bool holds(const std::string& chunk, const char* text) {
    return !std::less<>()(text, chunk.data()) && !std::less<>()(chunk.data() + chunk.size(), text);
  }
  std::size_t bytes_;
  std::deque<std::string> chunks_;
  std::vector<Line> lines_;
};

enum class PhylipNames { word, ten_columns, two_blanks };

struct PhylipLayout {
  bool interleaved;
  PhylipNames names;
  const char* words;
};
constexpr PhylipLayout phylip_layouts[] = {
    {false, PhylipNames::word, "sequential, names of one word"},
    {true, PhylipNames::word, "interleaved, names of one word"},
    {false, PhylipNames::ten_columns, "sequential, names of ten columns"},
    {true, PhylipNames::ten_columns, "interleaved, names of ten columns"},
    {false, PhylipNames::two_blanks, "sequential, names that end at two blanks or with their line"},
    {true, PhylipNames::two_blanks, "interleaved, names that end at two blanks or with their line"},
};

/// The line where a row begins.
struct PhylipStart {
  std::string_view name;
  std::string_view letters;
  std::size_t line = 0;
};

PhylipStart phylip_start(std::string_view line, std::size_t number, PhylipNames names) {
  std::size_t end = 10;
  if (names != PhylipNames::ten_columns) {
    line = trimmed(line);
    end = up_to(line, ' ', '\t').size();
    while (names == PhylipNames::two_blanks && end < line.size() && line[end] != '\t' && line.substr(end, 2) != "  ") {
      end += 1 + up_to(line.substr(end + 1), ' ', '\t').size();
    }
  }
  end = std::min(end, line.size());
  return {trimmed(line.substr(0, end)), trimmed(line.substr(end)), number};
}

/// One way to read a data set: where its rows begin, or why it cannot be read so.
struct PhylipReading {
  const PhylipLayout* layout = nullptr;
  std::vector<PhylipStart> starts;
  std::size_t line = 0;         // that was come to
  std::size_t first_block = 0;  // the lines of the first block, in which names may have lines of their own
  std::size_t row = 0;          // that is being read, from 1
  std::optional<Failure> failure;

  bool fail(Failure::Kind kind, long long length, long long expected, std::string detail = {}) {
    failure = Failure{.kind = kind,
                      .sequence = static_cast<int>(row),
                      .name = row == 0 ? std::string() : std::string(starts[row - 1].name),
                      .detail = std::move(detail),
                      .length = length,
                      .expected = expected};
    return false;
  }
  /// What cannot be a letter is in `text`, after `length` letters of the row.
  void fail_at_letter(std::string_view text, long long length) {
    const std::size_t at = first_bad(text);
    length += static_cast<long long>(letters_in(text.substr(0, at))) + 1;
    fail(Failure::Kind::bad_character, length, 0, shown(text[at]));
  }
};

/// Begin a row at the next line. Returns the letters on it, nothing when that cannot be.
std::optional<long long> begin_row(PhylipReading& way, const PhylipLines& lines, const PhylipHeader& header) {
  if (way.line == lines.size()) {
    way.fail(Failure::Kind::unfinished_record, static_cast<long long>(way.starts.size()), header.numseq, "sequences");
    return std::nullopt;
  }
  way.starts.push_back(phylip_start(lines[way.line].text(), way.line, way.layout->names));
  way.row = way.starts.size();
  const PhylipStart& start = way.starts.back();
  const LetterFacts facts = letter_facts(start.letters);
  if (start.name.empty() || !facts.pure) {
    if (start.name.empty()) {
      way.fail(Failure::Kind::bad_record, 0, 0, excerpt(lines[way.line].text()));
    } else {
      way.fail_at_letter(start.letters, 0);
    }
    return std::nullopt;
  }
  ++way.line;
  return static_cast<long long>(facts.letters);
}

/// Go on with a row at the next line.
std::optional<long long> continue_row(PhylipReading& way, const PhylipLines& lines, const PhylipHeader& header,
                                      long long length) {
  if (way.line == lines.size()) {
    way.fail(Failure::Kind::unfinished_record, length, header.nupo, "letters");
    return std::nullopt;
  }
  const PhylipLines::Line& line = lines[way.line];
  if (!line.pure) {
    way.fail_at_letter(line.text(), length);
    return std::nullopt;
  }
  ++way.line;
  return static_cast<long long>(line.letters);
}

bool read_sequential(PhylipReading& way, const PhylipLines& lines, const PhylipHeader& header) {
  for (int i = 1; i <= header.numseq; ++i) {
    const auto first = begin_row(way, lines, header);
    if (!first) return false;
    long long length = *first;
    while (length < header.nupo) {
      const auto more = continue_row(way, lines, header, length);
      if (!more) return false;
      length += *more;
    }
    if (length > header.nupo) return way.fail(Failure::Kind::unequal_lengths, length, header.nupo);
  }
  return true;
}

bool read_interleaved(PhylipReading& way, const PhylipLines& lines, const PhylipHeader& header) {
  long long length = 0;
  long long width = 0;  // of the block
  for (int i = 1; i <= header.numseq; ++i) {
    auto first = begin_row(way, lines, header);
    if (first == 0) first = continue_row(way, lines, header, 0);
    if (!first) return false;
    if (i == 1) width = *first;
    if (width == 0) return way.fail(Failure::Kind::unequal_lengths, 0, header.nupo);
    if (*first != width) return way.fail(Failure::Kind::unequal_lengths, *first, width);
  }
  way.first_block = way.line;
  for (length = width; length < header.nupo; length += width) {
    for (int i = 1; i <= header.numseq; ++i) {
      way.row = static_cast<std::size_t>(i);
      const auto more = continue_row(way, lines, header, length);
      if (!more) return false;
      if (i == 1) width = *more;
      if (*more != width) return way.fail(Failure::Kind::unequal_lengths, *more, width);
    }
  }
  if (length > header.nupo) return way.fail(Failure::Kind::unequal_lengths, length, header.nupo);
  return true;
}

/// Whether empty lines are only where rows or blocks end.
bool spaced(const PhylipReading& way, const PhylipLines& lines) {
  std::size_t row = 0;
  for (std::size_t k = 1; k < lines.size(); ++k) {
    while (row < way.starts.size() && way.starts[row].line < k) ++row;
    const bool begins = row < way.starts.size() && way.starts[row].line == k;
    const bool begins_block = k >= way.first_block && (k - way.first_block) % way.starts.size() == 0;
    if (lines[k].apart && !(way.layout->interleaved ? begins_block : begins)) return false;
  }
  return true;
}

PhylipReading read_as(const PhylipLayout& layout, const PhylipLines& lines, const PhylipHeader& header) {
  PhylipReading way;
  way.layout = &layout;
  const bool whole = layout.interleaved ? read_interleaved(way, lines, header) : read_sequential(way, lines, header);
  if (whole && way.line < lines.size()) {
    way.fail(Failure::Kind::bad_record, 0, 0, excerpt(lines[way.line].text()));
  }
  return way;
}

/// Whether `layout` gives the same names and letters as a reading that fits.
bool same(const PhylipReading& way, const PhylipLayout& layout, const PhylipLines& lines) {
  if (way.layout->interleaved != layout.interleaved) return false;
  return std::all_of(way.starts.begin(), way.starts.end(), [&](const PhylipStart& start) {
    const PhylipStart other = phylip_start(lines[start.line].text(), start.line, layout.names);
    return other.name == start.name && other.letters.size() == start.letters.size();
  });
}

/// The one way to read a data set that fits.
PhylipReading only_reading(const PhylipLines& lines, const PhylipHeader& header) {
  const bool sequential = header.options.find('I') == header.options.npos;
  const bool interleaved = header.options.find('S') == header.options.npos;
  const bool one_line_each = lines.size() <= static_cast<std::size_t>(header.numseq);  // where both are the same
  std::vector<PhylipReading> fitting;
  std::optional<PhylipReading> failed;
  for (const PhylipLayout& layout : phylip_layouts) {
    if (layout.interleaved ? !interleaved || one_line_each : !sequential && !one_line_each) continue;
    if (std::any_of(fitting.begin(), fitting.end(), [&](const auto& way) { return same(way, layout, lines); })) {
      continue;
    }
    PhylipReading way = read_as(layout, lines, header);
    if (way.failure) {
      if (!failed || way.starts.size() > failed->starts.size()) failed = std::move(way);
    } else if (!(layout.interleaved && sequential && way.first_block == lines.size())) {  // one block is both
      fitting.push_back(std::move(way));
    }
  }
  if (fitting.size() > 1) {
    const auto likely = [&](const PhylipReading& way) { return spaced(way, lines); };
    if (std::any_of(fitting.begin(), fitting.end(), likely)) std::erase_if(fitting, std::not_fn(likely));
  }
  if (fitting.size() > 1) {
    throw Failure{.kind = Failure::Kind::ambiguous_format,
                  .detail = std::string("PHYLIP: ") + fitting[0].layout->words + "; or " + fitting[1].layout->words};
  }
  if (!fitting.empty()) return std::move(fitting.front());
  if (!failed) throw Failure{.kind = Failure::Kind::bad_record, .detail = header.options};
  throw *failed->failure;
}

/// Skip what options of PAML put before the rows: with G the number of genes and what belongs to which.
bool option_line(std::string_view line, const PhylipHeader& header, int& marks) {
  if (header.options.find('G') == header.options.npos) return false;
  if (marks == 0 && capital(line.front()) == 'G') {
    std::string_view rest = line.substr(1);
    if (!digits(take_word(rest))) return false;
    marks = rest.empty() ? 1 : header.nupo + 1;  // else the genes are told by their lengths
    return true;
  }
  const bool marked =
      marks > 0 && marks <= header.nupo && all_are(line, [](char c) { return is_digit(c) || is_blank(c); });
  if (marked) marks += static_cast<int>(letters_in(line));
  return marked;
}

}  // namespace

bool begins_phylip(std::string_view head) {
  return phylip_header(first_line(head)).has_value();
}

Reading read_phylip(Lines& in) {
  std::string_view line;
  in.next_filled(line);
  const PhylipHeader header = phylip_header(line).value();
  constexpr std::string_view paml_options = "ISGCP";
  if (header.numseq == 0 || header.nupo == 0 || header.options.find_first_not_of(paml_options) != header.options.npos) {
    throw Failure{.kind = Failure::Kind::bad_record, .detail = excerpt(line), .length = in.number()};
  }
  PhylipLines lines(in.bytes());
  std::vector<Remark> remarks;
  int marks = 0;
  bool apart = false;
  while (in.next(line)) {
    if (blank(line)) {
      apart = true;
      continue;
    }
    if (lines.size() == 0 && option_line(trimmed(line), header, marks)) continue;
    const auto next = phylip_header(line);
    if (next && next->options.empty()) {  // no row: its letters would be a number
      remarks.push_back({.what = Remark::What::more_alignments});
      break;
    }
    lines.add(line, std::exchange(apart, false));
  }
  PhylipReading way = only_reading(lines, header);
  const auto numseq = static_cast<std::size_t>(header.numseq);
  if (way.layout->names != PhylipNames::word) {
    remarks.push_back({.what = Remark::What::layout, .detail = std::string("PHYLIP, ") + way.layout->words});
  }

  Assembly assembly;
  assembly.dots_match_first = true;
  const auto nupo = static_cast<std::size_t>(header.nupo);
  assembly.reserve(numseq, nupo);
  if (way.layout->interleaved && lines.size() > numseq) {
    std::vector<std::string> names, rows;
    for (const PhylipStart& start : way.starts) {
      names.emplace_back(start.name);
      rows.emplace_back().reserve(nupo + lines[numseq].text().size());  // which comes with its blanks
      append_letters(rows.back(), start.letters.empty() ? lines[start.line + 1].text() : start.letters);
    }
    for (std::size_t k = way.first_block; k < lines.size(); ++k) {
      lines.release(k);
      append_letters(rows[(k - way.first_block) % numseq], lines[k].text());
    }
    lines = PhylipLines(0);
    for (std::size_t k = 0; k < numseq; ++k) assembly.add(std::move(names[k]), std::exchange(rows[k], {}));
  } else {
    for (std::size_t k = 0; k < numseq; ++k) {
      const PhylipStart& start = way.starts[k];
      lines.release(start.line);
      assembly.begin(std::string(start.name));
      const std::size_t end = k + 1 < numseq ? way.starts[k + 1].line : lines.size();
      std::string_view stretch = start.letters;  // of lines that are next to each other in memory
      for (std::size_t next = start.line + 1; next < end; ++next) {
        const std::string_view text = lines[next].text();
        if (text.data() == stretch.data() + stretch.size()) {
          stretch = {stretch.data(), stretch.size() + text.size()};
          continue;
        }
        assembly.append(stretch);
        lines.release(next);
        stretch = text;
      }
      assembly.append(stretch);
      assembly.end();
    }
  }
  return assembly.finish({}, std::move(remarks));
}

}  // namespace trimora::rooms
