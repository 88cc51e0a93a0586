// What the fuzz targets share: a fresh folder for every run, and what has to hold after it.
#pragma once
#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "input/filetype.h"
#include "input/letters.h"
#include "selection/blocks.h"
#include "selection/reduced_views.h"
#include "selection/scores.h"
#include "selection/similarity_matrix.h"
#include "trimora/calculate.h"
#include "trimora/errfunc.h"
#include "trimora/options.h"

namespace trimora::rooms {

/// `what` should hold; else the fuzzer keeps the input.
inline void must(bool holds, const std::string& what) {
  if (holds) return;
  std::fprintf(stderr, "\nBROKEN: %s\n", what.c_str());
  std::abort();
}

// ---- Folders

using Files = std::map<std::string, std::string>;  // bytes by path

inline Files files_in(const std::string& folder) {
  Files files;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string path = entry.path().lexically_relative(folder);
    if (entry.is_regular_file()) files[path].assign(std::istreambuf_iterator<char>(file), {});
  }
  return files;
}

/// The small alignments and paths files of some golden runs, and one more file.
inline Files samples_and(const std::string& path, const std::string& bytes) {
  static const Files samples = files_in(TRIMORA_SAMPLES);
  Files files = samples;
  files[path] = bytes;
  return files;
}

/// Carry out `step` in a fresh folder that holds `inputs`, which it must not change. Returns the files afterwards.
template <typename Step>
Files files_after(const Files& inputs, Step step) {
  const auto before = std::filesystem::current_path();
  std::string folder = std::filesystem::temp_directory_path() / "trimora-XXXXXX";
  std::filesystem::current_path(mkdtemp(folder.data()));
  for (const auto& [path, bytes] : inputs) {
    if (path.find('/') != path.npos) std::filesystem::create_directories(path.substr(0, path.rfind('/')));
    std::ofstream(path, std::ios::binary) << bytes;
  }
  go_through(step);
  Files files = files_in(".");
  for (const auto& [path, bytes] : inputs) must(files[path] == bytes, path + " is unchanged");
  std::filesystem::current_path(before);
  std::filesystem::remove_all(folder);
  return files;
}

/// Whether a path in `text` could lead to something that is no file, and that could keep the reader waiting for ever.
inline bool foreign(const std::string& text) {
  return text.find("/dev") != text.npos || text.find("/proc") != text.npos;
}

/// Arguments as main() gets them.
inline std::vector<char*> argv_of(std::vector<std::string>& words) {
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(word.data());
  return argv;
}

// ---- The selection, said once more: one position after the other, without a tile, a vector or a walk back

inline PositionScores plain_scores(const Alignment& ali, const OutputState& run) {
  const bool protein = run.seq_type == 'P';
  const std::string alphabet = protein ? "ACGTDEFHIKLMNPQRSVWY" : "UACGT";
  const int allowed[] = {0, 0, ali.numseq / 2, ali.numseq};  // gaps, by tog_gaps
  PositionScores scores;
  for (int p = 1; p <= ali.nupo; ++p) {
    int count[256] = {};
    for (int i = 1; i <= ali.numseq; ++i) ++count[static_cast<unsigned char>(capital(ali.let[i][p]))];
    const auto of = [&](char residue) { return count[static_cast<unsigned char>(residue)]; };
    const char best =
        *std::max_element(alphabet.begin(), alphabet.end(), [&](char a, char b) { return of(a) < of(b); });
    const bool scored = of('-') <= allowed[run.tog_gaps] && of(best) > 0;
    float val = scored ? static_cast<float>(of(best)) : 0;
    if (protein && run.tog_sim == 1 && scored && of(best) > ali.numseq / 2) {
      val = 0;
      const float* weight = similarity[alphabet.find(best)];
      for (const char residue : alphabet) val += *weight++ * static_cast<float>(of(residue));
    }
    scores.val.append(val);
    scores.val_aa.append(scored ? best : '?');
  }
  return scores;
}

/// The stretches from one member to another, joined as long as nothing between them breaks.
template <typename Member, typename Breaks>
std::vector<Stretch> joined(Stretch within, int shortest, Member member, Breaks breaks) {
  std::vector<Stretch> found;
  bool open = false;
  for (int p = within.first; p <= within.last; ++p) {
    if (breaks(p)) open = false;
    if (!member(p)) continue;
    if (!open) found.push_back({p, p});
    found.back().last = p;
    open = true;
  }
  std::erase_if(found, [&](const Stretch& stretch) { return stretch.length() < shortest; });
  return found;
}

