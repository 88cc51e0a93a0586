// NEXUS: blocks of commands that end with ';'. The alignment is the MATRIX of the first block DATA or CHARACTERS.
#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ground/failure.h"
#include "input/assembly.h"
#include "input/formats.h"
#include "input/nexus_text.h"
#include "input/row_blocks.h"
#include "input/words.h"

namespace trimora::rooms {
namespace {

struct NexusFormat {
  std::optional<int> ntax;
  std::optional<int> nchar;
  std::optional<Kind> kind;
  bool interleave = false;
  bool labels = true;
  char gap = 0;
  char missing = '?';
  char matchchar = 0;
  std::vector<std::string> taxlabels;
};

Failure refused_nexus(const std::string& what) {
  return Failure{.kind = Failure::Kind::refused_format, .detail = "NEXUS with " + what};
}

void skip_command(NexusText& text) {
  for (NexusToken token = text.token(); token && !token->is(";"); token = text.token()) {
  }
}

/// Hand each word of a command to `use`, with what comes after its '=' still to be read.
template <typename Use>
void for_settings(NexusText& text, Use use) {
  for (NexusToken token = text.token(); token && !token->is(";"); token = text.token()) use(*token);
}

/// The word after '='; `none` without one.
std::string value_of(NexusText& text) {
  if (!text.skip() || !text.line().starts_with('=')) return {};
  text.character();
  const NexusToken token = text.token();
  return token ? token->text : std::string();
}

char character_of(NexusText& text) {
  if (!text.skip() || !text.line().starts_with('=')) return 0;
  text.character();
  return text.character();
}

void read_dimensions(NexusText& text, NexusFormat& format) {
  for_settings(text, [&](const NexusText::Token& word) {
    if (word.is("NTAX")) format.ntax = number_in(value_of(text));
    if (word.is("NCHAR")) format.nchar = number_in(value_of(text));
  });
}

void read_datatype(const std::string& type, NexusFormat& format) {
  for (const char* dna : {"DNA", "RNA", "NUCLEOTIDE"}) {
    if (same_word(type, dna)) format.kind = Kind::dna;
  }
  if (same_word(type, "PROTEIN")) format.kind = Kind::protein;
  if (!format.kind) throw refused_nexus("datatype=" + excerpt(type));
}

void read_format(NexusText& text, NexusFormat& format) {
  for_settings(text, [&](const NexusText::Token& word) {
    if (word.is("DATATYPE")) read_datatype(value_of(text), format);
    if (word.is("GAP")) format.gap = character_of(text);
    if (word.is("MISSING")) format.missing = character_of(text);
    if (word.is("MATCHCHAR")) format.matchchar = character_of(text);
    if (word.is("INTERLEAVE")) format.interleave = !same_word(value_of(text), "NO");
    if (word.is("NOLABELS")) format.labels = false;
    if (word.is("LABELS")) {
      const std::string where = value_of(text);
      if (same_word(where, "RIGHT")) throw refused_nexus("names on the right");
      format.labels = !same_word(where, "NO");
    }
    for (const char* refused : {"TRANSPOSE", "TOKENS", "EQUATE"}) {
      if (word.is(refused)) throw refused_nexus(refused);
    }
  });
}

/// The bits of a nucleotide or ambiguity code, and back.
constexpr std::string_view nucleotide_codes = "?ACMGRSVTWYHKDBN";

char nucleotide_set(std::string_view set) {
  std::size_t bits = 0;
  for (const char c : set) {
    if (is_blank(c)) continue;
    const std::size_t code = nucleotide_codes.find(capital(c) == 'U' ? 'T' : capital(c));
    if (code == nucleotide_codes.npos || code == 0) return '?';
    bits |= code;
  }
  return nucleotide_codes[bits];
}

/// The matrix of a block, up to its ';'. Some write it in blocks and do not say so: unless the layout is `sure`, two words
/// on the second line raise the question.
class NexusMatrix {
 public:
  NexusMatrix(NexusText& text, const NexusFormat& format, bool sure = false)
      : text_(text), format_(format), sure_(sure || format.interleave || !format.labels), rows_(text.bytes()) {
    if (!format_.nchar || *format_.nchar == 0) {
      throw Failure{.kind = Failure::Kind::bad_record, .detail = "MATRIX without NCHAR", .length = text_.number()};
    }
    if (!format_.labels) {
      for (const std::string& name : format_.taxlabels) rows_.announce(name);
      rows_.end_block();
    }
  }

