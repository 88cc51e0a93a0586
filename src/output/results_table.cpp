#include "output/results_table.h"

#include <algorithm>

namespace trimora::rooms {

namespace {

std::string harmless(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](char c) { return c == '\t' || c == '\n' || c == '\r'; }, ' ');
  return text;
}

}  // namespace

Overview::Overview(const std::string& path) : out_(path, OutputFile::whole) {
  out_.put("alignment\tsequences\tcolumns\tpositions\tungapped\tselected\tpercent\tblocks\tb1\tb2\tstatus\tmessage\n");
}

void Overview::add(const Overviewed& row) {
  std::string line = harmless(row.alignment);
  const auto number = [&](long long value) { line += '\t' + (value < 0 ? "NA" : std::to_string(value)); };
  number(row.sequences);
  number(row.columns);
  for (const int value : {row.positions, row.ungapped, row.selected, row.percent, row.blocks, row.b1, row.b2}) {
    number(value);
  }
  out_.put(line + '\t' + row.status + '\t' + harmless(row.message) + '\n');
}

}  // namespace trimora::rooms