inline std::vector<Stretch> plain_blocks(const PositionScores& scores, int nupo, const OutputState& run) {
  const auto flank = [&](int p) { return scores.val[p] >= static_cast<float>(run.flankval); };
  const auto inside = [&](int p) { return conserved(scores, p, run); };
  int nonconserved = 0;
  const auto toolong = [&](int p) { return (nonconserved = inside(p) ? 0 : nonconserved + 1) > run.negblen; };
  std::vector<Stretch> blocks;
  for (const Stretch& initial : joined({1, nupo}, run.posblen, flank, toolong)) {
    for (Stretch block : joined(initial, run.posblen2, inside, [&](int p) { return scores.val[p] == 0; })) {
      if (run.seq_type == 'C') block = {(block.first + 1) / 3 * 3 + 1, block.last / 3 * 3};
      blocks.push_back(block);
    }
  }
  return blocks;
}

// ---- The files

inline bool gapless(const Alignment& ali, int p) {
  int i = 1;
  while (i <= ali.numseq && ali.let[i][p] != '-') ++i;
  return i > ali.numseq;
}

using Letters = std::vector<std::string>;  // one string for each sequence

/// Append the letters of each sequence at the positions that `keep` chooses.
template <typename Keep>
void append(Letters& rows, const Alignment& ali, Keep keep) {
  rows.resize(static_cast<std::size_t>(ali.numseq));
  for (int p = 1; p <= ali.nupo; ++p) {
    if (!keep(p)) continue;
    for (int i = 1; i <= ali.numseq; ++i) rows[static_cast<std::size_t>(i) - 1] += ali.let[i][p];
  }
}

/// The alignment file holds these names and rows, in groups of ten and lines of sixty.
inline void check_file(const std::string& path, const Table<std::string>& name, const Letters& rows,
                       const OutputState& run) {
  const bool is_pir = run.fileformat == pir;
  std::string expected;
  for (int i = 1; i <= name.size(); ++i) {
    expected += (is_pir ? (run.seq_type == 'P' ? ">P1;" : ">DL;") : ">") + name[i] + (is_pir ? " \n" : "");
    int column = 0;
    for (const char letter : rows[static_cast<std::size_t>(i) - 1]) {
      expected += letter;
      if (++column % 10 == 0) expected += column % 60 == 0 ? '\n' : ' ';
    }
    expected += is_pir ? "*\n\n" : "\n";
  }
  std::ifstream file(path, std::ios::binary);
  must(std::string(std::istreambuf_iterator<char>(file), {}) == expected, path + " holds its names and rows");
}

/// Scores, blocks and alignment files of `ali` after a run. Returns the map of the selected positions.
inline Table<char> check_run(const Alignment& ali, const OutputState& run) {
  const PositionScores scores = assignval(ali, run);
  const PositionScores plain = plain_scores(ali, run);
  must(scores.val.size() == ali.nupo && scores.val_aa.size() == ali.nupo, "each position has a score");
  for (int p = 1; p <= ali.nupo; ++p) {
    must(scores.val[p] == plain.val[p] && scores.val_aa[p] == plain.val_aa[p], "scores and residues");
  }

  const SelectedBlocks blocks = getpos(scores, ali, run);
  const Table<char> map = makelettrimora(blocks, ali.nupo);
  const std::vector<Stretch> expected = plain_blocks(scores, ali.nupo, run);
  must(blocks.newpos.size() == expected.size(), "the number of blocks");
  int behind = 0, gaps = 0, selected = 0;  // gaps of the first sequence outside the blocks
  for (std::size_t k = 0; k < expected.size(); ++k) {
    const auto [first, last] = blocks.newpos[k];
    must(first == expected[k].first && last == expected[k].last && behind < first, "the blocks");
    while (++behind < first) gaps += ali.let[1][behind] == '-' ? 1 : 0;
    must(blocks.newposseq[k].first == first - gaps && blocks.newposseq[k].last == last - gaps, "the first sequence");
    behind = last;
    selected += last - first + 1;
    for (int p = first; p <= last; ++p) must(map[p] == '#', "the map");
  }
  must(blocks.nupo3 == selected && blocks.nupo3per == selected * 100 / ali.nupo, "the positions selected");

  const auto expect = [&](char toggle, const std::string& ending, auto keep) {
    Letters rows;
    append(rows, ali, keep);
    if (toggle == 1) check_file(run.fichero1 + ending, ali.name, rows, run);
  };
  const bool overwritten = run.tog_ungappedfile == 1 && run.exten == "--";
  if (!overwritten) expect(run.tog_seqfile, run.exten, [&](int p) { return map[p] == '#'; });
  expect(run.tog_ncbfile, run.exten + "Comp", [&](int p) { return map[p] == '.'; });
  expect(run.tog_ungappedfile, "--", [&](int p) { return gapless(ali, p); });
  return map;
}

}  // namespace trimora::rooms
