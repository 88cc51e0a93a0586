// What a run leaves out, in this order: species that are not listed, sequences with few letters, alignments with few
// species and, after selection, with few columns, species in few alignments.
// Words     key: the part of a name that tells the species
#pragma once
#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "batch/species.h"
#include "ground/table.h"
#include "input/reading.h"
#include "output/output_file.h"
#include "trimora_run/plan.h"
#include "trimora_run/settings.h"

namespace trimora::rooms {

/// One thing that was left out.
struct LeftOut {
  std::string_view option;  // the filter
  std::string_view what;    // sequence, alignment or species
  std::string name;         // of the sequence or species; empty for alignments
  std::string reason;
};

/// The sequences of an alignment that stay.
struct Chosen {
  Table<std::string> names;  // as they were read
  Table<std::string> keys;   // those of the new names where --species gives some
  std::vector<int> listed;   // their places in the list of --species
  std::vector<LeftOut> left_out;
};

class Filters {
 public:
  /// Read the file of --species; where --min-species is a share, count the species of the alignments of `plan`.
  Filters(const Settings& settings, const Plan& plan);

  /// Keep the sequences that are listed, in the order of the list and under their new names, then those with enough
  /// letters.
  Chosen choose(Reading& reading, char seq_type) const;

  /// Why an alignment with so many species is left out; empty: it stays.
  std::string few_species(int species) const;
  /// The same for its selected columns.
  std::string few_columns(int columns) const;

  /// The sequences of the concatenations in their order: those in enough of `genes` alignments.
  std::vector<int> species_kept(const Species& species, int genes, std::vector<LeftOut>& left_out) const;

  /// New names that the list gives to several species, which become one.
  const std::vector<std::string>& united() const { return united_; }

  /// Names of the list whose places are not `found`.
  std::vector<std::string> listed_in_vain(const std::unordered_set<int>& found) const;

 private:
  void choose_listed(Reading& reading, Chosen& chosen) const;
  void choose_filled(Reading& reading, Chosen& chosen, char seq_type) const;
  void read_list();
  long long count_species(const Plan& plan) const;

  struct Listed {
    int place;         // in the list, from 1
    std::string name;  // the new one; empty: as it is
  };
  const Settings& settings_;
  std::unordered_map<std::string, Listed> list_;  // by key
  std::unordered_map<std::string, int> places_;   // by key in the concatenations
  std::vector<std::string> united_;
  long long species_ = 0;  // of the batch
};

/// Write the header of the table of what was left out: tab-separated, a line for each.
void write_left_out_header(OutputFile& out);
/// Write a line; `alignment` is a path, empty for species.
void write_left_out(OutputFile& out, const std::string& alignment, const LeftOut& left_out);

/// The alignment of a job. With --join it may have no column: names of FASTA alone.
Reading read_job(const Job& job, const Settings& settings);

/// Take the mark of sequences that mafft turned from their names.
/// Returns  how many there were.
int strip_turned(std::vector<std::string>& names);

}  // namespace trimora::rooms
