// The formats of alignments: one row each, in the order in which they are looked for, and one reader each.
#pragma once
#include <span>
#include <string_view>

#include "input/lines.h"
#include "input/reading.h"

namespace trimora::rooms {

struct InputFormat {
  std::string_view name;                  // its usual name
  bool (*begins)(std::string_view head);  // whether a text that begins with `head` is in it
  Reading (*read)(Lines& in);             // unset: it is refused by its name
};
std::span<const InputFormat> formats();

/// The format of a text that begins with `head`, nothing when it is none of the table.
const InputFormat* format_of(std::string_view head);

bool begins_fasta(std::string_view head);
bool begins_pir(std::string_view head);
bool begins_clustal(std::string_view head);
bool begins_phylip(std::string_view head);
bool begins_nexus(std::string_view head);
bool begins_stockholm(std::string_view head);
bool begins_msf(std::string_view head);

Reading read_fasta(Lines& in);
Reading read_pir(Lines& in);
Reading read_clustal(Lines& in);
Reading read_phylip(Lines& in);
Reading read_nexus(Lines& in);
Reading read_stockholm(Lines& in);
Reading read_msf(Lines& in);

}  // namespace trimora::rooms
