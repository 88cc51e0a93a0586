// CLUSTAL: a header, then blocks of "name letters", also with a number after the letters and a line of marks below.
#include <algorithm>
#include <string>

#include "ground/failure.h"
#include "input/assembly.h"
#include "input/formats.h"
#include "input/row_blocks.h"
#include "input/words.h"

namespace trimora::rooms {
namespace {

bool contains(std::string_view line, std::string_view phrase) {
  return line.find(phrase) != line.npos;
}

bool clustal_marks(std::string_view line) {
  return all_are(line, [](char c) { return is_blank(c) || c == '*' || c == ':' || c == '.'; });
}

}  // namespace

bool begins_clustal(std::string_view head) {
  std::string_view line = first_line(head);
  if (contains(line, "multiple sequence alignment") || contains(line, "ClustalW format")) return true;
  const std::string_view word = take_word(line);
  return begins_like(word, "CLUSTAL") && std::all_of(word.begin(), word.end(), is_letter);
}

Reading read_clustal(Lines& in) {
  RowBlocks rows(in.bytes());
  std::string_view line;
  in.next_filled(line);  // the header
  while (in.next(line)) {
    if (clustal_marks(line)) {
      rows.end_block();
      continue;
    }
    std::string_view rest = line;
    const std::string_view name = take_word(rest);
    const std::string_view letters = take_word(rest);
    const std::string_view number = take_word(rest);
    std::string* row = rows.row(name);
    if (letters.empty()) {
      throw Failure{.kind = Failure::Kind::unfinished_record, .sequence = rows.last(), .name = std::string(name)};
    }
    if (!(number.empty() || digits(number)) || !rest.empty()) {
      throw Failure{.kind = Failure::Kind::bad_record, .detail = excerpt(line), .length = in.number()};
    }
    *row += letters;
  }
  rows.end_block();
  Assembly assembly;
  rows.move_to(assembly);
  return assembly.finish();
}

}  // namespace trimora::rooms
