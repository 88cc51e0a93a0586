#include "batch/species.h"

#include "batch/names.h"
#include "ground/failure.h"
#include "output/forms.h"

namespace trimora::rooms {

void check_keys(const Table<std::string>& name, std::string_view ends) {
  const auto key = [&](std::string_view whole) { return key_of(whole, ends); };
  for (int i = 1; i <= name.size(); ++i) {
    if (!key(name[i]).empty()) continue;
    throw Failure{.kind = Failure::Kind::unfit_name,
                  .sequence = i,
                  .name = std::string(plain_name(name[i])),
                  .detail = "does not tell its species"};
  }
  const auto [first, second] = same_twice(name, key);
  if (first == 0) return;
  throw Failure{.kind = Failure::Kind::same_name,
                .sequence = second,
                .name = std::string(key(name[first])),
                .detail = ", sequences " + std::to_string(first) + " and " + std::to_string(second) +
                          " (paralogs?), so that it is not certain which one belongs to the species: leave one out, or "
                          "say with --name-end= where the name of the species ends"};
}

void Species::add(const Table<std::string>& name) {
  std::vector<int>& rows = rows_.emplace_back(static_cast<std::size_t>(name_.size()) + 1, 0);
  for (int i = 1; i <= name.size(); ++i) {
    const std::string key(key_of(name[i], ends_));
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
