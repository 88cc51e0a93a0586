// Whether the names of a batch meet as they should: which keys recur, which look like one another, which hide two species.
// Words     key: the part of a name that tells the species | gene: one alignment of the batch
#pragma once
#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "batch/name_keys.h"
#include "batch/species.h"
#include "ground/table.h"

namespace trimora::rooms {

/// How often the species of a batch recur.
struct Meeting {
  int species = 0;
  int meeting = 0;          // in two genes or more
  std::vector<int> single;  // in one gene only
};
Meeting meeting(const Species& species);

/// Two species that may be one, since they are never in one gene.
struct Lookalikes {
  enum class How {
    signs,     // they differ in capitals or in signs that are neither letters nor digits: Pan, pan, Pan_
    spelling,  // by one letter, or one of them shortens the genus, and one is in two genes at most
  };
  How how = How::signs;
  int first = 0, second = 0;  // the one in fewer genes is the first
};
std::vector<Lookalikes> lookalikes(const Species& species);

/// Collects what the names of a batch say beyond their keys.
class Identity {
 public:
  explicit Identity(KeyRule rule) : rule_(std::move(rule)) {}

  /// Take in the names of the gene in the file `path`.
  void add(const std::string& path, const Table<std::string>& name);

  /// One key of two names that look like two species of a genus, as Macaca of Macaca_mulatta and Macaca_fascicularis.
  struct Merged {
    std::string key;
    std::string first, first_path;
    std::string second, second_path;
  };
  const std::vector<Merged>& merged() const { return merged_; }

  /// The names as they are in some genes from the first to the last: enough to propose rules.
  const std::vector<Names>& sample() const { return sample_; }

 private:
  struct Seen {
    std::string epithet, name, path;
    bool told = false;
  };
  KeyRule rule_;
  std::vector<Names> sample_;  // of every `every_`th gene
  std::size_t genes_ = 0, every_ = 1;
  std::unordered_map<std::string, Seen> epithets_;  // the first of each key
  std::vector<Merged> merged_;
};

/// The second word of a name where it looks like an epithet: "sapiens" of "Homo sapiens". Otherwise empty.
std::string_view second_word(std::string_view name);

}  // namespace trimora::rooms
