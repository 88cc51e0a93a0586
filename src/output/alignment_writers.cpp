#include "output/alignment_writers.h"

#include <vector>

#include "output/record.h"

namespace trimora::rooms {

namespace {

void write_stretches(OutputFile& out, const Alignment& ali, const std::vector<Stretch>& stretches,
                     const InputState& run) {
  for (int i = 1; i <= ali.numseq; ++i) {
    write_record(out, run, ali.name[i], [&](Body& body) { add_stretches(body, ali.let[i], stretches); });
  }
}

}  // namespace

void saveseq(OutputFile& out, const Alignment& ali, const SelectedBlocks& blocks, const InputState& run) {
  write_stretches(out, ali, blocks.newpos, run);
}

void savencb(OutputFile& out, const Alignment& ali, const SelectedBlocks& blocks, const InputState& run) {
  write_stretches(out, ali, complement(blocks.newpos, ali.nupo), run);
}

void save_ung(OutputFile& out, const Alignment& ali, const Ungapped& ungapped, const InputState& run) {
  write_stretches(out, ali, ungapped.newlet, run);
}

}  // namespace trimora::rooms
