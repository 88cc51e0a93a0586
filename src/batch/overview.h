// The overview of a run: a page with what was run, what became of each alignment, and who is in the concatenation.
// The data of the page are described in output/overview/overview.js.
// Counting  rows of the table from 0
#pragma once
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "batch/occupancy.h"
#include "batch/results_table.h"
#include "ground/table.h"
#include "output/output_file.h"

namespace trimora::rooms {

/// A parameter and its value in this run.
struct Parameter {
  std::string option, value, meaning;
};

/// The run as a whole.
struct Overview {
  std::string path;     // of the page: what it links to counts from there
  std::string program;  // with its version
  std::string name;
  std::vector<std::string> command;  // the words after the program's name
  std::vector<Parameter> parameters;
  std::vector<std::string> notes;
  std::vector<std::string> files;  // that are not of one alignment
};

/// What was put together.
struct Together {
  const Occupancy& occupancy;  // its genes are rows of the table, in that order
  RowOf row;
  const std::vector<int>& chosen;  // the species of the concatenation; none: there is no concatenation
  const Table<std::string>& name;  // of all species
};

/// Write the page. `report` tells the path of a row's report, which is empty where there is none.
void write_overview(OutputFile& out, const Overview& about, const std::vector<TableRow>& rows,
                    const std::function<std::string(std::size_t row)>& report, const Together& together);

}  // namespace trimora::rooms
