#include "batch/results_table.h"

#include <algorithm>
#include <string_view>

namespace trimora::rooms {

namespace {

std::string on_one_line(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](char c) { return c == '\t' || c == '\n' || c == '\r'; }, ' ');
  return text;
}

std::string_view status(TableRow::Status status) {
  switch (status) {
    case TableRow::Status::skipped: return "skipped";
    case TableRow::Status::ok: return "ok";
    case TableRow::Status::failed: return "failed";
    case TableRow::Status::left_out: return "left out";
  }
  return "";
}

}  // namespace

void write_table_header(OutputFile& out) {
  out.put(
      "alignment\tsequences\tcolumns\tpositions\tungapped\tselected\tpercent\tblocks\tb1\tb2\tspecies\tvariable\t"
      "informative");
  for (const char* when : {"_before", ""}) {
    for (const char* what : {"letters", "unknown", "gaps", "end_gaps", "absent"}) {
      out.put(std::string("\t") + what + when);
    }
  }
  out.put("\tstatus\tmessage\n");
}

void write_table_row(OutputFile& out, const TableRow& row) {
  out.put(on_one_line(row.alignment));
  const auto put = [&](long long value) { out.put(value < 0 ? "\tNA" : '\t' + std::to_string(value)); };
  put(row.sequences);
  put(row.columns);
  for (const int value : {row.positions, row.ungapped, row.selected, row.percent, row.blocks, row.b1, row.b2,
                          row.species, row.variable, row.informative}) {
    put(value);
  }
  for (const std::optional<Counts>& counts : {row.before, row.after}) {
    const Counts c = counts.value_or(Counts{-1, -1, -1, -1, -1});
    for (const long long value : {c.letters, c.unknown, c.gaps, c.end_gaps, c.absent}) put(value);
  }
  out.put('\t');
  out.put(status(row.status));
  out.put('\t');
  out.put(on_one_line(row.message));
  out.put('\n');
}

}  // namespace trimora::rooms
