// Any lines as the arguments of the program, among small alignments.
#include <sstream>

#include "driver/entry.h"
#include "fuzz.h"
#include "trimora_run/trimora_run.h"

namespace {

void checkranges(const RunState& run) {
  must(posblenrange.holds(run.posblen) && posblenrange.holds(run.posblen2) && negblenrange.holds(run.negblen) &&
           breakcountrange.holds(run.breakcount) && negvalrange(run).holds(run.negval) &&
           flankvalrange(run).holds(run.flankval) && Range{1, 3}.holds(run.tog_gaps) &&
           Range{0, 3}.holds(run.tog_viewfile) && Range{1, longestexten}.holds(static_cast<int>(run.exten.size())),
       "each value is in its range");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(data, data + size);
  std::vector<std::string> words = {"trimora"};
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) words.push_back(line.substr(0, line.find('\0')));
  if (words.size() < 3 || foreign(text)) return 0;  // one argument shows the menus, which have a target of their own

  std::vector<char*> argv = argvof(words);
  const int argc = static_cast<int>(argv.size());
  const Files inputs = samplesand("empty", "");
  const Files whole = filesafter(inputs, [&] { trimora(argc, argv.data()); });
  const Files parts = filesafter(inputs, [&] {
    RunState run;
    run.filename = words[1];
    const std::optional<Alignment> ali = openfile(run);
    parseoptions(argc, argv.data(), 2, run);
    if (ali) checkranges(run);
    calculate(run, ali);
    if (ali && run.tog_sb == 0) checkrun(*ali, run);
  });
  must(whole == parts, "two runs write the same bytes");
  int status = 0;
  const Files script = filesafter(inputs, [&] { status = trimora_run(argc, argv.data()); });
  must(script == (status == 2 ? inputs : whole), "trimora-run writes the same, or nothing");
  return 0;
}
