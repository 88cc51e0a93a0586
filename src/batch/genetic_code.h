// The genetic codes, under the numbers that NCBI gives them.
// Words     codon: three nucleotides; each may be an ambiguity code, and U is T
#pragma once
#include <array>
#include <optional>
#include <string_view>
#include <vector>

namespace trimora::rooms {

class GeneticCode {
 public:
  /// The code `number`; nothing when there is none.
  static std::optional<GeneticCode> numbered(int number);

  /// Whether a codon, or one of those that its ambiguity codes allow, encodes `residue`. B, Z and J are either of their
  /// two; X, * and whatever is unknown agree with each codon, U with TGA and O with TAG, as well.
  bool encodes(std::string_view codon, char residue) const;
  /// Whether it, or one of the codons that it can mean, can begin a protein.
  bool starts(std::string_view codon) const;
  /// Whether it can be nothing but a stop; `at_end`: also one that is a residue elsewhere.
  bool stops(std::string_view codon, bool at_end = false) const;
  /// The residues of all codons, TTT, TTC, TTA, TTG, TCT ... GGG; * stops.
  std::string_view residues() const { return {residues_.data(), residues_.size()}; }

 private:
  std::array<char, 64> residues_{};  // in the order of TCAG; * stops
  std::array<bool, 64> starts_{};
  std::array<bool, 64> both_{};  // codons of a residue that also stop, at the end
};

/// The numbers that there are, ascending.
std::vector<int> genetic_code_numbers();

}  // namespace trimora::rooms
