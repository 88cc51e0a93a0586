// Which part of a sequence's name tells its species, and which rule would find that part where the one in force does not.
// Words     key: the part of a name that tells the species | rest: what is left of the name before and after its key
//           field: a part of a name between '_', '|' and blanks | gene: one alignment of a batch
// Counting  fields from 1
#pragma once
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "ground/table.h"

namespace trimora::rooms {

/// How the key of a name is found.
struct KeyRule {
  enum class Style {
    word,      // after the first of `begin`, before the first of `end`
    fields,    // the fields `first` to `last`
    organism,  // after OS=, as UniProt writes it
    brackets,  // in the last [ ], as NCBI writes it
    letters,   // the letters before the first digit, as in the identifiers of Ensembl
  };
  Style style = Style::word;
  std::string begin = {};  // none: the key begins where the name does
  std::string end = {};    // none: blanks end it
  int first = 0, last = 0;

  bool operator==(const KeyRule&) const = default;
};

/// The key as a stretch of `name`; empty when the rule finds none.
std::string_view stretch_of(std::string_view name, const KeyRule& rule);

/// The key as one word: '_' takes the place of blanks, and of whatever is between fields.
std::string key_of(std::string_view name, const KeyRule& rule);

/// What of a name follows its key directly and looks like a species' epithet: "sapiens" of "Homo_sapiens|x" for the key
/// "Homo". Empty: nothing does.
std::string_view epithet_after(std::string_view name, std::string_view key);

/// Whether a word is three small letters or more, as an epithet is.
bool like_epithet(std::string_view word);

/// The options that set a rule, as they are typed in a shell.
std::string options_for(const KeyRule& rule);

/// A rule that brings the names of several genes together.
struct Proposal {
  KeyRule rule;
  std::string name;  // one of the names, and what it would be called
  std::string key;
  int keys = 0;     // different ones
  int meeting = 0;  // of them, those in two genes or more
};

using Names = std::vector<std::string>;  // of one gene

/// The rules under which two of the keys, and a sixth of them, are in two genes or more. Each finds a key in every name,
/// twice the same in no gene, and cuts off only what is the same in a whole gene (a locus) or new in each (an accession):
/// what recurs with the same key may be an epithet or a voucher. Of rules whose keys are parts of another's keys, only the
/// longest stays, unless a smaller share of its keys meets.
std::vector<Proposal> proposals(const std::vector<Names>& genes);

}  // namespace trimora::rooms