  Reading read() {
    std::string* row = nullptr;
    for (;;) {
      if (format_.interleave && text_.blank_line()) rows_.end_block();
      if (!text_.skip()) {
        if (!text_.next_line()) throw unfinished();
        continue;
      }
      if (text_.at_semicolon()) break;
      const bool begins = text_.begun();
      if (row == nullptr || (format_.interleave && begins)) {
        if (rows_.empty() && !sure_) remember_line();
        row = next_row();
        continue;
      }
      if (begins && !first_line_.empty()) {
        const std::string first = std::exchange(first_line_, {});
        std::string_view second = text_.line();
        take_word(second);
        if (!second.empty()) return read_either_way(first);
      }
      if (const std::string_view letters = text_.letters(); !letters.empty()) {  // as most lines
        *row += letters;
      } else {
        append(*row, text_.stretch());
      }
      const auto nchar = static_cast<std::size_t>(*format_.nchar);
      if (row->size() > nchar) throw wrong_length(*row);
      if (!format_.interleave && row->size() == nchar) row = nullptr;
    }
    text_.take_semicolon();
    return assembled();
  }

 private:
  /// Remember the first line, unless it holds a whole row by all appearances.
  void remember_line() {
    constexpr std::size_t name_and_comment = 1000;
    if (text_.line().size() > static_cast<std::size_t>(*format_.nchar) + name_and_comment) return;
    first_line_ = text_.line();
    first_number_ = text_.number();
  }

  /// Read the whole matrix in the one way that fits: one row after the other, or in blocks. `first` is its first line.
  Reading read_either_way(const std::string& first) {
    const auto lines_since = static_cast<std::size_t>(text_.number() - first_number_);
    std::string lines = first + std::string(lines_since, '\n') + text_.up_to_semicolon();
    if (text_.line().empty()) throw unfinished();
    text_.take_semicolon();
    lines += ';';
    std::optional<Failure> failure;
    std::optional<Reading> sequential = read_as(false, lines, failure), interleaved = read_as(true, lines, failure);
    if (sequential && interleaved) {
      throw Failure{.kind = Failure::Kind::ambiguous_format,
                    .detail = "NEXUS: one sequence after the other; or interleaved, which it does not say"};
    }
    if (sequential) return *std::move(sequential);
    if (!interleaved) throw *failure;
    interleaved->remarks.push_back(
        {.what = Remark::What::layout, .detail = "NEXUS, interleaved though it does not say so"});
    return *std::move(interleaved);
  }

  /// Read `lines` in one way; when that fails, tell why if it came further than the other way.
  std::optional<Reading> read_as(bool interleave, const std::string& lines, std::optional<Failure>& why) const {
    Lines in(bytes_of_memory(lines));
    NexusText text(in);
    NexusFormat format = format_;
    format.interleave = interleave;
    try {
      return NexusMatrix(text, format, true).read();
    } catch (Failure& failure) {
      if (failure.kind == Failure::Kind::bad_record) failure.length += first_number_ - 1;
      if (!why || failure.sequence > why->sequence) why = std::move(failure);
      return std::nullopt;
    }
  }

  std::string* next_row() {
    std::string* row = nullptr;
    if (format_.labels) {
      if (format_.interleave && format_.ntax == rows_.numseq()) rows_.end_block();
      row = rows_.row(text_.name());
    } else if (!rows_.empty()) {
      row = rows_.row();
    }
    if (row == nullptr) {
      throw Failure{
          .kind = Failure::Kind::bad_record, .detail = "NOLABELS without TAXLABELS", .length = text_.number()};
    }
    return row;
  }

  /// Append letters without blanks; a set of them in brackets is one letter.
  void append(std::string& row, std::string_view stretch) {
    for (std::size_t k = 0; k < stretch.size(); ++k) {
      const char c = stretch[k];
      if (c == '{' || c == '(') {
        const std::size_t end = stretch.find(c == '{' ? '}' : ')', k);
        if (end == stretch.npos) {
          throw Failure{
              .kind = Failure::Kind::bad_record, .detail = excerpt(stretch.substr(k)), .length = text_.number()};
        }
        row += set(stretch.substr(k + 1, end - k - 1));
        k = end;
      } else if (c != ' ' && c != '\t') {
        row += c;
      }
    }
  }

  char set(std::string_view letters) {
    ++sets_;
    if (format_.kind == Kind::dna) return nucleotide_set(letters);
    return format_.kind == Kind::protein ? 'X' : '?';
  }

