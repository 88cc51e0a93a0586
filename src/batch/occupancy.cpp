#include "batch/occupancy.h"

#include <algorithm>
#include <charconv>

#include "output/forms.h"

namespace trimora::rooms {

void Occupancy::add(const std::string& path, int width, const Table<RowCounts>& rows) {
  Gene& gene = genes_.emplace_back(Gene{path, width, {}});
  gene.cells.reserve(static_cast<std::size_t>(rows.size()));
  for (int i = 1; i <= rows.size(); ++i) {
    gene.cells.push_back({rows[i].letters, rows[i].unknown, rows[i].end_gaps});
  }
}

Summary summary(const Occupancy& occupancy, const RowOf& row, const std::vector<int>& chosen,
                const Table<std::string>& name) {
  Summary all;
  for (const int s : chosen) all.species.push_back({std::string(plain_name(name[s])), 0, 0});
  for (std::size_t g = 0; g < occupancy.genes(); ++g) {
    const int width = occupancy.width(g);
    Filled gene = {occupancy.path(g), 0, width * static_cast<long long>(chosen.size())};
    for (std::size_t k = 0; k < chosen.size(); ++k) {
      all.species[k].cells += width;
      const int i = row(g, chosen[k]);
      if (i == 0) {
        all.counts.absent += width;
        continue;
      }
      const RowCounts cell = occupancy.counts(g, i);
      all.counts.add(cell);
      all.species[k].letters += cell.letters;
      gene.letters += cell.letters;
      ++all.present;
    }
    all.genes.push_back(std::move(gene));
  }
  all.pairs = static_cast<long long>(occupancy.genes()) * static_cast<long long>(chosen.size());
  return all;
}

void write_occupancy(OutputFile& out, const Occupancy& occupancy, const RowOf& row, const std::vector<int>& chosen,
                     const Table<std::string>& name) {
  const auto put_text = [&](std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '\t' || c == '\n' || c == '\r'; }, ' ');
    out.put(text);
  };
  out.put("species");
  for (std::size_t g = 0; g < occupancy.genes(); ++g) {
    out.put('\t');
    put_text(occupancy.path(g));
  }
  out.put('\n');
  for (const int s : chosen) {
    put_text(std::string(plain_name(name[s])));
    for (std::size_t g = 0; g < occupancy.genes(); ++g) {
      const int i = row(g, s);
      if (i == 0) {
        out.put("\tNA");
        continue;
      }
      char* to = out.room(24);
      *to++ = '\t';
      out.filled(std::to_chars(to, to + 20, occupancy.counts(g, i).letters).ptr);
    }
    out.put('\n');
  }
}

}  // namespace trimora::rooms
