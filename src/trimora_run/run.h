// One run of trimora-run: its own column of verbs, which carries an alignment or a batch from the file to its results.
#pragma once
#include <string>
#include <string_view>
#include <vector>

#include "batch/concatenation.h"
#include "driver/run_state.h"
#include "ground/errfunc.h"
#include "ground/table.h"
#include "input/alignment.h"
#include "trimora_run/arguments.h"
#include "trimora_run/messages.h"

/// Thrown when the command line asks for what cannot be.
struct WrongUsage {
  std::string why;
};

/// Refuse, as WrongUsage, what no alignment could accept, before one is read: each option is judged by itself, for as many
/// sequences as it takes.
void checkbeforehand(const Arguments& arguments);

class Run {
 public:
  Run(Arguments& arguments, Messages& messages) : arguments_(arguments), messages_(messages) {}

  /// Returns  whether everything was done; what was not is said. Fails through errfunc(), or as WrongUsage before anything
  ///          is written.
  bool carryout();

  /// The file that a failure is due to, and what is to be said of it.
  const std::string& culprit() const;
  void explain(const ExecutionTerminated& end);

 private:
  bool fail(const std::string& file, std::string_view words);
  void guard(const std::vector<std::string>& paths);
  void trim(const Alignment& ali, Concatenations& all);

  Arguments& arguments_;
  Messages& messages_;
  RunState run_;
  bool opened_ = true;
  bool concatenable_ = true;       // as far as the names of the sequences allow it
  int reference_ = 0;              // sequences of the first alignment
  std::string first_;              // its path
  Table<std::string> firstnames_;  // and the names in it
};
