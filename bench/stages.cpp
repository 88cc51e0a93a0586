// Each step of a run by itself, in bytes of alignment (or of file) a second: reading, scoring by type of sequence, block
// selection and every writer, on generated alignments (protein in both formats, DNA) of 500 sequences and 20,000
// positions, each in a temporary folder.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

#include "batch/concatenation.h"
#include "input/alignment.h"
#include "input/filetype.h"
#include "output/alignment_writers.h"
#include "output/output_state.h"
#include "output/savemask.h"
#include "output/saveps.h"
#include "output/saveviewfile.h"
#include "selection/blocks.h"
#include "selection/reduced_views.h"
#include "selection/scores.h"

namespace {

constexpr int numseq = 500;
constexpr int nupo = 20000;

std::filesystem::path freshfolder() {
  std::string folder = (std::filesystem::temp_directory_path() / "trimora-XXXXXX").string();
  if (mkdtemp(folder.data()) == nullptr) std::abort();
  return folder;
}

/// The alignment, its files in a folder that goes with it, and what the later steps need of it.
struct Bench {
  std::filesystem::path folder = freshfolder();
  OutputState run;
  Alignment ali;
  PositionScores scores;
  SelectedBlocks blocks;
  Ungapped ungapped;

  Bench(const char* name, const char* prefix, const char* terminator, char seq_type) {
    run.filename = (folder / name).string();
    const std::string alphabet = seq_type == 'P' ? "ACDEFGHIKLMNPQRSTVWY-" : "ACGT-";
    std::ofstream out(run.filename);
    for (int i = 0; i < numseq; ++i) {
      out << prefix << "sequence_" << i << '\n' << (*terminator != '\0' ? "description\n" : "");
      for (int p = 0; p < nupo; ++p) {
        // Thirty columns that nine in ten sequences agree on, then ten in which they hardly do.
        const bool agrees = p % 40 < 30 && draw() % 10 != 0;
        const auto k = agrees ? static_cast<std::size_t>(p) % (alphabet.size() - 1) : draw() % alphabet.size();
        out << alphabet[k];
        if (p % 60 == 59 || p == nupo - 1) out << (p == nupo - 1 ? terminator : "") << '\n';
      }
    }
    out.close();
    checkfiletype(run);
    run.seq_type = seq_type;
    run.tog_gaps = 2;
    ali = load(run);
    run.numseq = ali.numseq;
    derive_defaults(run);
    scores = assignval(ali, run);
    blocks = getpos(scores, ali, run);
    ungapped = ungap(ali);
  }
  ~Bench() {
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
  }
  Bench(const Bench&) = delete;
  Bench& operator=(const Bench&) = delete;

 private:
  std::uint64_t state = 1;
  std::size_t draw() {
    state = state * 6364136223846793005U + 1442695040888963407U;
    return static_cast<std::size_t>(state >> 33);
  }
};

Bench& protein() {
  static Bench bench("protein.fas", ">", "", 'P');
  return bench;
}
Bench& proteinpir() {
  static Bench bench("protein.pir", ">P1;", "*", 'P');
  return bench;
}
Bench& dna() {
  static Bench bench("dna.fas", ">", "", 'D');
  return bench;
}

/// Time `step`; what it writes to `file` (or, without one, the alignment) is the measure.
template <typename Step>
void time(benchmark::State& state, const Bench& bench, const char* file, Step step) {
  for (auto _ : state) {
    if (file != nullptr) {
      state.PauseTiming();
      std::remove((bench.run.fichero1 + file).c_str());  // a fresh file each time: replacing one costs extra
      state.ResumeTiming();
    }
    step();
  }
  const auto bytes = file != nullptr ? static_cast<std::int64_t>(std::filesystem::file_size(bench.run.fichero1 + file))
                                     : std::int64_t{numseq} * nupo;
  state.SetBytesProcessed(state.iterations() * bytes);
}

void load_fasta(benchmark::State& state) {
  time(state, protein(), nullptr, [] { benchmark::DoNotOptimize(load(protein().run)); });
}
void load_pir(benchmark::State& state) {
  time(state, proteinpir(), nullptr, [] { benchmark::DoNotOptimize(load(proteinpir().run)); });
}
void assignval_protein(benchmark::State& state) {
  time(state, protein(), nullptr, [] { benchmark::DoNotOptimize(assignval(protein().ali, protein().run)); });
}
void assignval_dna(benchmark::State& state) {
  time(state, dna(), nullptr, [] { benchmark::DoNotOptimize(assignval(dna().ali, dna().run)); });
}
void getpos_protein(benchmark::State& state) {
  const Bench& b = protein();
  time(state, b, nullptr, [&] { benchmark::DoNotOptimize(getpos(b.scores, b.ali, b.run)); });
}
void ungap_protein(benchmark::State& state) {
  time(state, protein(), nullptr, [] { benchmark::DoNotOptimize(ungap(protein().ali)); });
}
void saveseq_fasta(benchmark::State& state) {
  const Bench& b = protein();
  time(state, b, "-tr", [&] { saveseq(b.ali, b.blocks, b.run); });
}
void savencb_fasta(benchmark::State& state) {
  const Bench& b = protein();
  time(state, b, "-trComp", [&] { savencb(b.ali, b.blocks, b.run); });
}
void save_ung_fasta(benchmark::State& state) {
  const Bench& b = protein();
  time(state, b, "--", [&] { save_ung(b.ali, b.ungapped, b.run); });
}
void savemask_protein(benchmark::State& state) {
  const Bench& b = protein();
  time(state, b, "-trMask", [&] { savemask(b.ali, b.scores, b.blocks, b.run); });
}
void saveps_protein(benchmark::State& state) {
  const Bench& b = protein();
  time(state, b, "-trPS", [&] { saveps(b.blocks, b.ali.nupo, b.run); });
}
void saveviewfile_variant(benchmark::State& state) {
  const char* files[] = {"", "-tr.htm", "-tr.txt", "-tr.txts"};
  const Bench& b = protein();
  OutputState run = b.run;
  run.tog_viewfile = static_cast<char>(state.range(0));
  time(state, b, files[state.range(0)], [&] { saveviewfile(b.ali, b.scores, b.blocks, run); });
}
void allconcat_input(benchmark::State& state) {
  const Bench& b = protein();
  time(state, b, nullptr, [&] { Concatenation("letall_init").append(b.ali, {{1, b.ali.nupo}}); });
}

BENCHMARK(load_fasta);
BENCHMARK(load_pir);
BENCHMARK(assignval_protein);
BENCHMARK(assignval_dna);
BENCHMARK(getpos_protein);
BENCHMARK(ungap_protein);
BENCHMARK(saveseq_fasta);
BENCHMARK(savencb_fasta);
BENCHMARK(save_ung_fasta);
BENCHMARK(savemask_protein);
BENCHMARK(saveps_protein);
BENCHMARK(saveviewfile_variant)->DenseRange(1, 3);
BENCHMARK(allconcat_input);

}  // namespace

BENCHMARK_MAIN();
