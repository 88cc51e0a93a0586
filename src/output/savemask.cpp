#include "output/savemask.h"

#include <algorithm>
#include <string>

#include "ground/failure.h"
#include "input/letters.h"
#include "output/record.h"
#include "selection/reduced_views.h"

namespace trimora::rooms {

void savemask(OutputFile& out, const Alignment& ali, const PositionScores& scores, const SelectedBlocks& blocks,
              const SelectionState& run) {
  // The description line of every record is empty.
  const auto record = [&](const char* prefix, const std::string& name, const char* letters) {
    out.put(prefix);
    out.put(name);
    out.put('\n');
    Body body(out);
    body.add(letters, ali.nupo);
    body.end();
    out.put("*\n\n");
  };
  const Table<char> residues = conserved_residues(scores, run);
  std::string mask = allocating("mask", [&] { return std::string(static_cast<std::size_t>(ali.nupo), '?'); });
  for (int i = 1; i <= ali.numseq; ++i) {
    const char* sequence = ali.let[i].from(1);
    record(pir_prefix(run), ali.name[i], sequence);
    std::transform(sequence, sequence + ali.nupo, &residues[1], mask.begin(),
                   [](char c, char residue) { return capital(c) == residue ? '@' : '?'; });
    record(pir_prefix(run), without_line_end(ali.name[i]) + "#Mask\n", mask.data());
  }
  record(">P1;", "Trimora\n", &makelettrimora(blocks, ali.nupo)[1]);
}

}  // namespace trimora::rooms
