#include "output/alignment_writers.h"

#include <string>
#include <vector>

#include "output/file_names.h"
#include "output/output_file.h"
#include "output/record.h"

namespace {

void savestretches(const std::string& path, const Alignment& ali, const std::vector<Stretch>& stretches,
                   const OutputState& run) {
  OutputFile out(path);
  for (int i = 1; i <= ali.numseq; ++i) {
    writerecord(out, run, ali.name[i], [&](Body& body) { addstretches(body, ali.let[i], stretches); });
  }
}

}  // namespace

void saveseq(const Alignment& ali, const SelectedBlocks& blocks, const OutputState& run) {
  savestretches(seqfile(run), ali, blocks.newpos, run);
}

void savencb(const Alignment& ali, const SelectedBlocks& blocks, const OutputState& run) {
  savestretches(ncbfile(run), ali, complement(blocks.newpos, ali.nupo), run);
}

void save_ung(const Alignment& ali, const Ungapped& ungapped, const OutputState& run) {
  savestretches(ungappedfile(run), ali, ungapped.newlet, run);
}
