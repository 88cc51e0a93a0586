// Any lines as the arguments of both programs, among small alignments; those behind an empty line are a paths file.
#include <sstream>

#include "fuzz.h"
#include "ground/path.h"
#include "input/input_file.h"
#include "trimora/entry.h"
#include "trimora_run/trimora_run.h"

namespace {

void checkranges(const RunState& run) {
  must(posblen_range.holds(run.posblen) && posblen_range.holds(run.posblen2) && negblen_range.holds(run.negblen) &&
           breakcount_range.holds(run.breakcount) && negval_range(run).holds(run.negval) &&
           flankval_range(run).holds(run.flankval) && Range{1, 3}.holds(run.tog_gaps) &&
           Range{0, 3}.holds(run.tog_viewfile) && Range{1, longest_exten}.holds(static_cast<int>(run.exten.size())),
       "each value is in its range");
}

/// The alignments of a batch, each as it is alone, and the concatenations: one behind the other.
void checkbatch(RunState run) {
  InputFile paths(run.filename);
  Letters blocks, whole, ungapped;
  Alignment ali;
  for (int c = 1; c <= run.numal && read_path(paths, run.fichero1); ++c) {
    ali = load(run);
    run.numseq = ali.numseq;
    if (run.tog_sub == 0) derive_defaults(run);
    const Table<char> map = checkrun(ali, run);
    append(blocks, ali, [&](int p) { return map[p] == '#'; });
    append(whole, ali, [](int) { return true; });
    append(ungapped, ali, [&](int p) { return gapless(ali, p); });
  }
  const std::string path = getpath(run.fichero1).path_file + getpath(run.filename).name_file;
  if (run.tog_allfile == 1) checkfile(path + run.exten + ".seq", ali.name, blocks, run);
  if (run.tog_allfile_init == 1) checkfile(path + ".seq", ali.name, whole, run);
  if (run.tog_allungfile == 1) checkfile(path + "--.seq", ali.name, ungapped, run);
}

/// What trimora-run with options of its own, or as a filter, leaves behind: nothing that is not whole, and nothing at all
/// when it refuses its options.
void checkown(const Files& inputs, int argc, char* argv[]) {
  int status = 0;
  const Files files = filesafter(inputs, [&] {
    must(std::freopen("five.fas", "rb", stdin) != nullptr, "five.fas is standard input");
    status = trimora_run(argc, argv);
  });
  must(status != 2 || files == inputs, "nothing is written for wrong usage");
  for (const auto& file : files) {
    const std::string& name = file.first;
    must(!name.ends_with(".part1"), name + " is not left");  // as a file is called as long as it is not whole
  }
}

/// Whether `word` could lead to a file outside the folder of the run.
bool leadsout(const std::string& word) {
  return (word.starts_with("--into=") || word.starts_with("--table=")) && word.find_first_of("./") != word.npos;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(data, data + size);
  const std::size_t end = std::min(text.find("\n\n"), size);
  std::istringstream lines(text.substr(0, end));
  std::vector<std::string> words = {"trimora"};
  for (std::string line; std::getline(lines, line);) words.push_back(line.substr(0, line.find('\0')));
  if (words.size() < 3 || foreign(text)) return 0;  // one argument shows the menus, which have a target of their own
  std::vector<char*> argv = argvof(words);
  const int argc = static_cast<int>(argv.size());

  const Files inputs = samplesand("paths", text.substr(std::min(end + 2, size)));
  if (std::any_of(words.begin(), words.end(), leadsout)) return 0;
  const auto own = [](const std::string& word) { return word.starts_with("--") || word.ends_with('%') || word == "-"; };
  if (std::any_of(words.begin(), words.end(), own)) {
    checkown(inputs, argc, argv.data());
    return 0;
  }
  const Files whole = filesafter(inputs, [&] { trimora(argc, argv.data()); });
  bool accepted = false;  // an input that can be read, and every option taken as it was written
  const Files parts = filesafter(inputs, [&] {
    RunState run;
    run.filename = words[1];
    const std::optional<Alignment> ali = openfile(run);
    const std::vector<Answer> answers = apply_options(argc, argv.data(), 2, run);
    if (ali) checkranges(run);
    accepted = ali && std::all_of(answers.begin(), answers.end(), [](const Answer& a) { return a.kind == a.taken; }) &&
               run.exten != "--";  // can give two files one name
    calculate(run, ali);
    if (ali && run.tog_sb == 0) checkrun(*ali, run);
    // Another suffix could give a file the name of another one.
    if (ali && run.tog_sb == 1 && run.numal > 0 && run.exten == "-tr") checkbatch(run);
  });
  must(whole == parts, "two runs write the same bytes");
  int status = 0;
  const Files script = filesafter(inputs, [&] { status = trimora_run(argc, argv.data()); });
  for (const auto& [path, bytes] : script) {
    must(whole.count(path) == 1 && whole.at(path) == bytes, path + " is what trimora writes");
  }
  must(status != 0 || script == whole, "trimora-run leaves nothing out without a word");
  must(status != 2 || (script == inputs && !accepted), "trimora-run refuses only what was not taken");
  return 0;
}
