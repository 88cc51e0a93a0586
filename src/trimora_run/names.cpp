#include "trimora_run/names.h"

#include <algorithm>
#include <unordered_map>
#include <vector>

namespace {

std::vector<std::string_view> sortedkeys(const Table<std::string>& name) {
  std::vector<std::string_view> keys;
  for (int i = 1; i <= name.size(); ++i) keys.push_back(keyof(name[i]));
  std::sort(keys.begin(), keys.end());
  return keys;
}

}  // namespace

std::string_view keyof(std::string_view name) {
  return name.substr(0, std::min(name.find_first_of(" \t\r\n"), name.size()));
}

Pair sametwice(const Table<std::string>& name, std::string_view (*part)(std::string_view)) {
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
