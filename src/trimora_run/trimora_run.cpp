#include "trimora_run/trimora_run.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "driver/options.h"
#include "driver/run_state.h"
#include "ground/errfunc.h"
#include "ground/speaker.h"
#include "ground/version.h"
#include "input/alignment.h"
#include "input/filetype.h"
#include "input/input_file.h"
#include "output/output_file.h"
#include "selection/calculate.h"
#include "trimora_run/notes.h"

namespace {

constexpr char help[] = R"(Usage: trimora-run FILE [-X=VALUE ...]
Trims FILE, an alignment or a paths file, as trimora does, but never asks.
Exit status: 0 done, 1 failed or something is incomplete, 2 wrong usage.
  -t=P|D|C    type of sequence: protein, DNA, codons (default: by file)
  -b1=NUMBER  sequences for a conserved position: half + 1 (default) to b2
  -b2=NUMBER  sequences for a flank position: b1 to all (85 %)
  -b3=NUMBER  contiguous nonconserved positions at most: 0 to 32000 (8)
  -b4=NUMBER  length of a block at least: 2 to 32000; sets b0 too (10)
  -b0=NUMBER  length of an initial block at least: 2 to 32000 (10)
  -b5=N|H|A   allowed gap positions: none, with half, all (N)
  -b6=Y|N     use the similarity matrix, for proteins (Y)
  -e=TEXT     suffix of the files written, 1 to 5 characters (-tr)
  -s=Y|N      write the selected blocks (Y)
  -p=Y|T|S|N  write the report: HTML, text, short text, none (Y)
  -v=NUMBER   characters per line of the report: 50 to 32000 (60)
  -k=Y|N      write the mask (N)
  -d=Y|N      write the PostScript map of the blocks (N)
  -n=Y|N      write the nonconserved blocks (N)
  -u=Y|N      write the ungapped alignment (N)
  -a=Y|N      batch: write the concatenated selected blocks (N)
  -c=Y|N      batch: write the concatenated input alignments (N)
  -w=Y|N      batch: write the concatenated ungapped alignments (N)
)";

constexpr int done = 0;
constexpr int failed = 1;
constexpr int wrongusage = 2;

/// Say on standard error that nothing is run, and why; `subject` is what is wrong.
int refuse(const char* subject, const std::string& why) {
  std::fprintf(stderr, "trimora-run: %s%s\nNothing was run. Try 'trimora-run --help'.\n", subject, why.c_str());
  return wrongusage;
}

/// Refuse the first argument that was not taken as it was written; `done` when there is none.
int check(const std::vector<Answer>& answers, char* argv[]) {
  for (const Answer& answer : answers) {
    const char* argument = *argv++;
    if (answer.kind == Answer::ignored) return refuse(argument, " is not an option");
    if (answer.kind == Answer::guessed) return refuse(argument, " is not a whole number");
    if (answer.kind == Answer::refused) return refuse(argument, " is refused:" + withoutnewline(answer.warning));
  }
  return done;
}

/// Repeat on standard error, with the file, why the run ended, on one line. Memory may have run out.
void blame(const char* file, const char* message) {
  std::fprintf(stderr, "trimora-run: %s:", file);
  for (; *message != '\0' && std::strcmp(message, "\n") != 0; ++message) {
    std::fputc(*message == '\n' ? ' ' : *message, stderr);
  }
  std::fputc('\n', stderr);
}

int run(int argc, char* argv[]) {
  if (argc < 2) return refuse("no file name", "");
  if (argv[1][0] == '-' && !InputFile(argv[1])) return refuse(argv[1], " stands where the file name is expected");
  RunState any;  // of as many sequences as it takes: what is wrong for every alignment is found before one is read
  any.negval = any.initnegval = INT_MIN;
  any.flankval = any.numseq = INT_MAX;
  if (check(applyoptions(argc, argv, 2, any), argv + 2) != done) return wrongusage;

  RunState run;
  run.filename = argv[1];
  int processed = 0;
  bool opened = true;
  try {
    std::optional<Alignment> loaded = openfile(run);
    opened = loaded.has_value();
    const std::vector<Answer> answers = applyoptions(argc, argv, 2, run);
    if (loaded && check(answers, argv + 2) != done) return wrongusage;
    if (run.exten == "--" && run.tog_ungappedfile == 1) return refuse("-e=--", " and -u=y give two files one name");
    for (const Answer& answer : answers) std::printf("%s", answer.warning.c_str());
    processed = calculate(run, std::move(loaded), Notes());
  } catch (const ExecutionTerminated& end) {
    blame(run.fichero1.empty() ? argv[1] : run.fichero1.c_str(), opened ? end.message : "\nFile not opened\n");
    throw;
  }
  if (run.tog_sb == 0 || processed >= std::max(run.numal, listedpaths(run.filename))) return done;
  std::fprintf(stderr,
               "trimora-run: not every path of %s was processed: each has to end with a newline, and no empty line may "
               "follow the last one\n",
               run.filename.c_str());
  return failed;
}

}  // namespace

int trimora_run(int argc, char* argv[]) {
  speaker = "trimora-run";
  const int incompletebefore = OutputFile::incomplete();
  int status = failed;
  const std::string_view first = argc > 1 ? argv[1] : "";
  if (first == "--help") {
    std::printf("%s", help);
    status = done;
  } else if (first == "--version") {
    std::printf("trimora-run %s\n", version);
    status = done;
  } else {
    wentthrough([&] { status = run(argc, argv); });
  }
  OutputFile::flushstandardoutput();
  return OutputFile::incomplete() == incompletebefore ? status : failed;
}
