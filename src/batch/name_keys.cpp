#include "batch/name_keys.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <unordered_set>

#include "input/letters.h"
#include "output/forms.h"  // plain_name

namespace trimora::rooms {

namespace {

constexpr std::string_view word_ends = " \t\v\f\r";
constexpr std::string_view between_fields = "_| \t";
constexpr std::string_view between_words = "_| \t/@:;,=#~()[]{}";

bool all_digits(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), is_digit);
}

std::string_view fields(std::string_view name, int first, int last) {
  const char* begin = nullptr;
  std::size_t at = name.find_first_not_of(between_fields);
  for (int field = 1; at != name.npos; ++field) {
    const std::size_t end = std::min(name.find_first_of(between_fields, at), name.size());
    if (field == first) begin = name.data() + at;
    if (field == last) return {begin, static_cast<std::size_t>(name.data() + end - begin)};
    at = name.find_first_not_of(between_fields, end);
  }
  return {};
}

std::string_view organism(std::string_view name) {
  const std::size_t at = name.find("OS=");
  if (at == name.npos || (at > 0 && name[at - 1] != ' ')) return {};
  name.remove_prefix(at + 3);
  const std::size_t equals = name.find('=');  // of the next such word
  if (equals != name.npos) {
    const std::size_t blank = name.rfind(' ', equals);
    name = name.substr(0, blank == name.npos ? 0 : blank);
  }
  return plain_name(name);
}

std::string_view brackets(std::string_view name) {
  const std::size_t open = name.rfind('[');
  const std::size_t close = name.rfind(']');
  if (open == name.npos || close == name.npos || close < open) return {};
  return plain_name(name.substr(open + 1, close - open - 1));
}

std::string_view letters(std::string_view name) {
  const std::size_t end = name.find_first_of("0123456789");
  if (end == name.npos || !std::all_of(name.begin(), name.begin() + static_cast<std::ptrdiff_t>(end), is_letter)) {
    return {};
  }
  return name.substr(0, end);
}

}  // namespace

std::string_view stretch_of(std::string_view name, const KeyRule& rule) {
  name = plain_name(name);
  switch (rule.style) {
    case KeyRule::Style::word: break;
    case KeyRule::Style::fields: return fields(name, rule.first, rule.last);
    case KeyRule::Style::organism: return organism(name);
    case KeyRule::Style::brackets: return brackets(name);
    case KeyRule::Style::letters: return letters(name);
  }
  if (!rule.begin.empty()) {
    const std::size_t begin = name.find_first_of(rule.begin);
    if (begin != name.npos) name = plain_name(name.substr(begin + 1));
  }
  const std::size_t end = name.find_first_of(rule.end.empty() ? word_ends : rule.end);
  return plain_name(name.substr(0, std::min(end, name.size())));
}

std::string key_of(std::string_view name, const KeyRule& rule) {
  const std::string_view ends = rule.style == KeyRule::Style::fields ? between_fields : word_ends;
  std::string key;
  bool between = false;
  for (const char c : stretch_of(name, rule)) {
    if (ends.find(c) != ends.npos) {
      between = true;
      continue;
    }
    if (between) key += '_';
    between = false;
    key += c;
  }
  return key;
}

bool like_epithet(std::string_view word) {
  return word.size() >= 3 && std::all_of(word.begin(), word.end(), [](char c) { return c >= 'a' && c <= 'z'; });
}

std::string_view epithet_after(std::string_view name, std::string_view key) {
  name = plain_name(name);
  const auto end = static_cast<std::size_t>(key.data() + key.size() - name.data());
  if (key.empty() || end + 1 >= name.size() || (name[end] != '_' && name[end] != ' ')) return {};
  name.remove_prefix(end + 1);
  const std::string_view word = name.substr(0, name.find_first_of("_| \t/@:;,=#~.-()[]{}"));
  return like_epithet(word) ? word : std::string_view();
}

std::string options_for(const KeyRule& rule) {
  switch (rule.style) {
    case KeyRule::Style::word: break;
    case KeyRule::Style::fields:
      return "--name-parts=" + std::to_string(rule.first) +
             (rule.last == rule.first ? "" : '-' + std::to_string(rule.last));
    case KeyRule::Style::organism: return "--name-parts=OS";
    case KeyRule::Style::brackets: return "--name-parts=brackets";
    case KeyRule::Style::letters: return "--name-parts=letters";
  }
  std::string text;
  if (!rule.begin.empty()) text = "--name-begin='" + rule.begin + "'";
  if (!rule.end.empty()) text += (text.empty() ? "--name-end='" : " --name-end='") + rule.end + "'";
  return text;
}

// ---- Proposals

