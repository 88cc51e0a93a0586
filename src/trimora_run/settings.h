// What the command line asks trimora-run to do. Made once, then const.
#pragma once
#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "batch/name_keys.h"
#include "batch/partitions.h"
#include "selection/presets.h"
#include "trimora/trimora.h"  // Parameters

namespace trimora::rooms {

/// What the command line asks for.
enum class Asked { run, help, version };

/// -p: the report on each alignment.
enum class Report { html, text, brief, none };

/// --unknown: what to write for residues at which other programs stop.
enum class Unknown {
  keep,  // the residue itself
  x,     // X in proteins, N in DNA
};

/// The parameters of the selection under the names of their options, b0 to b6, and all else that can be set. b1 and b2 are
/// as they were given: their ranges depend on the alignment. Of b2, the number 0 means as few sequences as b1.
struct Settings : Parameters {
  Asked asked = Asked::run;          // anything but a run: the rest is as it is by default
  std::vector<std::string> files;    // one or more; "-", the standard input, only alone
  const Preset* preset = presets;    // --preset: what the parameters are where no option says otherwise; classic
  std::string in_place_of_preset;    // the options that say otherwise: "-b3=4 -b5=a"
  std::vector<std::string> command;  // the command line as it was given, without the program's name
  std::vector<std::pair<std::string, std::string>> given;  // each option of it by its name, as it was written last

  // Files written for each alignment.
  bool blocks = true;                                                    // -s: the selected blocks
  Report report = Report::html;                                          // -p; none when the input is "-"
  int line_length = 60;                                                  // -v: characters per line of the report
  bool mask = false;                                                     // -k
  bool map = false;                                                      // -d: the blocks drawn, as PostScript
  bool nonconserved = false;                                             // -n: the columns not selected
  bool ungapped = false;                                                 // -u: the columns without a gap
  bool columns = false;                                                  // --columns: what became of each column
  std::string suffix = "-tr";                                            // -e
  std::vector<trimora::Form> forms = std::vector{trimora::Form::fasta};  // --format
  Unknown unknown = Unknown::keep;                                       // --unknown
  std::string into;                                                      // --into: their folder; none: the alignment's

  // Several alignments.
  bool all_blocks = false;    // -a: concatenate the selected blocks
  bool all_input = false;     // -c: concatenate the alignments as they were read
  bool all_ungapped = false;  // -w: concatenate the columns without a gap
  Match match = Match::same;  // --match
  std::string name_begin;     // --name-begin: characters after which the name of a species begins
  std::string name_end;       // --name-end: characters that end it; none: blanks
  KeyRule name_parts;         // --name-parts: the fields that it is
  // What is left out.
  std::string species;                   // --species: the file of those that stay; none: all
  std::optional<int> min_filled;         // --min-filled: per cent of an alignment's median of letters
  std::optional<Sequences> min_species;  // --min-species: of an alignment
  int min_columns = 0;                   // --min-columns: selected
  std::optional<Sequences> min_genes;    // --min-genes: alignments of a species
  std::string codons;                    // --codons: the coding sequences of the alignments; none: not looked for
  std::string codon_names;               // --codon-names: the names of proteins and those of their coding sequences
  std::optional<int> code;               // --code: the genetic code; none: 1
  bool join = false;                     // --join: put together only; nothing is selected
  std::string occupancy;                 // --occupancy: letters of each species in each alignment; none: not written

  bool partitions = false;           // --partitions: which columns of a concatenation are of which alignment
  std::optional<Division> division;  // how they divide an alignment; none: by codon positions with -t=C
  std::string model;                 // --model: in the partitions; none: by the type of sequence
  std::string name;                  // --name: of the concatenations; none: by the input
  bool keep_going = false;           // --keep-going: go on after an alignment that fails

  // The run.
  std::string overview;  // --overview: a page on the whole run; none: not written
  std::string table;     // --table: a line for each alignment; "-": on standard output; none: not written
  bool strict = false;   // --strict: a note makes the status 1
  bool quiet = false;    // --quiet: no account on standard output

  /// The option of this name as it was given, as "-b1=60%"; null where it was not.
  const std::string* given_as(std::string_view option) const {
    const auto found = std::find_if(given.begin(), given.end(), [&](const auto& each) { return each.first == option; });
    return found == given.end() ? nullptr : &found->second;
  }
  /// Whether the alignment is the standard input, and its blocks go to the standard output.
  bool filter() const { return files.size() == 1 && files.front() == "-"; }
  /// How names tell their species.
  KeyRule keys() const {
    if (name_parts.style != KeyRule::Style::word) return name_parts;
    return {.begin = name_begin, .end = name_end};
  }
  /// Whether a line is kept for each alignment.
  bool tells_each() const { return !table.empty() || !overview.empty(); }
  bool filters() const { return !species.empty() || min_filled || min_species || min_columns > 0 || min_genes; }
  bool concatenates() const { return all_blocks || all_input || all_ungapped; }
};

}  // namespace trimora::rooms
