#include "selection/calculate.h"

#include <cstdio>
#include <utility>

#include "batch/concatenation.h"
#include "ground/errfunc.h"
#include "ground/speaker.h"
#include "input/filetype.h"
#include "input/input_file.h"
#include "output/alignment_writers.h"
#include "output/savemask.h"
#include "output/saveps.h"
#include "output/saveviewfile.h"

std::optional<Alignment> openfile(RunState& run) {
  checkfiletype(run);
  if (run.filename.empty()) return std::nullopt;
  if (run.tog_sb == 1) {  // what is chosen for a batch is chosen anew for each
    run.tog_allfile = run.tog_allfile_init = run.tog_allungfile = 0;
    run.tog_sub = 0;
    run.warn = 1;
  }
  Alignment ali = load(run);
  run.numseq = ali.numseq;
  std::fprintf(prints, "\n%i sequences and %i positions in the first alignment file:\n%s\n\n", ali.numseq, ali.nupo,
               run.fichero1.c_str());
  derivedefaults(run);
  return ali;
}

void take(const Alignment& ali, bool first, int& reference, BatchState& run) {
  run.numseq = ali.numseq;
  if (first) reference = ali.numseq;
  if (run.tog_sb == 1 && run.tog_sub == 0) derivedefaults(run);
  if (run.tog_sub == 1 && ali.numseq != reference) {
    Culprit culprit;
    culprit.length = ali.numseq;
    culprit.other = reference;
    errfunc(culprit, "\nAlignments with different number of sequences\n");
  }
}

Selection findblocks(const Alignment& ali, const BatchState& run) {
  std::fprintf(prints, "%s\n", run.fichero1.c_str());
  Selection found;
  found.scores = assignval(ali, run);
  found.blocks = getpos(found.scores, ali, run);
  const bool needsungapped = run.tog_ungappedfile == 1 || concatenatesungapped(run);
  if (needsungapped) found.ungapped = ungap(ali);

  std::fprintf(prints, "Original alignment: %i positions\n", ali.nupo);
  if (needsungapped) std::fprintf(prints, "Ungapped alignment: %i positions\n", found.ungapped.nupoung);
  std::fprintf(prints, "Trimora alignment:  %i positions (%i %%) in %i selected block(s)\n\n", found.blocks.nupo3,
               found.blocks.nupo3per, static_cast<int>(found.blocks.newpos.size()));
  return found;
}

void savefiles(const Alignment& ali, const Selection& found, const OutputState& run) {
  if (run.tog_seqfile == 1) saveseq(ali, found.blocks, run);
  if (run.tog_viewfile != noreport) saveviewfile(ali, found.scores, found.blocks, run);
  if (run.tog_maskfile == 1) savemask(ali, found.scores, found.blocks, run);
  if (run.tog_psfile == 1) saveps(found.blocks, ali.nupo, run);
  if (run.tog_ncbfile == 1) savencb(ali, found.blocks, run);
  if (run.tog_ungappedfile == 1) save_ung(ali, found.ungapped, run);
}

void calculate(BatchState& run, std::optional<Alignment> loaded) {
  const bool batch = run.tog_sb == 1;
  std::optional<InputFile> pathsfile;
  if (batch && !pathsfile.emplace(run.filename)) errfunc("\nFile not opened\n");

  Concatenations all;
  Table<std::string> name;  // of the last alignment
  int reference = 0;        // sequences of the first alignment
  for (int processed = 0; processed < run.numal; ++processed) {
    if (batch && !readpath(*pathsfile, run.fichero1)) break;
    Alignment ali = loaded ? *std::exchange(loaded, std::nullopt) : load(run);
    take(ali, processed == 0, reference, run);
    if (processed == 0) all = allalloc(run);
    const Selection found = findblocks(ali, run);
    savefiles(ali, found, run);
    allconcat(all, ali, found.blocks, found.ungapped);
    name = std::move(ali.name);
  }
  allsaveseq(all, name, run);
}
