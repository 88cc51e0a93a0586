// The table of the alignments of a run: what became of each.
#pragma once
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "batch/counts.h"
#include "output/output_file.h"

namespace trimora::rooms {

/// One alignment. -1: not known.
struct TableRow {
  std::string alignment;  // its path, as the user gave it
  int sequences = -1;
  long long columns = -1;  // in the file
  int positions = -1;      // without those that are dropped
  int ungapped = -1;       // positions without a gap in any sequence
  int selected = -1;
  int percent = -1;  // of the positions
  int blocks = -1;
  int b1 = -1, b2 = -1;
  int species = -1;                     // present, after filters
  int variable = -1, informative = -1;  // of the selected positions
  std::optional<Counts> before, after;  // letters and what is none, in all positions and in the selected ones
  enum class Status { skipped, ok, failed, left_out } status = Status::skipped;  // skipped: an earlier one failed
  std::string message;  // why it failed or was left out, or the notes
};

/// The titles of its columns: the path, the numbers, status and message.
std::vector<std::string> table_columns();
/// The numbers of a row, below 0 where they are not known.
std::array<long long, 22> numbers_of(const TableRow& row);
std::string_view status_of(const TableRow& row);

/// Write the header of the table: tab-separated.
void write_table_header(OutputFile& out);

/// Write a line; NA where a number is not known. Tabs and line ends in paths and messages become blanks.
void write_table_row(OutputFile& out, const TableRow& row);

}  // namespace trimora::rooms
