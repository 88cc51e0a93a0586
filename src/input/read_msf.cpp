// MSF: a header with "MSF: length Type: P ..", a line "Name: ... Len: length" for each sequence, "//", then blocks of
// "name letters". The rows tell how long they are; what is shorter than the header says was cut off.
#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "ground/failure.h"
#include "input/assembly.h"
#include "input/formats.h"
#include "input/row_blocks.h"
#include "input/words.h"

namespace trimora::rooms {
namespace {

/// The word after `key` in a line; empty when there is none.
std::string_view word_after(std::string_view line, std::string_view key) {
  const std::size_t at = line.find(key);
  if (at == line.npos) return {};
  line.remove_prefix(at + key.size());
  return take_word(line);
}

/// What a header says of the length of the rows.
struct MsfLengths {
  std::optional<int> msf;   // in its line "MSF:"
  std::optional<int> rows;  // in the lines of the sequences, where they agree
  bool agree = true;
  int longest = 0;  // in these lines

  void add_row(std::optional<int> length) {
    longest = std::max(longest, length.value_or(0));
    agree = agree && length && (!rows || rows == length);
    rows = length;
  }
  /// Whether rows of `nupo` letters can be whole: of a length that is announced, or longer than any.
  bool whole(int nupo) const { return nupo == *msf || (agree && nupo == rows) || nupo > std::max(*msf, longest); }
};

/// Whether a line counts columns.
bool msf_ruler(std::string_view line) {
  return all_are(line, [](char c) { return is_digit(c) || is_blank(c); });
}

}  // namespace

bool begins_msf(std::string_view head) {
  head = head.substr(0, 65536);  // of what may be all of a long text
  if (head.starts_with("!!AA_MULTIPLE_ALIGNMENT") || head.starts_with("!!NA_MULTIPLE_ALIGNMENT")) return true;
  for (std::size_t at = 0; (at = head.find("MSF:", at)) != head.npos; ++at) {
    const std::string_view line = first_line(head.substr(at));
    if (line.find("Check:") != line.npos && line.find("..") != line.npos) return true;
  }
  return false;
}

Reading read_msf(Lines& in) {
  RowBlocks rows(in.bytes());
  std::optional<Kind> kind;
  MsfLengths lengths;
  std::string_view line;
  bool headed = false;
  while (!headed && in.next(line)) {
    const std::string_view name = word_after(line, "Name:");
    const std::string_view msf = word_after(line, "MSF:");
    if (!name.empty()) {
      rows.announce(name);
      lengths.add_row(number_in(word_after(line, "Len:")));
    }
    if (!lengths.msf && !msf.empty()) {
      lengths.msf = number_in(msf);
      const std::string_view type = word_after(line, "Type:");
      if (type == "N") kind = Kind::dna;  // P is written for DNA, too, by some programs: the letters decide
    }
    headed = trimmed(line) == "//";
  }
  if (!headed || !lengths.msf) throw Failure{.kind = Failure::Kind::unfinished_record, .detail = "// after its header"};
  rows.end_block();
  while (in.next(line)) {
    if (msf_ruler(line)) continue;
    std::string_view rest = line;
    std::string* row = rows.empty() ? nullptr : rows.row(take_word(rest));
    if (row == nullptr) {
      throw Failure{.kind = Failure::Kind::bad_record, .detail = excerpt(line), .length = in.number()};
    }
    append_letters(*row, rest);
  }
  Assembly assembly;
  assembly.dots_are_usual = true;
  rows.move_to(assembly);
  if (!assembly.empty() && !lengths.whole(assembly.nupo())) assembly.expect(*lengths.msf);
  std::vector<Remark> remarks;
  if (const int nupo = assembly.nupo(); !assembly.empty() && nupo != *lengths.msf) {
    remarks.push_back({.what = Remark::What::layout,
                       .detail = "MSF of " + std::to_string(nupo) + " positions, though its header says " +
                                 std::to_string(*lengths.msf)});
  }
  Reading reading = assembly.finish({}, std::move(remarks));
  reading.kind = kind;
  return reading;
}

}  // namespace trimora::rooms
