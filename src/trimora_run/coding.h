// The coding sequences of the alignments of a run: found, matched with their proteins, checked.
#pragma once
#include <string>
#include <unordered_map>
#include <vector>

#include "batch/genetic_code.h"
#include "input/alignment.h"
#include "input/reading.h"
#include "trimora_run/filters.h"
#include "trimora_run/plan.h"
#include "trimora_run/settings.h"

namespace trimora::rooms {

/// The codons of the columns of one protein alignment, as its file has them.
struct Codons {
  int numseq = 0;
  std::vector<char> letters;  // row after row, three for each column
  std::vector<std::string> decided, notes;
};

class Coding {
 public:
  /// Read the names of --codon-names.
  explicit Coding(const Settings& settings);

  bool wanted() const { return !settings_.codons.empty(); }

  /// The codons of `reading`, whose sequences are `chosen`.
  /// Fails    when there are none, or they do not fit
  Codons codons_of(const Job& job, const Reading& reading, const Chosen& chosen) const;

 private:
  const Settings& settings_;
  GeneticCode code_;
  std::unordered_map<std::string, std::string> names_;  // of coding sequences, by those of proteins
};

/// The codons of the selected positions of `ali`.
Alignment selected_codons(const Codons& codons, const Alignment& ali, const std::vector<Stretch>& blocks);

}  // namespace trimora::rooms
