#include "input/filetype.h"

#include "driver/run_state.h"
#include "selection/calculate.h"
#include "support.h"

namespace {

using FileType = FolderTest;

/// Choose `text` as the input, with everything on that concerns batches, and tell what came of it.
std::string chosen(const std::string& text) {
  std::ofstream("f") << text;
  RunState run;
  run.filename = "f";
  run.tog_sb = run.tog_allfile = run.tog_allfile_init = run.tog_allungfile = 1;
  run.tog_sub = 1;
  run.warn = 0;
  run.numal = 7;
  printedby([&] { openfile(run); });  // which ends behind the file type: there are too few sequences
  std::string state = run.fichero1 + (run.fileformat == pir ? " pir " : " fasta ") + run.seq_type;
  state += (run.tog_sb == 1 ? " batch of " : " ") + std::to_string(run.numal);
  if (run.tog_allfile == 1 && run.tog_allfile_init == 1 && run.tog_allungfile == 1) state += " concatenating";
  if (run.tog_sub == 1) state += " fixed";
  if (run.warn == 1) state += " warning";
  return state;
}

TEST_F(FileType, OfTheInput) {
  write("a", "\n>DL;a\n\nAC*\n");
  const char* const cases[][2] = {
      {">P1;a\n\nAC*\n", "f pir P 1 concatenating fixed"},  // what was chosen for a batch stays for the next one
      {">D1;a\n\nAC*\n", "f pir D 1 concatenating fixed"},
      {"\n\n>DL;a\n\nAC*\n", "f pir D 1 concatenating fixed"},
      {">seq\nACGT\n", "f fasta P 1 concatenating fixed"},
      {">P1a;\nACGT\n", "f fasta P 1 concatenating fixed"},
      {">a\nACGT\n", "f fasta P 1 concatenating fixed"},
      {"a\nb\n", "a pir D batch of 2 warning"},
      {"\na\n\nb\n", "a pir D batch of 2 warning"},
      {"a\nb", "a pir D batch of 1 warning"},  // the last path counts only with its line end
      {"a\nb\n\n", "a pir D batch of 1 warning"},
      {"a\nb\n\n\n", "a pir D batch of 1 warning"},
      {"a", "a pir D batch of 0 warning"},
  };
  for (const auto& [text, state] : cases) EXPECT_EQ(chosen(text), state) << text;
}

}  // namespace
