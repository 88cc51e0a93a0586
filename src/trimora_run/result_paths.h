// Where each result of a run goes: one alignment's own files, and those of all together.
#pragma once
#include <string>
#include <vector>

#include "batch/supermatrix.h"
#include "output/output_state.h"
#include "trimora_run/plan.h"
#include "trimora_run/settings.h"

namespace trimora::rooms {

/// All files that are written for one alignment.
std::vector<std::string> results_of(const Job& job, const Settings& settings);
/// All that are written for the batch, but those that options name.
std::vector<std::string> joined_results(const Plan& plan, const Settings& settings);

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

/// The alignment that the result `path` was made of: gene.fas for gene.fas-tr.fasta; `path` itself where it is no
/// result of ours.
std::string source_of(const std::string& path, const Settings& settings);

/// The table of the names that changed in the files whose names begin with `path`.
std::string names_path(const std::string& path);

/// The concatenations that are asked for.
Supermatrix::Choice joined_choice(const Plan& plan, const Settings& settings);

}  // namespace trimora::rooms
