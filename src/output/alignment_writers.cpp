#include "output/alignment_writers.h"

#include <vector>

#include "output/record.h"

namespace trimora::rooms {

namespace {

void savestretches(OutputFile& out, const Alignment& ali, const std::vector<Stretch>& stretches,
                   const InputState& run) {
  for (int i = 1; i <= ali.numseq; ++i) {
    writerecord(out, run, ali.name[i], [&](Body& body) { addstretches(body, ali.let[i], stretches); });
  }
}

}  // namespace

void saveseq(OutputFile& out, const Alignment& ali, const SelectedBlocks& blocks, const InputState& run) {
  savestretches(out, ali, blocks.newpos, run);
}

void savencb(OutputFile& out, const Alignment& ali, const SelectedBlocks& blocks, const InputState& run) {
  savestretches(out, ali, complement(blocks.newpos, ali.nupo), run);
}

void save_ung(OutputFile& out, const Alignment& ali, const Ungapped& ungapped, const InputState& run) {
  savestretches(out, ali, ungapped.newlet, run);
}

}  // namespace trimora::rooms
