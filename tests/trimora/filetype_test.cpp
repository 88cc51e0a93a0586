#include "input/filetype.h"

#include "support.h"
#include "trimora/calculate.h"
#include "trimora/run_state.h"

namespace trimora::rooms {
namespace {

using FileType = FolderTest;

/// Choose `text` as the input, with everything on that concerns batches, and tell what came of it.
std::string chosen(const std::string& text) {
  std::ofstream("f") << text;
  RunState run;
  run.filename = "f";
  run.numal = 7;
  run.tog_sb = run.tog_allfile = run.tog_allfile_init = run.tog_allungfile = 1;
  run.tog_sub = 1;
  run.warn = 0;
  printed_by([&] { openfile(run); });  // which ends after the file type: there are too few sequences
  const int on = run.tog_allfile + run.tog_allfile_init + run.tog_allungfile + run.tog_sub;
  return run.fichero1 + (run.fileformat == pir ? " pir " : " fasta ") + run.seq_type +
         (run.tog_sb == 1 ? ", batch of " : ", ") + std::to_string(run.numal) + ", " + std::to_string(on) + " on" +
         (run.warn == 1 ? ", warning" : "");
}

TEST_F(FileType, OfTheInput) {
  write("a", "\n>DL;a\n\nAC*\n");
  const char* const cases[][2] = {
      {">P1;a\n\nAC*\n", "f pir P, 1, 4 on"},  // what was chosen for a batch stays for the next one
      {">D1;a\n\nAC*\n", "f pir D, 1, 4 on"},
      {"\n\n>DL;a\n\nAC*\n", "f pir D, 1, 4 on"},
      {">seq\nACGT\n", "f fasta P, 1, 4 on"},
      {">P1a;\nACGT\n", "f fasta P, 1, 4 on"},
      {">a\nACGT\n", "f fasta P, 1, 4 on"},
      {"a\nb\n", "a pir D, batch of 2, 0 on, warning"},
      {"\na\n\nb\n", "a pir D, batch of 2, 0 on, warning"},
      {"a\nb", "a pir D, batch of 1, 0 on, warning"},  // the last path counts only with its line end
      {"a\nb\n\n", "a pir D, batch of 1, 0 on, warning"},
      {"a\nb\n\n\n", "a pir D, batch of 1, 0 on, warning"},
      {"a", "a pir D, batch of 0, 0 on, warning"},
  };
  for (const auto& [text, state] : cases) EXPECT_EQ(chosen(text), state) << text;
}

}  // namespace
}  // namespace trimora::rooms
