// The run state: what the user has set, and what is known of the input. Options, menus, file-type detection and the run
// driver write it, everyone else reads it. The member initialisers are the table of defaults.
// Words     b0 .. b6: the block parameters, under the letters of their options | toggle: a switch, 1 on and 0 off
#pragma once
#include <cstddef>
#include <string>

/// What one run needs to know besides the alignment itself.
struct RunState {
  // Block parameters, in sequences or in positions.
  int posblen = 10;    // b0: minimum length of an initial block, before gap cleaning; 2 to 32000
  int negval = 0;      // b1: minimum number of sequences for a conserved position; initnegval to flankval
  int flankval = 0;    // b2: minimum number of sequences for a flank position; negval to numseq
  int negblen = 8;     // b3: maximum number of contiguous nonconserved positions; 0 to 32000
  int posblen2 = 10;   // b4: minimum length of a block after gap cleaning; 2 to 32000
  int tog_gaps = 1;    // b5: allowed gap positions: 1 none, 2 with half, 3 all
  int tog_sim = 1;     // b6: use the similarity matrix, for proteins only
  int initnegval = 0;  // half the number of sequences + 1: lower bound of b1; never set by the user

  // The input.
  std::string filename;        // the file named by the user: an alignment or a paths file; empty: none is loaded
  std::string fichero1;        // path of the alignment in work: the input itself, or the path read from the paths file
  std::string name_pathsfile;  // the paths file's own name
  int fileformat = 0;          // pir or fasta (below); 0: not known yet
  char seq_type = '-';         // 'P' protein, 'D' DNA, 'C' codons, '-' not known yet
  char tog_sb = 0;             // 1: the input is a paths file (batch)
  int numal = 1;               // alignments to process
  int numseq = 0;              // sequences of the alignment loaded last; bounds b2, and b1 and b2 are derived from it

  // Files written by a run.
  char tog_seqfile = 1;       // -s  the selected blocks
  char tog_viewfile = 1;      // -p  results and parameters: 0 none, 1 HTML, 2 text, 3 short
  char tog_maskfile = 0;      // -k  the mask
  char tog_psfile = 0;        // -d  the PostScript map
  char tog_ncbfile = 0;       // -n  the nonconserved blocks
  char tog_ungappedfile = 0;  // -u  the ungapped alignment
  char tog_allfile = 0;       // -a  batch: the concatenated selected blocks
  char tog_allfile_init = 0;  // -c  batch: the concatenated input alignments
  char tog_allungfile = 0;    // -w  batch: the concatenated ungapped alignments
  std::string exten = "-tr";  // -e  suffix of the files written, 1 to 5 characters
  int breakcount = 60;        // -v  characters per line of the report, 50 to 32000

  // Control.
  char menu = ' ';  // the last menu choice, lower-cased; a line end shows the menu again behind a blank line
  int tog_sub = 0;  // 1: b1 or b2 is fixed, or a concatenation was asked for: one set of parameters for a whole batch,
                    //    and the same number of sequences in each alignment
  int warn = 1;     // 1: the warning about settings that concern all alignments of a batch has not been shown yet
  int tog_expmen = 0;   // 1: the saving options menu shows its extended lines
  int tog_expmenb = 0;  // 1: the block parameters menu shows its extended lines
};

/// The values that a parameter may take, both ends included. Numbers typed by a user are wider than any parameter.
struct Range {
  long long least;
  long long most;
  constexpr bool holds(long long value) const { return least <= value && value <= most; }
};

inline constexpr Range posblenrange = {2, 32000};       // b0 and b4
inline constexpr Range codonposblenrange = {5, 32000};  // b4 in the menus, for codons: one whole codon remains
inline constexpr Range negblenrange = {0, 32000};       // b3
inline constexpr Range breakcountrange = {50, 32000};

/// The ranges of b1 and b2, which depend on each other and on the alignment.
inline Range negvalrange(const RunState& run) {
  return {run.initnegval, run.flankval};
}
inline Range flankvalrange(const RunState& run) {
  return {run.negval, run.numseq};
}

inline constexpr std::size_t longestexten = 5;  // characters of a suffix

/// Values of RunState::fileformat.
inline constexpr int pir = 1;
inline constexpr int fasta = 2;

/// Derive b1 and b2 (and the lower bound of b1) from `run.numseq`: more than half and 85 % of the sequences.
void derivedefaults(RunState& run);
