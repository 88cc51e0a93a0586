// What a run will do, before anything is written: its alignments in order, and where each result goes.
// Words     stem: the path that the names of an alignment's results begin with
#pragma once
#include <string>
#include <vector>

#include "batch/supermatrix.h"
#include "output/output_state.h"
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

/// The state with which the files of an alignment are written: all of it but what the alignment tells.
OutputState output_state(const Settings& settings, const std::string& stem);

/// The path of a concatenation, without the ending of its form.
std::string joined_path(const Plan& plan, const Settings& settings, Joined joined);

/// The tables of what was left out, and of the alignments that stay, for methods that take gene trees.
std::string left_out_path(const Plan& plan);
std::string kept_path(const Plan& plan);
bool writes_kept(const Settings& settings);

/// The report on an alignment; empty: there is none.
std::string report_path(const Job& job, const Settings& settings);

/// The codons of the selected blocks, without the ending of a form.
std::string codons_path(const OutputState& run);

/// The selected blocks of an alignment in the first form.
std::string blocks_path(const OutputState& run, const Settings& settings);

/// The table of the names that changed in the files whose names begin with `path`.
std::string names_path(const std::string& path);

/// The concatenations that are asked for.
Supermatrix::Choice joined_choice(const Plan& plan, const Settings& settings);

}  // namespace trimora::rooms
