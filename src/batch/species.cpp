#include "batch/species.h"

#include "batch/names.h"
#include "ground/failure.h"
#include "output/forms.h"

namespace trimora::rooms {

namespace {

/// A whole name in brackets where it is more than its key.
std::string shown(std::string_view name, std::string_view key) {
  name = plain_name(name);
  return name == key ? "" : " (" + std::string(name) + ")";
}

}  // namespace

Table<std::string> keys_of(const Table<std::string>& name, const KeyRule& rule) {
  Table<std::string> keys;
  keys.reserve(name.size());
  for (int i = 1; i <= name.size(); ++i) keys.append(key_of(name[i], rule));
  return keys;
}

void check_keys(const Table<std::string>& name, const Table<std::string>& keys, const KeyRule& rule) {
  for (int i = 1; i <= name.size(); ++i) {
    if (!keys[i].empty()) continue;
    throw Failure{.kind = Failure::Kind::unfit_name,
                  .sequence = i,
                  .name = std::string(plain_name(name[i])),
                  .detail = "does not tell its species"};
  }
  const auto [first, second] = same_twice(keys, [](std::string_view key) { return key; });
  if (first == 0) return;
  const bool by_word = rule.style == KeyRule::Style::word;
  throw Failure{.kind = Failure::Kind::same_name,
                .sequence = second,
                .name = keys[first],
                .detail = ", sequences " + std::to_string(first) + shown(name[first], keys[first]) + " and " +
                          std::to_string(second) + shown(name[second], keys[second]) +
                          " (paralogs?), and nothing tells which of them belongs to the species: leave one out, or " +
                          (by_word ? "say with --name-end= where the name of the species ends"
                                   : "take more of the name with another --name-parts=")};
}

void Species::add(const Table<std::string>& keys) {
  std::vector<int>& rows = rows_.emplace_back(static_cast<std::size_t>(name_.size()) + 1, 0);
  for (int i = 1; i <= keys.size(); ++i) {
    const std::string& key = keys[i];
    const auto [entry, fresh] = number_.emplace(key, name_.size() + 1);
    if (fresh) {
      name_.append(key + "\n");
      genes_of_.append(1);
      rows.push_back(i);
    } else {
      ++genes_of_[entry->second];
      rows[static_cast<std::size_t>(entry->second)] = i;
    }
  }
}

}  // namespace trimora::rooms
