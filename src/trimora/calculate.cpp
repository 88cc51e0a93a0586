#include "trimora/calculate.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>

#include "batch/concatenation.h"
#include "ground/failure.h"
#include "input/filetype.h"
#include "input/input_file.h"
#include "output/results.h"
#include "selection/selection.h"
#include "trimora/checkfiletype.h"
#include "trimora/errfunc.h"

namespace trimora::rooms {

namespace {

/// Write the file `path`. What is not written to its end is named on standard error.
template <typename Write>
void save(const std::string& path, Write write) {
  OutputFile out(path);
  try {
    write(out);
  } catch (...) {
    const int error = out.close();
    name_incomplete(path, error != 0 ? std::strerror(error) : "the run ended early");
    throw;
  }
  if (const int error = out.close(); error != 0) name_incomplete(path, std::strerror(error));
}

/// In a batch b1 and b2 are derived from each alignment, unless they are fixed: then each has to have as many sequences
/// as the first one, `reference`.
void derive(const Alignment& ali, bool first, int& reference, BatchState& run) {
  run.numseq = ali.numseq;
  if (first) reference = ali.numseq;
  if (run.tog_sb == 1 && run.tog_sub == 0) derive_defaults(run);
  if (run.tog_sub == 1 && ali.numseq != reference) {
    throw Failure{.kind = Failure::Kind::other_sequences, .length = ali.numseq, .expected = reference};
  }
}

/// Select the blocks of `ali`, and print its name and its summary.
Selection summarized(const Alignment& ali, const BatchState& run) {
  std::printf("%s\n", run.fichero1.c_str());
  const bool needs_ungapped = run.tog_ungappedfile == 1 || concatenates_ungapped(run);
  Selection found = find_blocks(ali, run, needs_ungapped);
  std::printf("Original alignment: %i positions\n", ali.nupo);
  if (needs_ungapped) std::printf("Ungapped alignment: %i positions\n", found.ungapped.nupoung);
  std::printf("Trimora alignment:  %i positions (%i %%) in %i selected block(s)\n\n", found.blocks.nupo3,
              found.blocks.nupo3per, static_cast<int>(found.blocks.newpos.size()));
  return found;
}

/// Write the concatenations, named after the paths file, into the folder of the last alignment, whose names head the
/// records.
void allsaveseq(const Concatenations& all, const Table<std::string>& name, const BatchState& run) {
  const auto save_one = [&](const std::optional<Concatenation>& one, const std::string& path) {
    if (one) save(path, [&](OutputFile& out) { one->write(out, name, run); });
  };
  save_one(all.letall, allfile(run));
  if (all.letall) std::printf("Trimora alignment in batch: %lld positions\n\n", all.letall->columns());
  save_one(all.letall_init, allfile_init(run));
  save_one(all.newletall, allungfile(run));
}

}  // namespace

std::optional<Alignment> openfile(RunState& run) {
  checkfiletype(run);
  if (run.filename.empty()) return std::nullopt;
  if (run.tog_sb == 1) {  // a choice made for a batch is made again for each
    run.tog_allfile = run.tog_allfile_init = run.tog_allungfile = 0;
    run.tog_sub = 0;
    run.warn = 1;
  }
  Alignment ali = load(run);
  run.numseq = ali.numseq;
  std::printf("\n%i sequences and %i positions in the first alignment file:\n%s\n\n", ali.numseq, ali.nupo,
              run.fichero1.c_str());
  derive_defaults(run);
  return ali;
}

void calculate(BatchState& run, std::optional<Alignment> loaded) {
  const bool batch = run.tog_sb == 1;
  std::optional<InputFile> paths_file;
  if (batch && !paths_file.emplace(run.filename)) {
    throw Failure{.kind = Failure::Kind::not_readable, .file = run.filename, .error = errno};
  }

  Concatenations all;
  Table<std::string> name;  // of the last alignment
  int reference = 0;        // sequences of the first alignment
  for (int processed = 0; processed < run.numal; ++processed) {
    if (batch && !read_path(*paths_file, run.fichero1)) break;
    Alignment ali = loaded ? *std::exchange(loaded, std::nullopt) : load(run);
    derive(ali, processed == 0, reference, run);
    if (processed == 0) all = allalloc(run);
    const Selection found = summarized(ali, run);
    for (const Result& result : results()) {
      if (result.wanted(run)) save(result.path(run), [&](OutputFile& out) { result.write(out, ali, found, run); });
    }
    allconcat(all, ali, found.blocks, found.ungapped);
    name = std::move(ali.name);
  }
  allsaveseq(all, name, run);
}

}  // namespace trimora::rooms
