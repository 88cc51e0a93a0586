// Stockholm: "# STOCKHOLM 1.0", lines of "name letters" and of annotation, and "//" at the end.
#include <algorithm>
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

/// The columns that a line of reference calls inserts.
std::vector<Stretch> rf_inserts(std::string_view reference) {
  std::vector<Stretch> columns;
  for (std::size_t first = 0; (first = reference.find('.', first)) != reference.npos;) {
    const std::size_t end = std::min(reference.find_first_not_of('.', first), reference.size());
    columns.push_back({static_cast<int>(first) + 1, static_cast<int>(end)});
    first = end;
  }
  return columns;
}

}  // namespace

bool begins_stockholm(std::string_view head) {
  return take_word(head) == "#" && take_word(head) == "STOCKHOLM";
}

Reading read_stockholm(Lines& in) {
  RowBlocks rows(in.bytes());
  std::string reference;
  bool ended = false;
  std::string_view line;
  in.next_filled(line);  // the header
  while (!ended && in.next(line)) {
    std::string_view rest = line;
    const std::string_view name = take_word(rest);
    if (name.empty()) {
      rows.end_block();
    } else if (name == "#=GC") {
      if (take_word(rest) == "RF") reference += trimmed(rest);
    } else if (name == "//") {
      ended = true;
    } else if (name.front() != '#') {
      std::string* row = rows.row(name);
      const std::string_view letters = take_word(rest);
      if (letters.empty()) {
        throw Failure{.kind = Failure::Kind::unfinished_record, .sequence = rows.last(), .name = std::string(name)};
      }
      if (!rest.empty()) {
        throw Failure{.kind = Failure::Kind::bad_record, .detail = excerpt(line), .length = in.number()};
      }
      *row += letters;
    }
  }
  if (!ended) throw Failure{.kind = Failure::Kind::unfinished_record, .detail = "// at its end"};
  std::vector<Remark> remarks;
  if (in.next_filled(line)) {
    if (!begins_stockholm(line)) {
      throw Failure{.kind = Failure::Kind::bad_record, .detail = excerpt(line), .length = in.number()};
    }
    remarks.push_back({.what = Remark::What::more_alignments});
  }
  rows.end_block();
  Assembly assembly;
  assembly.may_be_a2m = reference.empty();
  assembly.dots_are_usual = true;
  rows.move_to(assembly);
  if (!reference.empty() && reference.size() != static_cast<std::size_t>(assembly.nupo())) {
    throw Failure{.kind = Failure::Kind::bad_record,
                  .detail = "#=GC RF",
                  .length = static_cast<long long>(reference.size()),
                  .expected = assembly.nupo()};
  }
  return assembly.finish(rf_inserts(reference), std::move(remarks));
}

}  // namespace trimora::rooms