namespace {

/// All rules that are tried, those that are easier to understand first.
std::vector<KeyRule> rules_to_try() {
  using Style = KeyRule::Style;
  std::vector<KeyRule> rules;
  const auto add = [&](KeyRule rule) { rules.push_back(std::move(rule)); };
  for (const Style style : {Style::organism, Style::brackets, Style::letters}) add({.style = style});
  for (const char end : std::string_view("|/@:;,=#~([{_-.")) add({.end = std::string(1, end)});
  for (const char begin : std::string_view("|_@:/-.")) add({.begin = std::string(1, begin)});
  for (const char begin : std::string_view("|_@:/")) {
    for (const char end : std::string_view("|/@:_")) {
      add({.begin = std::string(1, begin), .end = std::string(1, end)});
    }
  }
  constexpr int most_fields = 8;
  for (int first = 1; first <= most_fields; ++first) {
    for (int last = most_fields; last >= first; --last) {
      add({.style = Style::fields, .first = first, .last = last});
    }
  }
  return rules;
}

/// A stretch of a name.
struct Span {
  std::size_t first = 0, last = 0;  // last: one past the end
  bool in(const Span& other) const { return first >= other.first && last <= other.last; }
  bool meets(const Span& other) const { return first < other.last && other.first < last; }
};

/// Whether text begins with the accession of a reference sequence, as XP_012345.
bool accession_at(std::string_view text) {
  const auto big = [](char c) { return c >= 'A' && c <= 'Z'; };
  return text.size() >= 6 && big(text[0]) && big(text[1]) && text[2] == '_' && all_digits(text.substr(3, 3));
}

/// The first word of what follows a key, accessions in one piece; ranges of positions, as "1-456", are no words.
std::string_view word_after(std::string_view rest) {
  const std::size_t begin = rest.find_first_not_of(between_words);
  if (begin == rest.npos) return {};
  rest.remove_prefix(begin);
  const std::string_view word = rest.substr(0, rest.find_first_of(between_words, accession_at(rest) ? 3 : 0));
  const std::size_t dash = std::min(word.find('-'), word.size() - 1);
  return all_digits(word.substr(0, dash)) && all_digits(word.substr(dash + 1)) ? std::string_view() : word;
}

/// The last word of what is before a key.
std::string_view word_before(std::string_view rest) {
  const std::size_t end = rest.find_last_not_of(between_words);
  if (end == rest.npos) return {};
  rest = rest.substr(0, end + 1);
  std::size_t begin = rest.find_last_of(between_words);
  // The number of an accession goes with its letters.
  if (begin != rest.npos && begin >= 2 && rest[begin] == '_' && accession_at(rest.substr(begin - 2))) begin -= 3;
  return begin == rest.npos ? rest : rest.substr(begin + 1);
}

bool splits_accession(std::string_view name, const Span& key) {
  const auto begins = [&](std::size_t at) {
    return (at == 0 || between_words.find(name[at - 1]) != between_words.npos) && accession_at(name.substr(at));
  };
  return (key.last >= key.first + 2 && begins(key.last - 2)) || (key.first >= 3 && begins(key.first - 3));
}

/// A rule that can be proposed brings one of so many names together, or more.
constexpr int fewest_meeting = 6;

/// How the names of a batch fare under one rule.
class Trial {
 public:
  Trial(const std::vector<Names>& genes, KeyRule rule) : genes_(genes), rule_(std::move(rule)) {}

  /// Whether the rule can be proposed.
  bool holds() { return find_keys() && (rule_.style > KeyRule::Style::fields || (edges_vary() && rests_go())); }

  const KeyRule& rule() const { return rule_; }
  const std::vector<Span>& spans() const { return spans_; }
  /// Whether a larger share of the keys is in two genes or more than under `other`.
  bool meets_more(const Trial& other) const {
    return static_cast<long long>(meeting_) * other.keys_ > static_cast<long long>(other.meeting_) * keys_;
  }
  /// The rule, with the first name that it changes.
  Proposal proposal() const {
    const std::string* example = &genes_[0][0];
    for (const Names& gene : genes_) {
      const auto changed = std::find_if(gene.begin(), gene.end(), [&](const std::string& name) {
        return key_of(name, rule_) != key_of(name, KeyRule());
      });
      if (changed == gene.end()) continue;
      example = &*changed;
      break;
    }
    return {rule_, *example, key_of(*example, rule_), keys_, meeting_};
  }

 private:
  bool find_keys() {
    std::unordered_map<std::string, std::pair<std::size_t, int>> genes_of;  // the last one, and how many
    for (std::size_t g = 0; g < genes_.size(); ++g) {
      for (const std::string& name : genes_[g]) {
        const std::string_view key = stretch_of(name, rule_);
        if (key.empty()) return false;
        const Span span = {static_cast<std::size_t>(key.data() - name.data()),
                           static_cast<std::size_t>(key.data() - name.data()) + key.size()};
        if (splits_accession(name, span)) return false;
        spans_.push_back(span);
        const auto [entry, fresh] = genes_of.try_emplace(key_of(name, rule_), g, 1);
        if (fresh) continue;
        if (entry->second.first == g) return false;
        entry->second = {g, entry->second.second + 1};
      }
    }
    keys_ = static_cast<int>(genes_of.size());
    meeting_ = static_cast<int>(
        std::count_if(genes_of.begin(), genes_of.end(), [](const auto& entry) { return entry.second.second > 1; }));
    return meeting_ >= 2 && meeting_ * fewest_meeting >= keys_;
  }