  /// What each character means. All are replaced at once, since the gap of one file is the missing data of another.
  std::array<char, 256> meanings() const {
    std::array<char, 256> table;
    for (std::size_t c = 0; c < table.size(); ++c) table[c] = static_cast<char>(c);
    const auto set = [&](char c, char meaning) {
      if (c == 0) return;
      table[static_cast<unsigned char>(capital(c))] = table[static_cast<unsigned char>(lower(c))] = meaning;
    };
    if (format_.matchchar != 0) set('.', '-');
    const bool usual =
        capital(format_.missing) == 'X' || (capital(format_.missing) == 'N' && format_.kind == Kind::dna);
    if (!usual) set(format_.missing, '?');
    set(format_.gap, '-');
    set(format_.matchchar, '.');
    return table;
  }

  Reading assembled() {
    if (format_.ntax && rows_.numseq() != *format_.ntax) {
      throw Failure{.kind = Failure::Kind::unfinished_record,
                    .detail = "sequences",
                    .length = rows_.numseq(),
                    .expected = *format_.ntax};
    }
    const std::array<char, 256> table = meanings();
    bool usual = true;
    for (std::size_t c = 0; c < table.size(); ++c) usual &= table[c] == static_cast<char>(c);
    const bool hyphens_unknown = table['-'] == '?';
    Remark hyphens{.what = Remark::What::hyphens_unknown};
    for (int i = 1; i <= rows_.numseq(); ++i) {
      std::string& row = rows_.letters(i);
      if (row.size() != static_cast<std::size_t>(*format_.nchar)) throw wrong_length(row, i);
      if (hyphens_unknown) hyphens.number += std::count(row.begin(), row.end(), '-');
      if (!usual) {
        for (char& c : row) c = table[static_cast<unsigned char>(c)];
      }
    }
    Assembly assembly;
    assembly.dots_match_first = format_.matchchar != 0;
    rows_.move_to(assembly);
    Reading reading = assembly.finish();
    reading.kind = format_.kind;
    if (hyphens.number > 0) reading.remarks.push_back(hyphens);
    if (sets_ > 0) reading.remarks.push_back({.what = Remark::What::sets_of_letters, .number = sets_});
    return reading;
  }

  Failure wrong_length(const std::string& row, int i = 0) const {
    if (i == 0) i = rows_.last();
    return Failure{.kind = Failure::Kind::unequal_lengths,
                   .sequence = i,
                   .name = rows_.name(i),
                   .length = static_cast<long long>(row.size()),
                   .expected = *format_.nchar};
  }

  Failure unfinished() const {
    Failure failure{.kind = Failure::Kind::unfinished_record, .detail = "; after the matrix"};
    if (!rows_.empty()) {
      failure.sequence = rows_.last();
      failure.name = rows_.name(rows_.last());
    }
    return failure;
  }

  NexusText& text_;
  const NexusFormat& format_;
  bool sure_;
  std::string first_line_;  // as long as the layout is not sure
  long long first_number_ = 0;
  RowBlocks rows_;
  long long sets_ = 0;
};

}  // namespace

bool begins_nexus(std::string_view head) {
  return begins_like(head, "#NEXUS");
}

Reading read_nexus(Lines& in) {
  NexusText text(in);
  NexusFormat format;
  std::optional<Reading> reading;
  bool more = false, charsets = false;
  text.token();       // #NEXUS
  std::string block;  // its name, in capitals; empty outside of blocks
  for (NexusToken token = text.token(); token; token = text.token()) {
    const bool of_characters = block == "DATA" || block == "CHARACTERS";
    if (token->is("BEGIN")) {
      const NexusToken name = text.token();
      block = name ? name->text : "";
      std::transform(block.begin(), block.end(), block.begin(), capital);
    } else if (token->is("END") || token->is("ENDBLOCK")) {
      block.clear();
    } else if (token->is("CHARSET")) {
      charsets = true;
    } else if (token->is("DIMENSIONS") && !reading && (of_characters || block == "TAXA")) {
      read_dimensions(text, format);
      continue;
    } else if (token->is("TAXLABELS") && !reading) {
      for_settings(text, [&](const NexusText::Token& name) { format.taxlabels.push_back(name.text); });
      continue;
    } else if (token->is("FORMAT") && !reading && of_characters) {
      read_format(text, format);
      continue;
    } else if (token->is("ELIMINATE") && !reading && of_characters) {
      throw refused_nexus("ELIMINATE");
    } else if (token->is("MATRIX") && of_characters) {
      more = reading.has_value();
      if (!reading) {
        reading = NexusMatrix(text, format).read();
        continue;
      }
    }
    if (!token->is(";")) skip_command(text);
  }
  if (!reading) throw Failure{.kind = Failure::Kind::unfinished_record, .detail = "a matrix of characters"};
  if (more) reading->remarks.push_back({.what = Remark::What::more_alignments});
  if (charsets) reading->remarks.push_back({.what = Remark::What::charsets_void});
  return *std::move(reading);
}

}  // namespace trimora::rooms
