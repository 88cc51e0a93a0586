// Any lines as the arguments of both programs, among small alignments; those behind an empty line are a paths file.
#include <sstream>

#include "batch/concatenation.h"
#include "fuzz.h"
#include "ground/path.h"
#include "input/input_file.h"
#include "trimora/entry.h"
#include "trimora_run/entry.h"

using namespace trimora::rooms;

namespace {

void check_ranges(const RunState& run) {
  must(posblen_range.holds(run.posblen) && posblen_range.holds(run.posblen2) && negblen_range.holds(run.negblen) &&
           breakcount_range.holds(run.breakcount) && negval_range(run).holds(run.negval) &&
           flankval_range(run).holds(run.flankval) && Range{1, 3}.holds(run.tog_gaps) &&
           Range{0, 3}.holds(run.tog_viewfile) && Range{1, longest_exten}.holds(static_cast<int>(run.exten.size())),
       "each value is in its range");
}

/// The alignments of a batch, each as it is alone, and the concatenations: one behind the other.
void check_batch(RunState run) {
  InputFile paths(run.filename);
  Letters blocks, whole, ungapped;
  Alignment ali;
  for (int c = 1; c <= run.numal && read_path(paths, run.fichero1); ++c) {
    ali = load(run);
    run.numseq = ali.numseq;
    if (run.tog_sub == 0) derive_defaults(run);
    const Table<char> map = check_run(ali, run);
    append(blocks, ali, [&](int p) { return map[p] == '#'; });
    append(whole, ali, [](int) { return true; });
    append(ungapped, ali, [&](int p) { return gapless(ali, p); });
  }
  const std::string path = getpath(run.fichero1).path_file + getpath(run.filename).name_file;
  if (run.tog_allfile == 1) check_file(path + run.exten + ".seq", ali.name, blocks, run);
  if (run.tog_allfile_init == 1) check_file(path + ".seq", ali.name, whole, run);
  if (run.tog_allungfile == 1) check_file(path + "--.seq", ali.name, ungapped, run);
}

/// What trimora-run with options of its own, or as a filter, leaves behind: nothing that is not whole, and nothing at all
/// when it refuses its options.
void check_own(const Files& inputs, int argc, char* argv[]) {
  int status = 0;
  const Files files = files_after(inputs, [&] {
    must(std::freopen("five.fas", "rb", stdin) != nullptr, "five.fas is standard input");
    status = trimora_run_main(argc, argv);
  });
  must(status != 2 || files == inputs, "nothing is written for wrong usage");
  for (const auto& file : files) {
    const std::string& name = file.first;
    must(name.find(".part") == name.npos, name + " is not left");  // as a file is called as long as it is not whole
  }
}

/// Whether a word of trimora-run could lead to a file outside the folder of the run.
bool leads_out(const std::string& word) {
  if (word.starts_with("--")) return word.find_first_of("./~") != word.npos;
  return word.starts_with('/') || word.starts_with('~') || word.find("..") != word.npos;
}

/// What trimora has written of plain alignments, trimora-run writes with --format=trimora as well. Concatenations have
/// another place, and a list may have more alignments for trimora-run.
void check_plain(const Files& inputs, std::vector<std::string> words, const Files& whole, char seq_type) {
  const std::string& paths = inputs.at("paths");
  const auto names = [&](const std::string& file) { return words[1] == file || paths.find(file) != paths.npos; };
  if (names("dna.pir") || (words[1] == "paths" && paths.find('>') != paths.npos)) return;  // T and U in one; anything
  words.emplace_back("--format=trimora");
  words.push_back(std::string("-t=") + seq_type);
  int status = 0;
  const Files script =
      files_after(inputs, [&] { status = trimora_run_main(static_cast<int>(words.size()), argv_of(words).data()); });
  must(status != 2 || script == inputs, "nothing is written for wrong usage");
  if (status != 0) return;
  for (const auto& [path, bytes] : whole) {
    if (path.ends_with(".seq")) continue;
    must(script.count(path) == 1 && script.at(path) == bytes, path + " is what trimora writes");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(data, data + size);
  const std::size_t end = std::min(text.find("\n\n"), size);
  std::istringstream lines(text.substr(0, end));
  std::vector<std::string> words = {"trimora"};
  for (std::string line; std::getline(lines, line);) words.push_back(line.substr(0, line.find('\0')));
  if (words.size() < 3 || foreign(text)) return 0;  // one argument shows the menus, which have a target of their own
  std::vector<char*> argv = argv_of(words);
  const int argc = static_cast<int>(argv.size());

  const Files inputs = samples_and("paths", text.substr(std::min(end + 2, size)));
  const auto own = [](const std::string& word) { return word.starts_with("--") || word.ends_with('%') || word == "-"; };
  if (std::any_of(words.begin(), words.end(), own)) {
    if (std::any_of(words.begin(), words.end(), leads_out)) return 0;
    check_own(inputs, argc, argv.data());
    return 0;
  }
  const Files whole = files_after(inputs, [&] { trimora_main(argc, argv.data()); });
  bool accepted = false;  // an input that can be read, and every option taken as it was written
  char seq_type = '-';
  const Files parts = files_after(inputs, [&] {
    RunState run;
    run.filename = words[1];
    const std::optional<Alignment> ali = openfile(run);
    const std::vector<Answer> answers = apply_options(argc, argv.data(), 2, run);
    if (ali) check_ranges(run);
    accepted = ali && std::all_of(answers.begin(), answers.end(), [](const Answer& a) { return a.kind == a.taken; }) &&
               run.exten != "--";  // can give two files one name
    seq_type = run.seq_type;
    calculate(run, ali);
    if (ali && run.tog_sb == 0) check_run(*ali, run);
    // Another suffix could give a file the name of another one.
    if (ali && run.tog_sb == 1 && run.numal > 0 && run.exten == "-tr") check_batch(run);
  });
  must(whole == parts, "two runs write the same bytes");
  if (accepted) check_plain(inputs, words, whole, seq_type);
  return 0;
}
