#include "batch/identity.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "input/letters.h"
#include "output/forms.h"

namespace trimora::rooms {

namespace {

constexpr std::size_t sample_genes = 200;  // whose names are kept, at most
constexpr int most_species = 20000;        // more are not compared
constexpr std::size_t shortest = 6;        // letters and digits of names whose spelling is compared
constexpr std::size_t most_pairs = 1000;   // looked at
constexpr int rare = 2;                    // genes of a name that may be misspelt

/// Letters, as small ones, and digits.
std::string plain_letters(std::string_view key) {
  std::string text;
  for (const char c : key) {
    // What is no ASCII may be a letter.
    if (is_letter(c) || is_digit(c) || static_cast<unsigned char>(c) > 127) text += lower(c);
  }
  return text;
}

/// Its genus by its first letter alone: "mmulatta" of "Macaca_mulatta", "M.mulatta". `shortened`: it was so already.
std::string abbreviated(std::string_view key, bool& shortened) {
  const auto in_word = [](char c) { return is_letter(c) || is_digit(c); };
  const auto end = static_cast<std::size_t>(std::find_if_not(key.begin(), key.end(), in_word) - key.begin());
  shortened = end == 1;
  return end == 0 || end == key.size() ? std::string()
                                       : plain_letters(key.substr(0, 1)) + plain_letters(key.substr(end));
}

/// Whether one letter was changed, added, left out or swapped with its neighbour.
bool one_step(std::string_view a, std::string_view b) {
  if (a.size() > b.size()) std::swap(a, b);
  if (b.size() - a.size() > 1) return false;
  std::size_t head = 0, tail = 0;
  while (head < a.size() && a[head] == b[head]) ++head;
  while (tail < a.size() - head && a[a.size() - 1 - tail] == b[b.size() - 1 - tail]) ++tail;
  const std::string_view left = a.substr(head, a.size() - head - tail), right = b.substr(head, b.size() - head - tail);
  if (std::any_of(left.begin(), left.end(), is_digit) || std::any_of(right.begin(), right.end(), is_digit)) {
    return false;
  }
  const bool swapped = left.size() == 2 && right.size() == 2 && left[0] == right[1] && left[1] == right[0];
  return right.size() <= 1 || swapped;
}

bool share_a_gene(const Species& species, int a, int b) {
  for (std::size_t gene = 0; gene < species.genes(); ++gene) {
    if (species.row(gene, a) > 0 && species.row(gene, b) > 0) return true;
  }
  return false;
}

/// Looks for pairs by texts that both have.
class Pairs {
 public:
  Pairs(const Species& species, std::vector<Lookalikes>& found) : species_(species), found_(found) {}

  /// Compare `number` with those that were given the same text before.
  template <typename Likely>
  void look(Lookalikes::How how, const std::string& text, int number, Likely likely) {
    std::vector<int>& others = by_text_[text];
    for (const int other : others) {
      if (other != number && likely(other)) keep(how, other, number);
    }
    others.push_back(number);
  }

 private:
  void keep(Lookalikes::How how, int a, int b) {
    if (species_.genes_of(a) > species_.genes_of(b)) std::swap(a, b);
    if (how == Lookalikes::How::spelling &&
        (species_.genes_of(a) > rare || species_.genes_of(a) == species_.genes_of(b))) {
      return;
    }
    const auto same = [&](const Lookalikes& pair) { return std::minmax(pair.first, pair.second) == std::minmax(a, b); };
    if (++looked_at_ > most_pairs || std::any_of(found_.begin(), found_.end(), same)) return;
    if (!share_a_gene(species_, a, b)) found_.push_back({how, a, b});
  }

  const Species& species_;
  std::vector<Lookalikes>& found_;
  std::unordered_map<std::string, std::vector<int>> by_text_;
  std::size_t looked_at_ = 0;
};

}  // namespace

Meeting meeting(const Species& species) {
  Meeting found;
  found.species = species.size();
  for (int s = 1; s <= species.size(); ++s) {
    if (species.genes_of(s) > 1) {
      ++found.meeting;
    } else {
      found.single.push_back(s);
    }
  }
  return found;
}

std::vector<Lookalikes> lookalikes(const Species& species) {
  std::vector<Lookalikes> found;
  if (species.genes() < 2 || species.size() > most_species) return found;
  Table<std::string> letters;
  for (int s = 1; s <= species.size(); ++s) letters.append(plain_letters(plain_name(species.name()[s])));

  Pairs by_letters(species, found);
  for (int s = 1; s <= species.size(); ++s) {
    by_letters.look(Lookalikes::How::signs, letters[s], s, [](int) { return true; });
  }
  if (species.genes() < 3) return found;  // where nothing is rare

  Pairs by_genus(species, found), by_step(species, found);
  Table<char> shortened(species.size(), 0);
  for (int s = 1; s <= species.size(); ++s) {
    bool is_short = false;
    const std::string text = abbreviated(plain_name(species.name()[s]), is_short);
    shortened[s] = is_short ? 1 : 0;
    if (text.size() < shortest) continue;
    by_genus.look(Lookalikes::How::spelling, text, s, [&](int other) { return (shortened[other] == 1) != is_short; });
  }
  for (int s = 1; s <= species.size(); ++s) {
    const std::string& text = letters[s];
    if (text.size() < shortest) continue;
    const auto likely = [&](int other) { return one_step(letters[other], text); };
    by_step.look(Lookalikes::How::spelling, text, s, likely);
    for (std::size_t k = 0; k < text.size(); ++k) {  // without one letter, the two are the same
      if (is_digit(text[k]) || (k > 0 && text[k] == text[k - 1])) continue;
      by_step.look(Lookalikes::How::spelling, text.substr(0, k) + text.substr(k + 1), s, likely);
    }
  }
  return found;
}

void Identity::add(const std::string& path, const Table<std::string>& name) {
  std::vector<std::pair<int, std::string_view>> epithets;
  const bool binomial = rule_.style == KeyRule::Style::fields && rule_.last > rule_.first;  // the epithet is in the key
  for (int i = 1; i <= name.size() && !binomial; ++i) {
    const std::string_view plain = plain_name(name[i]);
    const std::string_view epithet = epithet_after(plain, stretch_of(plain, rule_));
    if (!epithet.empty()) epithets.emplace_back(i, epithet);
  }
  const bool locus = std::all_of(epithets.begin(), epithets.end(),
                                 [&](const auto& each) { return each.second == epithets.front().second; });
  for (const auto& [i, epithet] : epithets) {
    if (locus && epithets.size() > 1) break;  // the same after all keys
    const std::string_view plain = plain_name(name[i]);
    const auto [entry, fresh] =
        epithets_.try_emplace(key_of(plain, rule_), Seen{std::string(epithet), std::string(plain), path});
    Seen& seen = entry->second;
    if (fresh || seen.told || seen.epithet == epithet) continue;
    seen.told = true;
    merged_.push_back({entry->first, seen.name, seen.path, std::string(plain), path});
  }
  if (genes_++ % every_ != 0) return;
  if (sample_.size() == sample_genes) {  // of twice as many, every second one
    for (std::size_t k = 0; 2 * k < sample_.size(); ++k) sample_[k].swap(sample_[2 * k]);
    sample_.resize(sample_genes / 2);
    every_ *= 2;
  }
  Names& names = sample_.emplace_back();
  for (int i = 1; i <= name.size(); ++i) names.emplace_back(plain_name(name[i]));
}

std::string_view second_word(std::string_view name) {
  name = plain_name(name);
  return epithet_after(name, stretch_of(name, {}));
}

}  // namespace trimora::rooms
