// The command line of trimora-run, taken apart: the file, trimora's own options, and those that only trimora-run has.
#pragma once
#include <string>
#include <vector>

/// How the sequences of a batch are put together in a concatenation.
enum class Match {
  same,   // by their order; different names are refused
  order,  // by their order, whatever their names
};

struct Arguments {
  std::string file;            // the alignment or paths file
  std::vector<char*> settled;  // -X=VALUE, in their order
  Match match = Match::same;   // --match
  bool strict = false;         // --strict: every note makes the status 1 in the end
};

/// Take the command line apart. argv[0] is the program's name.
/// Returns  an empty text, or what is wrong with it: then nothing is to be run.
std::string takeapart(int argc, char* argv[], Arguments& arguments);
