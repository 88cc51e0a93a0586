#include "trimora_run/notes_on_batch.h"

#include <algorithm>
#include <string_view>

#include "output/forms.h"
#include "trimora_run/words.h"

namespace trimora::rooms {

namespace {

constexpr std::size_t most_listed = 10;
constexpr int nearly_all = 80;  // per cent of the species that recur, from which on the others are noted

std::string key_at(const Species& species, int s) {
  return std::string(plain_name(species.name()[s]));
}

/// "--name-end='|' takes Homo_sapiens|gene1 as Homo_sapiens", one after the other.
std::string proposed(const std::vector<Proposal>& found) {
  std::string text;
  for (const Proposal& each : found) {
    text += text.empty() ? "" : "; ";
    text += options_for(each.rule) + " takes " + each.name + " as " + each.key;
  }
  return text;
}

/// Whether two rules find the same keys.
bool find_the_same(const std::vector<Names>& genes, const KeyRule& a, const KeyRule& b) {
  return std::all_of(genes.begin(), genes.end(), [&](const Names& names) {
    return std::all_of(names.begin(), names.end(),
                       [&](const std::string& name) { return key_of(name, a) == key_of(name, b); });
  });
}

std::string genes(int number) {
  return std::to_string(number) + (number == 1 ? " alignment" : " alignments");
}

}  // namespace

std::string listed_names(const std::vector<std::string>& names) {
  std::string text;
  for (std::size_t k = 0; k < std::min(names.size(), most_listed); ++k) text += (k > 0 ? ", " : "") + names[k];
  return names.size() > most_listed ? text + " and " + std::to_string(names.size() - most_listed) + " more" : text;
}

std::string names_never_meet(const Species& species, const Identity& identity) {
  if (species.genes() < 2 || meeting(species).meeting > 0) return "";
  const std::string number = std::to_string(species.size()), of = std::to_string(species.genes());
  const std::string rules = proposed(proposals(identity.sample()));
  return rules.empty() ? filled(words_of_run::never_meet, {number, of})
                       : filled(words_of_run::never_meet_proposed, {number, of, rules});
}

std::vector<std::string> notes_on_identity(const Species& species, const Identity& identity, const Settings& settings) {
  std::vector<std::string> notes;
  if (species.genes() < 2) return notes;
  const auto note = [&](std::string_view words, std::initializer_list<std::string_view> values) {
    notes.push_back(filled(words, values));
  };

  const Meeting met = meeting(species);
  std::vector<std::string> single;
  for (const int s : met.single) single.push_back(key_at(species, s));
  if (met.meeting * 2 <= met.species) {
    std::vector<Proposal> better = proposals(identity.sample());
    std::erase_if(better,
                  [&](const Proposal& each) { return find_the_same(identity.sample(), each.rule, settings.keys()); });
    const std::string rules = proposed(better);
    note(words_of_run::few_meet,
         {std::to_string(met.meeting), std::to_string(met.species), met.meeting == 1 ? "is" : "are",
          listed_names(single), rules.empty() ? "" : " " + rules});
  } else if (!single.empty() && species.genes() > 2 &&
             met.meeting * 100LL >= nearly_all * static_cast<long long>(met.species)) {
    note(words_of_run::single_names,
         {std::to_string(single.size()), single.size() == 1 ? "species is" : "species are", listed_names(single)});
  }

  std::vector<std::string> signs, spellings, merged;
  for (const Lookalikes& pair : lookalikes(species)) {
    const bool by_signs = pair.how == Lookalikes::How::signs;
    std::string text = key_at(species, pair.first) + " (" + genes(species.genes_of(pair.first)) + ") and " +
                       key_at(species, pair.second) + " (" + genes(species.genes_of(pair.second)) + ")";
    (by_signs ? signs : spellings).push_back(std::move(text));
  }
  if (!signs.empty()) note(words_of_run::same_but_signs, {listed_names(signs)});
  if (!spellings.empty()) note(words_of_run::misspelt, {listed_names(spellings)});
  for (const Identity::Merged& each : identity.merged()) {
    merged.push_back(each.first + " in " + each.first_path + " and " + each.second + " in " + each.second_path +
                     " are " + each.key);
  }
  if (!merged.empty()) {
    const std::string rule = options_for(settings.keys());
    note(words_of_run::merged,
         {rule.empty() ? "only the first word of a name counts" : rule + " gives them one name", listed_names(merged)});
  }
  return notes;
}

}  // namespace trimora::rooms
