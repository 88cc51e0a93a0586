#include "selection/calculate.h"

#include <cstdio>
#include <utility>

#include "batch/concatenation.h"
#include "ground/errfunc.h"
#include "input/filetype.h"
#include "input/input_file.h"
#include "output/alignment_writers.h"
#include "output/savemask.h"
#include "output/saveps.h"
#include "output/saveviewfile.h"
#include "selection/blocks.h"
#include "selection/reduced_views.h"
#include "selection/scores.h"

namespace {

/// From the loaded alignment to its files and its place in the concatenations.
void process(const Alignment& ali, const BatchState& run, Concatenations& all) {
  std::puts(run.fichero1.c_str());
  const PositionScores scores = assignval(ali, run);
  const SelectedBlocks blocks = getpos(scores, ali, run);
  const bool needsungapped = run.tog_ungappedfile == 1 || concatenatesungapped(run);
  const Ungapped ungapped = needsungapped ? ungap(ali) : Ungapped{};

  std::printf("Original alignment: %i positions\n", ali.nupo);
  if (needsungapped) std::printf("Ungapped alignment: %i positions\n", ungapped.nupoung);
  std::printf("Trimora alignment:  %i positions (%i %%) in %i selected block(s)\n\n", blocks.nupo3, blocks.nupo3per,
              static_cast<int>(blocks.newpos.size()));

  if (run.tog_seqfile == 1) saveseq(ali, blocks, run);
  if (run.tog_viewfile != noreport) saveviewfile(ali, scores, blocks, run);
  if (run.tog_maskfile == 1) savemask(ali, scores, blocks, run);
  if (run.tog_psfile == 1) saveps(blocks, ali.nupo, run);
  if (run.tog_ncbfile == 1) savencb(ali, blocks, run);
  if (run.tog_ungappedfile == 1) save_ung(ali, ungapped, run);
  allconcat(all, ali, blocks, ungapped);
}

}  // namespace

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
  std::printf("\n%i sequences and %i positions in the first alignment file:\n%s", ali.numseq, ali.nupo,
              run.fichero1.c_str());
  std::puts("\n");
  derivedefaults(run);
  return ali;
}

int calculate(BatchState& run, std::optional<Alignment> loaded, const Look& look) {
  const bool batch = run.tog_sb == 1;
  std::optional<InputFile> pathsfile;
  if (batch && !pathsfile.emplace(run.filename)) errfunc("\nFile not opened\n");

  Concatenations all;
  Table<std::string> name;  // of the last alignment
  int reference = 0;        // sequences of the first alignment
  int processed = 0;
  while (processed < run.numal) {
    if (batch && !readpath(*pathsfile, run.fichero1)) break;
    Alignment ali = loaded ? *std::exchange(loaded, std::nullopt) : load(run);
    run.numseq = ali.numseq;
    if (processed == 0) {
      reference = ali.numseq;
      all = allalloc(run);
    }
    if (batch && run.tog_sub == 0) derivedefaults(run);
    if (run.tog_sub == 1 && ali.numseq != reference) errfunc("\nAlignments with different number of sequences\n");
    if (look) look(ali, run);
    process(ali, run, all);
    name = std::move(ali.name);
    ++processed;
  }
  allsaveseq(all, name, run);
  return processed;
}
