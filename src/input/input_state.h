// What is known of the input: the first slice of the run state. Each room adds what it reads to the slice of the room
// before it, and a function takes the narrowest slice that it needs. The member initialisers are the table of defaults.
#pragma once
#include <string>

namespace trimora::rooms {

/// Values of InputState::fileformat.
inline constexpr int pir = 1;
inline constexpr int fasta = 2;

struct InputState {
  std::string filename;  // the file named by the user: an alignment or a paths file; empty: none is loaded
  std::string fichero1;  // path of the alignment in work: the input itself, or the path read from the paths file
  int fileformat = 0;    // pir or fasta; 0: not known yet
  char seq_type = '-';   // 'P' protein, 'D' DNA, 'C' codons, '-' not known yet
  char tog_sb = 0;       // 1: the input is a paths file (batch)
  int numal = 1;         // alignments to process
};

}  // namespace trimora::rooms
