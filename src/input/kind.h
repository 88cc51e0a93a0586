// The type of sequence, by the letters. A, C, G, T and U are nucleotides, E, F, I, L, P and Q are amino acids alone; N and X
// say nothing.
#pragma once
#include <optional>

#include "input/reading.h"

namespace trimora::rooms {

/// DNA when nine tenths of the letters are nucleotides and the rest their ambiguity codes; protein when a twentieth are
/// amino acids alone. Never codons.
struct KindByLetters {
  enum class Undecided {
    no,           // `kind` is set
    few_letters,  // fewer than ten
    neither,      // the letters fit neither type
    both,         // some sequences are DNA, others protein
  };
  std::optional<Kind> kind;
  Undecided why = Undecided::no;
  long long letters = 0;  // that count
  int dna = 0;            // the first sequence that is DNA by its own letters, the first one that is protein; 0: none
  int protein = 0;
};

KindByLetters kind_by_letters(const Reading& reading);

/// In DNA and codons: where both T and U occur, U becomes T, which adds a remark.
void read_u_as_t(Reading& reading);

}  // namespace trimora::rooms
