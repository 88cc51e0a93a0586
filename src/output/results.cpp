#include "output/results.h"

#include "output/alignment_writers.h"
#include "output/file_names.h"
#include "output/savemask.h"
#include "output/saveps.h"
#include "output/saveviewfile.h"

namespace trimora::rooms {

namespace {

using Run = const OutputState&;
using Ali = const Alignment&;
using Found = const Selection&;

// clang-format off
constexpr Result table[] = {
// option  wanted                                            path
//         how it is written
//         positions, of alignment files
  {"-s", [](Run run) { return run.tog_seqfile == 1; },           seqfile,
         [](OutputFile& out, Ali ali, Found found, Run run) { saveseq(out, ali, found.blocks, run); },
         [](Ali, Found found) { return found.blocks.newpos; }},
  {"-p", [](Run run) { return run.tog_viewfile != no_report; },   viewfile,
         [](OutputFile& out, Ali ali, Found found, Run run) { saveviewfile(out, ali, found.scores, found.blocks, run); },
         nullptr},
  {"-k", [](Run run) { return run.tog_maskfile == 1; },          maskfile,
         [](OutputFile& out, Ali ali, Found found, Run run) { savemask(out, ali, found.scores, found.blocks, run); },
         nullptr},
  {"-d", [](Run run) { return run.tog_psfile == 1; },            psfile,
         [](OutputFile& out, Ali ali, Found found, Run run) { saveps(out, found.blocks, ali.nupo, run); },
         nullptr},
  {"-n", [](Run run) { return run.tog_ncbfile == 1; },           ncbfile,
         [](OutputFile& out, Ali ali, Found found, Run run) { savencb(out, ali, found.blocks, run); },
         [](Ali ali, Found found) { return complement(found.blocks.newpos, ali.nupo); }},
  {"-u", [](Run run) { return run.tog_ungappedfile == 1; },      ungappedfile,
         [](OutputFile& out, Ali ali, Found found, Run run) { save_ung(out, ali, found.ungapped, run); },
         [](Ali, Found found) { return found.ungapped.newlet; }},
};
// clang-format on

}  // namespace

std::span<const Result> results() {
  return table;
}

}  // namespace trimora::rooms
