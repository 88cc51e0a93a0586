// Any bytes as a paths file among small alignments, all concatenations on.
#include "fuzz.h"
#include "ground/path.h"
#include "input/input_file.h"

namespace {

using Rows = std::vector<std::string>;

void append(Rows& all, const Rows& rows) {
  all.resize(rows.size());
  for (std::size_t i = 0; i < rows.size(); ++i) all[i] += rows[i];
}

/// The concatenations hold what each alignment gives alone, one behind the other.
void checkconcatenations(RunState run) {
  InputFile paths(run.filename);
  Rows blocks, whole, ungapped;
  Alignment ali;
  for (int c = 1; c <= run.numal; ++c) {
    std::string line;
    paths.readnonempty(line);
    run.fichero1 = withoutnewline(line);
    ali = load(run);
    const Table<char> map = checkrun(ali, run);
    append(blocks, rowsof(ali, [&](int p) { return map[p] == '#'; }));
    append(whole, rowsof(ali, every));
    append(ungapped, rowsof(ali, [&](int p) { return gapless(ali, p); }));
  }
  const std::string path = getpath(run.fichero1).path_file + run.name_pathsfile;
  checkfile(path + "-tr.seq", ali.name, blocks, run);
  checkfile(path + ".seq", ali.name, whole, run);
  checkfile(path + "--.seq", ali.name, ungapped, run);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(data, data + size);
  if (foreign(text)) return 0;
  filesafter(samplesand("paths", text), [] {
    RunState run;
    run.filename = "paths";
    std::optional<Alignment> first = openfile(run);
    std::vector<std::string> words = {"-b4=2", "-b3=1", "-k=y", "-n=y", "-u=y", "-p=s", "-a=y", "-c=y", "-w=y"};
    parseoptions(static_cast<int>(words.size()), argvof(words).data(), 0, run);
    calculate(run, std::move(first));
    if (run.tog_sb == 0 || run.numal <= 0) return;
    must(wentthrough([&] { checkconcatenations(run); }), "each alignment can be read alone");
  });
  return 0;
}
