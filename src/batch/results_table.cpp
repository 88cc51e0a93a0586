#include "batch/results_table.h"

#include <algorithm>

namespace trimora::rooms {

namespace {

std::string on_one_line(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](char c) { return c == '\t' || c == '\n' || c == '\r'; }, ' ');
  return text;
}

}  // namespace

std::vector<std::string> table_columns() {
  std::vector<std::string> titles = {"alignment", "sequences", "columns",    "positions", "ungapped",
                                     "selected",  "percent",   "blocks",     "b1",        "b2",
                                     "species",   "variable",  "informative"};
  for (const char* when : {"_before", ""}) {
    for (const char* what : {"letters", "unknown", "gaps", "end_gaps", "absent"}) {
      titles.push_back(std::string(what) + when);
    }
  }
  titles.insert(titles.end(), {"status", "message"});
  return titles;
}

std::array<long long, 22> numbers_of(const TableRow& row) {
  constexpr Counts unknown = {-1, -1, -1, -1, -1};
  const Counts before = row.before.value_or(unknown), after = row.after.value_or(unknown);
  return {row.sequences,  row.columns,    row.positions,  row.ungapped,    row.selected,  row.percent,
          row.blocks,     row.b1,         row.b2,         row.species,     row.variable,  row.informative,
          before.letters, before.unknown, before.gaps,    before.end_gaps, before.absent, after.letters,
          after.unknown,  after.gaps,     after.end_gaps, after.absent};
}

std::string_view status_of(const TableRow& row) {
  switch (row.status) {
    case TableRow::Status::skipped: return "skipped";
    case TableRow::Status::ok: return "ok";
    case TableRow::Status::failed: return "failed";
    case TableRow::Status::left_out: return "left out";
  }
  return "";
}

void write_table_header(OutputFile& out) {
  bool first = true;
  for (const std::string& title : table_columns()) {
    out.put((first ? "" : "\t") + title);
    first = false;
  }
  out.put('\n');
}

void write_table_row(OutputFile& out, const TableRow& row) {
  out.put(on_one_line(row.alignment));
  for (const long long value : numbers_of(row)) out.put(value < 0 ? "\tNA" : '\t' + std::to_string(value));
  out.put('\t');
  out.put(status_of(row));
  out.put('\t');
  out.put(on_one_line(row.message));
  out.put('\n');
}

}  // namespace trimora::rooms
