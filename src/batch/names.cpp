#include "batch/names.h"

#include <algorithm>
#include <unordered_map>
#include <vector>

#include "input/letters.h"

namespace trimora::rooms {

namespace {

std::vector<std::string_view> sortedkeys(const Table<std::string>& name) {
  std::vector<std::string_view> keys;
  for (int i = 1; i <= name.size(); ++i) keys.push_back(keyof(name[i]));
  std::sort(keys.begin(), keys.end());
  return keys;
}

}  // namespace

std::string_view plainname(std::string_view name) {
  while (!name.empty() && whitespace(name.back())) name.remove_suffix(1);
  while (!name.empty() && whitespace(name.front())) name.remove_prefix(1);
  return name;
}

std::string_view keyof(std::string_view name, std::string_view ends) {
  name = plainname(name);
  const std::size_t end = name.find_first_of(ends.empty() ? " \t\v\f\r" : ends);
  return plainname(name.substr(0, std::min(end, name.size())));
}

Pair sametwice(const Table<std::string>& name, const PartOfName& part) {
  std::unordered_map<std::string_view, int> numbers;
  numbers.reserve(static_cast<std::size_t>(name.size()));
  for (int i = 1; i <= name.size(); ++i) {
    const auto [entry, fresh] = numbers.emplace(part(name[i]), i);
    if (!fresh) return {entry->second, i};
  }
  return {};
}

bool samekeys(const Table<std::string>& a, const Table<std::string>& b) {
  return a.size() == b.size() && sortedkeys(a) == sortedkeys(b);
}

}  // namespace trimora::rooms
