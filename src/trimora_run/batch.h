// What the alignments of a batch become together: the concatenations with their partitions, who is in them and how much
// of whom, and what was left out.
#pragma once
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "batch/identity.h"
#include "batch/occupancy.h"
#include "batch/overview.h"
#include "batch/supermatrix.h"
#include "output/whole_file.h"
#include "trimora_run/filters.h"
#include "trimora_run/plan.h"
#include "trimora_run/settings.h"
#include "trimora_run/trim.h"
#include "trimora_run/voice.h"

namespace trimora::rooms {

class Batch {
 public:
  /// Begins the files that are named or certain, so that a run does not end with one that cannot be written. Fails with
  /// not_writable.
  Batch(const Settings& settings, const Plan& plan, const Filters& filters);

  /// Note what was left out of an alignment, or the whole of it.
  void leave_out(const Outcome& outcome);
  /// Put an alignment to those before it.
  void add(const Outcome& outcome);

  int size() const { return all_.size(); }
  /// The cells of a table row that only the whole batch can fill.
  void complete(TableRow& row) const;

  /// Write the concatenations, unless its names do not meet, and say what there is of whom. `run` is that of the first one.
  void write_joined(const InputState& run, Voice& voice);
  /// End the table of what was left out, and count it.
  void finish(Voice& voice);
  /// Write the page on the whole run, `rows` being those of all alignments.
  void write_page(const std::vector<TableRow>& rows, Voice& voice);

 private:
  void left_out(const std::string& path, const LeftOut& each);
  void note(const std::string& path, const std::string& words, Voice& voice);
  void error(std::string_view words, Voice& voice);
  void note_identity(Voice& voice);
  void write_one(Joined joined, const InputState& first, Voice& voice);
  void write_files_of_batch(Voice& voice);
  void say_summary(Voice& voice) const;
  int row(std::size_t gene, int species) const { return all_.row(gene, species); }

  const Settings& settings_;
  const Plan& plan_;
  const Filters& filters_;
  Supermatrix all_;
  Identity identity_;
  Occupancy occupancy_;
  std::vector<std::string> small_;     // alignments of fewer than four species
  std::vector<std::string> kept_;      // what gene trees are made of
  std::unordered_set<int> listed_;     // places in the list of --species that were found
  std::vector<int> chosen_;            // the sequences of the concatenations
  Table<std::string> name_;            // and their names
  std::vector<std::string> notes_;     // what was said of the whole
  std::vector<std::string> files_;     // and written
  std::optional<WholeFile> left_out_;  // none: there are no filters
  std::optional<WholeFile> cells_;     // of the occupancy
  std::optional<WholeFile> page_;      // of the overview
  long long sequences_out_ = 0, alignments_out_ = 0, species_out_ = 0;
};

}  // namespace trimora::rooms
