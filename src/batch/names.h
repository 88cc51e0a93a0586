// Names of sequences, and how species are told apart by them.
// Words     key: the part of a name that tells the species
#pragma once
#include <functional>
#include <string>
#include <string_view>

#include "ground/table.h"

namespace trimora::rooms {

/// The key of a stored name: up to the first of `ends`, or to its first blank or tab when there are none; without blanks at
/// either end.
std::string_view key_of(std::string_view name, std::string_view ends = "");

/// Two sequences, counted from 1; 0 and 0: none.
struct Pair {
  int first = 0;
  int second = 0;
};

/// The first two that have the same name; the names are made comparable by `part`.
using PartOfName = std::function<std::string_view(std::string_view)>;
Pair same_twice(const Table<std::string>& name, const PartOfName& part);

/// Whether two lists hold the same keys, each as often, in whatever order.
bool same_keys(const Table<std::string>& a, const Table<std::string>& b);

}  // namespace trimora::rooms
