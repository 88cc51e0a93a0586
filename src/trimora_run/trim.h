// One alignment, from its file to its results.
#pragma once
#include <optional>
#include <string>
#include <vector>

#include "batch/counts.h"
#include "batch/results_table.h"
#include "ground/failure.h"
#include "ground/table.h"
#include "input/alignment.h"
#include "output/forms.h"
#include "output/output_state.h"
#include "selection/selection.h"
#include "trimora_run/coding.h"
#include "trimora_run/filters.h"
#include "trimora_run/plan.h"
#include "trimora_run/settings.h"

namespace trimora::rooms {

/// What earlier alignments of a batch leave for the next one.
struct Before {
  std::string path;         // of the first one; empty: none was trimmed
  InputState first;         // its format and type of sequence
  bool type_known = false;  // the type of sequence: one that holds no letter tells none
  std::string type_path;    // of the alignment that told it
  Table<std::string> name;  // its names
};

/// What became of one alignment. trim() touches nothing but this alignment's own files.
struct Outcome {
  TableRow row;
  std::vector<std::string> decided;  // in reading it, for the account
  std::vector<std::string> notes;
  std::optional<Failure> failure;    // it was not trimmed, or not all of its files are there
  std::string why_not_joined;        // it was trimmed, and does not go together with the first one
  std::vector<std::string> written;  // its files

  Chosen chosen;                    // the sequences that stay
  std::optional<LeftOut> left_out;  // the alignment as a whole
  Table<RowCounts> counts;          // of the positions that are put together
  bool type_known = true;

  OutputState run;  // the parameters in force
  Alignment ali;
  Selection found;
  Alignment codons;  // of the selected positions, where there are coding sequences
};

/// Read, select and write `job`, alone or as one of a batch.
Outcome trim(const Job& job, const Plan& plan, const Settings& settings, const Filters& filters, const Coding& coding,
             const Before& before);

/// The type of sequence of an alignment that tells it, as P or D; nothing when it does not, or cannot be read.
std::optional<char> type_told_by(const Job& job, const Settings& settings);

/// What is written for each letter, as --unknown says.
LetterMap letters_written(const Settings& settings, char seq_type);

/// Write `sheet` to `path` in each form of `settings`; names that change are listed in `changed_names`, and told in `decided`.
void write_forms(const std::string& path, const Sheet& sheet, const Forms& forms, const InputState& run,
                 const std::string& changed_names, std::vector<std::string>& decided, std::vector<std::string>& written,
                 Unique unique = Unique::needed);

}  // namespace trimora::rooms
