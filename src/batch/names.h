// Names of sequences, as species are told apart by them.
#pragma once
#include <functional>
#include <string>
#include <string_view>

#include "ground/table.h"

namespace trimora::rooms {

/// A stored name without its line end and without blanks at either end.
std::string_view plainname(std::string_view name);

/// The part of a stored name by which species are told apart: up to the first of `ends`, or to its first blank or tab
/// when none are given; without blanks at either end.
std::string_view keyof(std::string_view name, std::string_view ends = "");

/// Two sequences, counted from 1; 0 and 0: none.
struct Pair {
  int first = 0;
  int second = 0;
};

/// The first two that have the same name; the names are made comparable by `part`.
using PartOfName = std::function<std::string_view(std::string_view)>;
Pair sametwice(const Table<std::string>& name, const PartOfName& part);

/// Whether two lists hold the same keys, each once, in whatever order.
bool samekeys(const Table<std::string>& a, const Table<std::string>& b);

}  // namespace trimora::rooms
