// Names of sequences, as species are told apart by them.
#pragma once
#include <string>
#include <string_view>

#include "ground/table.h"

/// The part of a stored name by which it is compared: up to its first blank, tab or line end.
std::string_view keyof(std::string_view name);

/// Two sequences, counted from 1; 0 and 0: none.
struct Pair {
  int first = 0;
  int second = 0;
};

/// The first two that have the same name; the names are made comparable by `part`.
Pair sametwice(const Table<std::string>& name, std::string_view (*part)(std::string_view));

/// Whether two lists hold the same keys, each once, in whatever order.
bool samekeys(const Table<std::string>& a, const Table<std::string>& b);
