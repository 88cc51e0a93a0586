// What was read: the alignment as it is in its file, and what was decided or mended in reading it.
// Counting  sequences and positions from 1
#pragma once
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "input/alignment.h"  // Stretch
#include "trimora/trimora.h"  // Kind

namespace trimora::rooms {

/// One thing that was decided or mended. It changes no letter in silence: a face says it.
struct Remark {
  enum class What {
    layout,                // detail: how the format was understood where it has more than one way
    more_alignments,       // only the first of several alignments was read
    description_missing,   // number: PIR records without their description line; sequence: the first of them
    dots_are_gaps,         // number: '.' in all rows, read as gaps; sequence: the first that has one
    dots_resolved,         // number: dots (detail: the character) replaced by the letter of the first row
    hyphens_unknown,       // number: '-' that the file declares to be missing data; they are '?' now
    sets_of_letters,       // number: {AC} or (AC), each of them one ambiguous letter now
    insert_columns,        // number: columns that are not aligned; detail: what says so
    last_column_of_stars,  // number: '*' in a last column of nothing else but gaps; they are gaps now
    stars_at_ends,         // number: '*' after the last residue of a sequence; they are gaps now
    stars_inside,          // number: any other '*', which are unknown residues
    exclamation_marks,     // number: '!', which are unknown residues
    u_read_as_t,           // number: U in DNA that also has T
    charsets_void,         // ranges of columns named in the file, which no longer hold
  };

  What what = What::layout;
  int sequence = 0;  // 0: none in particular
  long long number = 0;
  std::string detail = {};
};

/// The same in words for a person.
std::string words(const Remark& remark);

/// An alignment as its file holds it, columns of nothing but gaps included. '.' and '~' are '-' here.
struct Reading {
  std::string_view format;         // its usual name; empty: made in memory
  std::vector<std::string> names;  // without their line ends
  std::vector<char> letters;       // row after row: numseq x nupo
  int nupo = 0;
  std::optional<Kind> kind;      // the type that the file declares; never codons
  std::vector<Stretch> inserts;  // columns that are not aligned
  std::vector<Remark> remarks;

  int numseq() const { return static_cast<int>(names.size()); }
  char* row(int i) { return letters.data() + offset(i); }
  const char* row(int i) const { return letters.data() + offset(i); }

 private:
  std::size_t offset(int i) const { return (static_cast<std::size_t>(i) - 1) * static_cast<std::size_t>(nupo); }
};

/// Read each '*' as what it means: after the last residue of a sequence a gap, elsewhere an unknown residue, which stays.
void settle_stars(Reading& reading);

}  // namespace trimora::rooms
