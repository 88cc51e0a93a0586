#include "output/results_table.h"

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
  }
  return "";
}

}  // namespace

void write_table_header(OutputFile& out) {
  out.put("alignment\tsequences\tcolumns\tpositions\tungapped\tselected\tpercent\tblocks\tb1\tb2\tstatus\tmessage\n");
}

void write_table_row(OutputFile& out, const TableRow& row) {
  out.put(on_one_line(row.alignment));
  for (const long long value :
       {static_cast<long long>(row.sequences), row.columns, static_cast<long long>(row.positions),
        static_cast<long long>(row.ungapped), static_cast<long long>(row.selected), static_cast<long long>(row.percent),
        static_cast<long long>(row.blocks), static_cast<long long>(row.b1), static_cast<long long>(row.b2)}) {
    out.put('\t');
    out.put(value < 0 ? "NA" : std::to_string(value));
  }
  out.put('\t');
  out.put(status(row.status));
  out.put('\t');
  out.put(on_one_line(row.message));
  out.put('\n');
}

}  // namespace trimora::rooms
