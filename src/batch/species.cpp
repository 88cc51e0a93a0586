#include "batch/species.h"

#include "trimora_run/messages.h"
#include "batch/names.h"
#include "trimora_run/words.h"

namespace trimora::rooms {

std::string unfitkey(const Table<std::string>& name, std::string_view ends) {
  const auto key = [&](std::string_view whole) { return keyof(whole, ends); };
  for (int i = 1; i <= name.size(); ++i) {
    if (key(name[i]).empty()) return filled(words::nokey, {std::to_string(i), plainname(name[i])});
  }
  const auto [first, second] = sametwice(name, key);
  if (first == 0) return "";
  return filled(words::samekeys, {std::to_string(first), std::to_string(second), key(name[first])});
}

void Species::add(const Table<std::string>& name) {
  std::vector<int>& rows = rows_.emplace_back(static_cast<std::size_t>(name_.size()) + 1, 0);
  for (int i = 1; i <= name.size(); ++i) {
    const std::string key(keyof(name[i], ends_));
    const auto [entry, fresh] = number_.emplace(key, name_.size() + 1);
    if (fresh) {
      name_.append(key + "\n");
      rows.push_back(i);
    } else {
      rows[static_cast<std::size_t>(entry->second)] = i;
    }
  }
}

}  // namespace trimora::rooms
