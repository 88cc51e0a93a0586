// One run of trimora-run: its own column of verbs, which carries an alignment or a batch from the file to its results.
#pragma once
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "trimora/run_state.h"
#include "ground/failure.h"
#include "ground/table.h"
#include "input/alignment.h"
#include "trimora/calculate.h"
#include "trimora_run/arguments.h"
#include "output/forms.h"
#include "trimora_run/messages.h"
#include "output/results_table.h"
#include "batch/supermatrix.h"

namespace trimora::rooms {

/// Thrown when the command line asks for what cannot be.
struct WrongUsage {
  std::string why;
};

/// Refuse, as WrongUsage, what no alignment could accept, before one is read: each option is judged by itself, for as many
/// sequences as it takes.
void checkbeforehand(const Arguments& arguments);

class Run {
 public:
  Run(Arguments& arguments, Messages& messages);

  /// Returns  whether everything was done; what was not is said. Fails through errfunc(), or as WrongUsage before anything
  ///          is written.
  bool carryout();

  /// The file that a failure is due to, and what is to be said of it.
  const std::string& culprit() const;
  void explain(const ExecutionTerminated& end);

 private:
  std::optional<Alignment> open();
  Alignment loadlisted();
  void neverbegun(const ExecutionTerminated& end);
  bool filter();
  void settle(bool known);
  void derivepercents();
  bool fail(const std::string& file, std::string_view words);
  [[noreturn]] void refuse(const std::string& file, std::string_view words,
                           const char* message = "\nNothing was written\n");
  void guard(const std::vector<std::string>& paths);
  void failed(const ExecutionTerminated& end);
  void record();
  void trim(const Alignment& ali);
  void checknamesofforms(const Alignment& ali, bool concatenates);
  void describe(const Alignment& ali, const Selection& found);
  void save(const Alignment& ali, const Selection& found);
  BatchState placed() const;

  Arguments& arguments_;
  Messages& messages_;
  RunState run_;
  Forms forms_;  // in which alignment files are written
  bool opened_ = true;
  std::string loaded_;             // path of the alignment that was loaded to begin with
  bool complete_ = true;           // every alignment so far
  bool concatenable_ = true;       // as far as the names of the sequences allow it
  int reference_ = 0;              // sequences of the first alignment
  std::string first_;              // its path
  Table<std::string> firstnames_;  // and the names in it

  std::vector<std::string> paths_;  // of the alignments
  std::size_t recorded_ = 0;        // of them so far
  std::optional<Overview> overview_;
  Overviewed row_;  // of the alignment in work

  Supermatrix matrix_;
};

}  // namespace trimora::rooms
