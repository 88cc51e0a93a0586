// What a run will do, before anything is written: its alignments in order, and where each result goes.
// Words     stem: the path that the names of an alignment's results begin with
#pragma once
#include <string>
#include <vector>

#include "trimora_run/settings.h"

namespace trimora::rooms {

/// One alignment.
struct Job {
  std::string path;  // "-": the standard input
  std::string stem;
  std::string coding = {};  // the file of its coding sequences; empty: there is none
};

struct Plan {
  std::vector<Job> jobs;
  bool batch = false;                // several alignments, or one alone with -a, -c or -w
  std::string joined_stem;           // of the concatenations
  std::vector<std::string> decided;  // about the files that were named, for the account
};

/// Find the alignments that `settings.files` name, and all files that the run will write; make the folder of --into.
/// Fails    with a Failure, its `file` set: not_found, not_readable, would_overwrite, empty ...
Plan plan_of(const Settings& settings);

}  // namespace trimora::rooms
