// Protein decides, codons follow: the coding sequences of a protein alignment, aligned as their proteins are.
// Words     coding sequence: the nucleotides of a protein without gaps, aligned or not before
// Counting  sequences, residues and nucleotides from 1
#pragma once
#include <string>
#include <string_view>
#include <vector>

#include "batch/genetic_code.h"
#include "input/alignment.h"
#include "input/reading.h"

namespace trimora::rooms {

/// Coding sequences as a file holds them, without gaps.
struct CodingSequences {
  std::vector<std::string> names;
  std::vector<std::string> sequences;
};

/// Read coding sequences: FASTA, where they may differ in length, or any alignment.
/// Fails    as read()
CodingSequences read_coding_sequences(const std::string& path);

/// The nucleotides of a coding sequence: without gaps, T for U.
std::string nucleotides_of(std::string_view sequence);

/// The codons of one protein.
struct Backtranslated {
  std::string codons;  // three letters for each column: --- for a gap, NNN for a stop inside
  int begins = 1;      // the first nucleotide that is used
  int stops = 0;       // inside, written NNN
  int left_over = 0;   // one or two letters after the last codon
  bool final_stop = false;
};

/// Put the codons of `coding` below the residues of `row`, which may hold gaps. Its frame is the first one or, where only
/// one of the other two fits, that. A final stop codon and letters after it are dropped.
/// Fails    contrary_type, in words, when a codon does not encode its residue or codons are too few or too many
Backtranslated backtranslate(std::string_view row, std::string_view coding, const GeneticCode& code);

/// The coding sequence of each row, from 0; -1: there is none.
/// `names` are compared whole, and as `keys` where that does not find each.
std::vector<int> match_by_name(const std::vector<std::string>& rows, const std::vector<std::string>& row_keys,
                               const std::vector<std::string>& names, const std::vector<std::string>& name_keys);

}  // namespace trimora::rooms
