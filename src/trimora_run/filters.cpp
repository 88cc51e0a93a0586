#include "trimora_run/filters.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "batch/counts.h"
#include "ground/failure.h"
#include "input/letters.h"
#include "input/lines.h"
#include "input/read.h"
#include "input/words.h"
#include "output/forms.h"
#include "trimora_run/words.h"

namespace trimora::rooms {

namespace {

const KeyRule one_key = {.end = "\n"};  // of a name that is nothing but a key

/// Keep the sequences `rows` in this order.
void keep(Reading& reading, Chosen& chosen, const std::vector<int>& rows) {
  std::vector<std::string> new_names;
  std::vector<char> letters;
  letters.reserve(rows.size() * static_cast<std::size_t>(reading.nupo));
  Table<std::string> names, keys;
  for (const int i : rows) {
    new_names.push_back(std::move(reading.names[static_cast<std::size_t>(i) - 1]));
    letters.insert(letters.end(), reading.row(i), reading.row(i) + reading.nupo);
    names.append(std::move(chosen.names[i]));
    keys.append(std::move(chosen.keys[i]));
  }
  reading.names = std::move(new_names);
  reading.letters = std::move(letters);
  chosen.names = std::move(names);
  chosen.keys = std::move(keys);
}

/// Whether `number` is enough: as many as `least`, or that share of `total`.
bool enough(long long number, const Sequences& least, long long total) {
  return least.percent ? at_least(number, least.number, total) : number >= least.number;
}

std::string asked(const Sequences& least) {
  return std::to_string(least.number) + (least.percent ? " %" : "");
}

}  // namespace

Filters::Filters(const Settings& settings, const Plan& plan) : settings_(settings) {
  if (!settings.species.empty()) read_list();
  if (settings.min_species && settings.min_species->percent) species_ = count_species(plan);
}

void Filters::read_list() {
  Input input(settings_.species);
  int place = 0;
  for (std::string_view line; input.line(line);) {
    line = trimmed(line);
    if (line.empty() || line.starts_with('#')) continue;
    const std::size_t end = line.find('\t');
    const std::string key = key_of(line.substr(0, end), one_key);
    std::string name(end == line.npos ? std::string_view() : trimmed(line.substr(end)));
    const auto [entry, fresh] = list_.try_emplace(key, Listed{place + 1, name});
    if (!fresh && entry->second.name == name) continue;
    if (!fresh) {
      throw Failure{.kind = Failure::Kind::bad_argument,
                    .file = settings_.species,
                    .detail = filled(words_of_run::listed_otherwise, {key})};
    }
    ++place;
    const std::string becomes = name.empty() ? key : key_of(name, one_key);
    const bool alone = places_.emplace(becomes, place).second;
    if (!alone && std::find(united_.begin(), united_.end(), becomes) == united_.end()) united_.push_back(becomes);
  }
  if (place == 0) throw Failure{.kind = Failure::Kind::empty, .file = settings_.species, .detail = "lists no species"};
}

long long Filters::count_species(const Plan& plan) const {
  std::unordered_set<std::string> all;
  for (const Job& job : plan.jobs) {
    try {
      std::vector<std::string> names = read_job(job, settings_).names;
      strip_turned(names);
      for (const std::string& name : names) {
        const std::string key = key_of(name, settings_.keys());
        const auto listed = list_.find(key);
        if (list_.empty()) {
          all.insert(key);
        } else if (listed != list_.end()) {
          all.insert(listed->second.name.empty() ? key : key_of(listed->second.name, one_key));
        }
      }
    } catch (const Failure&) {  // reported when the run comes to this alignment
    }
  }
  return static_cast<long long>(all.size());
}

Chosen Filters::choose(Reading& reading, char seq_type) const {
  Chosen chosen;
  for (const std::string& name : reading.names) {
    chosen.names.append(name);
    chosen.keys.append(key_of(name, settings_.keys()));
  }
  if (!list_.empty()) choose_listed(reading, chosen);
  if (settings_.min_filled) choose_filled(reading, chosen, seq_type);
  return chosen;
}

void Filters::choose_listed(Reading& reading, Chosen& chosen) const {
  std::vector<std::pair<int, int>> rows;  // place in the list, row
  for (int i = 1; i <= chosen.keys.size(); ++i) {
    const auto listed = list_.find(chosen.keys[i]);
    if (listed == list_.end()) {
      chosen.left_out.push_back({"--species", "sequence", std::string(plain_name(chosen.names[i])), "not listed"});
      continue;
    }
    chosen.listed.push_back(listed->second.place);
    rows.emplace_back(listed->second.place, i);
    if (listed->second.name.empty()) continue;
    reading.names[static_cast<std::size_t>(i) - 1] = listed->second.name;
    chosen.keys[i] = key_of(listed->second.name, one_key);
  }
  std::sort(rows.begin(), rows.end());
  std::vector<int> order;
  order.reserve(rows.size());
  for (const auto& [place, i] : rows) order.push_back(i);
  keep(reading, chosen, order);
}

void Filters::choose_filled(Reading& reading, Chosen& chosen, char seq_type) const {
  if (reading.numseq() == 0) return;
  std::vector<long long> letters;
  for (int i = 1; i <= reading.numseq(); ++i) {
    letters.push_back(count(Row(reading.row(i), reading.nupo), {{1, reading.nupo}}, seq_type).letters);
  }
  std::vector<long long> sorted = letters;
  std::sort(sorted.begin(), sorted.end());
  const std::size_t n = sorted.size();
  const long long twice_median = sorted[(n - 1) / 2] + sorted[n / 2];
  std::vector<int> rows;
  for (int i = 1; i <= reading.numseq(); ++i) {
    const long long own = letters[static_cast<std::size_t>(i) - 1];
    if (at_least(2 * own, *settings_.min_filled, twice_median)) {
      rows.push_back(i);
      continue;
    }
    chosen.left_out.push_back({"--min-filled", "sequence", std::string(plain_name(chosen.names[i])),
                               std::to_string(own) + " letters, the median is " + std::to_string(twice_median / 2) +
                                   (twice_median % 2 == 1 ? ".5" : "")});
  }
  if (rows.size() < n) keep(reading, chosen, rows);
}

std::string Filters::few_species(int species) const {
  if (settings_.min_species && !enough(species, *settings_.min_species, species_)) {
    const std::string of = settings_.min_species->percent ? " of " + std::to_string(species_) : "";
    return std::to_string(species) + of + " species, --min-species asks for " + asked(*settings_.min_species);
  }
  return "";
}

std::string Filters::few_columns(int columns) const {
  if (columns >= settings_.min_columns) return "";
  return std::to_string(columns) + " columns, --min-columns asks for " + std::to_string(settings_.min_columns);
}

std::vector<int> Filters::species_kept(const Species& species, int genes, std::vector<LeftOut>& left_out) const {
  std::vector<int> kept;
  for (int s = 1; s <= species.size(); ++s) {
    if (!settings_.min_genes || enough(species.genes_of(s), *settings_.min_genes, genes)) {
      kept.push_back(s);
      continue;
    }
    left_out.push_back({"--min-genes", "species", std::string(plain_name(species.name()[s])),
                        "in " + std::to_string(species.genes_of(s)) + " of " + std::to_string(genes) + " alignments"});
  }
  if (!places_.empty()) {
    const auto place = [&](int s) { return places_.at(std::string(plain_name(species.name()[s]))); };
    std::stable_sort(kept.begin(), kept.end(), [&](int a, int b) { return place(a) < place(b); });
  }
  return kept;
}

std::vector<std::string> Filters::listed_in_vain(const std::unordered_set<int>& found) const {
  std::vector<std::pair<int, std::string>> missing;
  for (const auto& [key, listed] : list_) {
    if (!found.contains(listed.place)) missing.emplace_back(listed.place, key);
  }
  std::sort(missing.begin(), missing.end());
  std::vector<std::string> names;
  names.reserve(missing.size());
  for (auto& [place, name] : missing) names.push_back(std::move(name));
  return names;
}

void write_left_out_header(OutputFile& out) {
  out.put("filter\twhat\talignment\tname\treason\n");
}

void write_left_out(OutputFile& out, const std::string& alignment, const LeftOut& left_out) {
  const auto field = [&](std::string value, char end) {
    std::replace_if(
        value.begin(), value.end(), [](char c) { return c == '\t' || c == '\n' || c == '\r'; }, ' ');
    out.put(value += end);
  };
  field(std::string(left_out.option), '\t');
  field(std::string(left_out.what), '\t');
  field(alignment, '\t');
  field(left_out.name, '\t');
  field(left_out.reason, '\n');
}

namespace {

/// The names of a file that holds nothing else; none when it does.
std::vector<std::string> names_alone(const std::string& path) {
  std::vector<std::string> names;
  Input input(path);
  for (std::string_view line; input.line(line);) {
    if (trimmed(line).empty()) continue;
    if (!line.starts_with('>')) return {};
    names.emplace_back(plain_name(line.substr(1)));
  }
  return names;
}

}  // namespace

Reading read_job(const Job& job, const Settings& settings) {
  if (job.path == "-") return Input::standard_input().read();
  try {
    return read(job.path, settings.join);
  } catch (const Failure& failure) {
    if (!settings.join || failure.kind != Failure::Kind::unfinished_record) throw;
  }
  Reading reading;
  reading.format = "FASTA";
  reading.names = names_alone(job.path);
  return reading.names.empty() ? read(job.path) : reading;
}

int strip_turned(std::vector<std::string>& names) {
  constexpr std::string_view mark = "_R_";
  int number = 0;
  for (std::string& name : names) {
    if (!name.starts_with(mark)) continue;
    name.erase(0, mark.size());
    ++number;
  }
  return number;
}

}  // namespace trimora::rooms
