#include "trimora/errfunc.h"

#include <cstdio>
#include <cstring>

namespace trimora::rooms {

namespace {

/// The settled words of each failure; scripts look for them, so the one for too few sequences names NBRF/PIR for FASTA
/// input as well.
void print(const Failure& failure) {
  using Kind = Failure::Kind;
  switch (failure.kind) {
    case Kind::not_found:
    case Kind::not_readable:
    case Kind::not_writable: std::printf("\nFile not opened\n"); return;
    case Kind::unknown_format: std::printf("\nSequence not in NBRF/PIR or FASTA format\n"); return;
    case Kind::undecided_type:
      std::printf(
          "\nSequence not in correct NBRF/PIR format: a D (for DNA or rRNA sequences) or a P (for protein sequences) is missing after the symbol > in the name line\n");
      return;
    case Kind::bad_record: std::printf("\nSequence not in NBRF/PIR format\n"); return;
    case Kind::unfinished_record: std::printf("\nFile not in NBRF/PIR format\n"); return;
    case Kind::name_too_long: std::printf("\nSequence name too long\n"); return;
    case Kind::unequal_lengths: std::printf("\nSequences with different number of positions\n"); return;
    case Kind::too_few_sequences:
      std::printf("\nFile not in NBRF/PIR format or too few sequences in the alignment: %lld\n", failure.length);
      return;
    case Kind::too_few_positions:
      std::printf("\nToo few positions in the alignment (at least two positions are necessary): %lld\n",
                  failure.length);
      return;
    case Kind::other_sequences: std::printf("\nAlignments with different number of sequences\n"); return;
    case Kind::too_long: std::printf("\nMemory allocation failure in let\n%i\n", failure.sequence); return;
    case Kind::out_of_memory:
      std::printf("\nMemory allocation failure");
      if (failure.buffer != nullptr) std::printf(" in %s", failure.buffer);
      std::printf("\n");
      if (failure.number > 0) std::printf("%i\n", failure.number);
      return;
    case Kind::changed:  // what only the other faces meet
    case Kind::empty:
    case Kind::refused_format:
    case Kind::ambiguous_format:
    case Kind::damaged:
    case Kind::bad_character:
    case Kind::contrary_type:
    case Kind::unfit_name:
    case Kind::same_name:
    case Kind::bad_argument:
    case Kind::would_overwrite: std::printf("\n%s\n", words(failure).c_str()); return;
  }
}

}  // namespace

void errfunc(const Failure& failure) {
  if (failure.kind == Failure::Kind::not_writable) {
    std::fprintf(stderr, "trimora: %s could not be opened for writing: %s\n", failure.file.c_str(),
                 std::strerror(failure.error));
  }
  print(failure);
  std::printf("\nExecution terminated\n");
}

void name_incomplete(const std::string& file, const char* reason) {
  std::fprintf(stderr, "trimora: %s could not be written completely: %s\n", file.c_str(), reason);
}

}  // namespace trimora::rooms
