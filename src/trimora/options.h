// Command-line options, -X=VALUE: each sets one variable of the run state, or warns and leaves it as it was.
#pragma once
#include <string>
#include <vector>

#include "trimora/run_state.h"

namespace trimora::rooms {

/// What became of one argument.
struct Answer {
  enum Kind {
    ignored,  // not an option: passed over without a word
    refused,  // its value is none that the option takes: the old one stays
    guessed,  // taken, but its number is followed by something else, or is none and read as 0
    taken,
  };
  Kind kind = ignored;
  std::string warning;  // whole lines, as the program prints them
};

/// Apply argv[first] .. argv[argc - 1] from left to right. The bounds of b1 and b2 are those current at that moment.
/// Returns  the answers, in the order of the arguments.
std::vector<Answer> apply_options(int argc, char* argv[], int first, RunState& run);

/// The same, with the warnings printed.
void parse_options(int argc, char* argv[], int first, RunState& run);

}  // namespace trimora::rooms