  /// Call `visit(gene, name, span)` for each name.
  template <typename Visit>
  void each(Visit visit) const {
    std::size_t k = 0;
    for (std::size_t g = 0; g < genes_.size(); ++g) {
      for (const std::string& name : genes_[g]) visit(g, std::string_view(name), spans_[k++]);
    }
  }

  /// Whether neither the first nor the last word of the keys is the same everywhere, so that it tells nothing.
  bool edges_vary() const {
    std::optional<std::string_view> first, last;
    bool same_first = true, same_last = true;
    each([&](std::size_t, std::string_view name, const Span& span) {
      const std::string_view key = name.substr(span.first, span.last - span.first);
      const std::string_view head = word_after(key), tail = word_before(key);
      same_first = same_first && first.value_or(head) == head;
      same_last = same_last && last.value_or(tail) == tail;
      first = head;
      last = tail;
    });
    return !same_first && !same_last;
  }

  /// Whether what is cut off beside the keys, after and before them, is the same in a whole gene or new in each.
  bool rests_go() const {
    const auto after = [](std::string_view name, const Span& span) { return word_after(name.substr(span.last)); };
    const auto before = [](std::string_view name, const Span& span) { return word_before(name.substr(0, span.first)); };
    return rests_go(after, true) && rests_go(before, false);
  }

  template <typename WordBeside>
  bool rests_go(WordBeside beside, bool epithets) const {
    std::vector<std::optional<std::string_view>> of_gene(genes_.size());
    std::vector<bool> varies(genes_.size(), false);
    each([&](std::size_t g, std::string_view name, const Span& span) {
      const std::string_view word = beside(name, span);
      if (of_gene[g].value_or(word) != word) varies[g] = true;
      of_gene[g] = word;
    });
    std::unordered_set<std::string> seen;
    bool go = true;
    each([&](std::size_t g, std::string_view name, const Span& span) {
      if (!go || !varies[g]) return;
      const std::string_view word = beside(name, span);
      if (word.empty()) return;
      const std::string_view key = name.substr(span.first, span.last - span.first);
      go = seen.insert(std::string(key) + '\n' + std::string(word)).second &&
           !(epithets && !epithet_after(name, key).empty());
    });
    return go;
  }

  const std::vector<Names>& genes_;
  KeyRule rule_;
  std::vector<Span> spans_;  // of all names, one gene after the other
  int keys_ = 0;
  int meeting_ = 0;
};

/// Whether every key of `a` is in that of `b`, or when `touch` is set, shares a letter with it.
bool covered(const Trial& a, const Trial& b, bool touch) {
  for (std::size_t k = 0; k < a.spans().size(); ++k) {
    if (touch ? !a.spans()[k].meets(b.spans()[k]) : !a.spans()[k].in(b.spans()[k])) return false;
  }
  return true;
}

}  // namespace

std::vector<Proposal> proposals(const std::vector<Names>& genes) {
  std::vector<Proposal> found;
  if (genes.size() < 2 || genes[0].empty()) return found;
  std::vector<Trial> trials;
  for (KeyRule& rule : rules_to_try()) {
    Trial trial(genes, std::move(rule));
    if (trial.holds()) trials.push_back(std::move(trial));
  }
  // Where the name itself says what a part of it is, other rules do not cut across that part.
  const auto said = [](const Trial& trial) { return trial.rule().style > KeyRule::Style::fields; };
  const auto crosses = [&](const Trial& trial) {
    return !said(trial) && std::any_of(trials.begin(), trials.end(),
                                       [&](const Trial& other) { return said(other) && covered(trial, other, true); });
  };
  std::vector<const Trial*> left;
  for (const Trial& trial : trials) {
    if (!crosses(trial)) left.push_back(&trial);
  }
  for (const Trial* trial : left) {
    // Of a key and a longer one the longer stays, unless it takes so much more that fewer of them meet. Of two that are
    // as long, the first one stays.
    const auto better = [&](const Trial* other) {
      if (other == trial) return false;
      const bool in = covered(*trial, *other, false), around = covered(*other, *trial, false);
      if (in && around) return other < trial;
      return (in && !trial->meets_more(*other)) || (around && other->meets_more(*trial));
    };
    if (std::none_of(left.begin(), left.end(), better)) found.push_back(trial->proposal());
  }
  return found;
}

}  // namespace trimora::rooms
