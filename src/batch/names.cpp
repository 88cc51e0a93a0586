#include "batch/names.h"

#include <algorithm>
#include <unordered_map>
#include <vector>

#include "output/forms.h"

namespace trimora::rooms {

namespace {

std::vector<std::string_view> sorted_keys(const Table<std::string>& name) {
  std::vector<std::string_view> keys;
  for (int i = 1; i <= name.size(); ++i) keys.push_back(key_of(name[i]));
  std::sort(keys.begin(), keys.end());
  return keys;
}

}  // namespace

std::string_view key_of(std::string_view name, std::string_view ends) {
  name = plain_name(name);
  const std::size_t end = name.find_first_of(ends.empty() ? " \t\v\f\r" : ends);
  return plain_name(name.substr(0, std::min(end, name.size())));
}

Pair same_twice(const Table<std::string>& name, const PartOfName& part) {
  std::unordered_map<std::string_view, int> numbers;
  numbers.reserve(static_cast<std::size_t>(name.size()));
  for (int i = 1; i <= name.size(); ++i) {
    const auto [entry, fresh] = numbers.emplace(part(name[i]), i);
    if (!fresh) return {entry->second, i};
  }
  return {};
}

bool same_keys(const Table<std::string>& a, const Table<std::string>& b) {
  return a.size() == b.size() && sorted_keys(a) == sorted_keys(b);
}

}  // namespace trimora::rooms
