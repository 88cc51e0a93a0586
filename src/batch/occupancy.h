// How much there is of whom: the letters of each species in each alignment that was put together.
// Words     gene: an alignment | cell: a position of a species in the concatenation
// Counting  species and rows from 1, genes from 0
#pragma once
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "batch/counts.h"
#include "ground/table.h"
#include "output/output_file.h"

namespace trimora::rooms {

class Occupancy {
 public:
  /// The next gene, `width` positions of the rows that were counted.
  void add(const std::string& path, int width, const Table<RowCounts>& rows);

  std::size_t genes() const { return genes_.size(); }
  const std::string& path(std::size_t gene) const { return genes_[gene].path; }
  int width(std::size_t gene) const { return genes_[gene].width; }
  RowCounts counts(std::size_t gene, int row) const {
    const Cell& cell = genes_[gene].cells[static_cast<std::size_t>(row) - 1];
    const auto width = static_cast<std::uint32_t>(genes_[gene].width);
    return {cell.letters, cell.unknown, width - cell.letters - cell.unknown, cell.end_gaps};
  }

 private:
  struct Cell {
    std::uint32_t letters, unknown, end_gaps;
  };
  struct Gene {
    std::string path;
    int width;
    std::vector<Cell> cells;  // of its rows
  };
  std::vector<Gene> genes_;
};

/// The row of a species in a gene, 0 where it has none.
using RowOf = std::function<int(std::size_t gene, int species)>;

/// How much of it all is there.
struct Filled {
  std::string name;  // of a species, or the path of a gene
  long long letters = 0, cells = 0;
};
struct Summary {
  Counts counts;
  long long present = 0;  // of all pairs of a gene and a species
  long long pairs = 0;
  std::vector<Filled> species, genes;
};
/// `chosen` are the species of the concatenation in their order, `name` the names of all.
Summary summary(const Occupancy& occupancy, const RowOf& row, const std::vector<int>& chosen,
                const Table<std::string>& name);

/// Write a table, tab-separated: a line for each species, a column for each gene, the number of letters in each cell, NA
/// where the gene lacks the species.
void write_occupancy(OutputFile& out, const Occupancy& occupancy, const RowOf& row, const std::vector<int>& chosen,
                     const Table<std::string>& name);

}  // namespace trimora::rooms
