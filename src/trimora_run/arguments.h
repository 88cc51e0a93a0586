// The command line of trimora-run, taken apart: the file, trimora's own options, and those that only trimora-run has.
#pragma once
#include <optional>
#include <string>
#include <vector>

#include "trimora_run/forms.h"

/// How the sequences of a batch are put together in a concatenation.
enum class Match {
  same,   // by their order; different names are refused
  name,   // by their names; '?' where an alignment lacks one
  order,  // by their order, whatever their names
};

struct Arguments {
  std::string file;            // the alignment or paths file
  bool filter = false;         // "-" instead: the alignment comes from standard input, its blocks go to standard output
  std::vector<char*> settled;  // -X=VALUE, in their order, but for those in per cent
  std::optional<int> b1percent, b2percent;  // -b1=NUMBER%, -b2=NUMBER%: of the sequences of each alignment
  Match match = Match::same;                // --match
  std::string nameend;                      // --name-end: characters that end the name of a species; none: blanks
  bool partitions = false;                  // --partitions: where each alignment stands in the concatenations
  std::string model;                        // --model: in them; none: by the type of sequence
  Forms forms;                              // --format; none: the usual one
  std::string into;                         // --into: folder of everything that is written; none: that of the alignment
  bool columns = false;                     // --columns: what became of each column
  std::string table;                        // --table: file of the table of all alignments; none: it is not written
  bool keepgoing = false;                   // --keep-going: a batch goes on behind an alignment that fails
  bool strict = false;                      // --strict: every note makes the status 1 in the end
};

/// Take the command line apart. argv[0] is the program's name.
/// Returns  an empty text, or what is wrong with it: then nothing is to be run.
std::string takeapart(int argc, char* argv[], Arguments& arguments);
