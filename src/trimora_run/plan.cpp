#include "trimora_run/plan.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <unordered_map>
#include <unordered_set>

#include "ground/failure.h"
#include "ground/path.h"
#include "ground/places.h"
#include "ground/system_path.h"
#include "input/letters.h"
#include "trimora_run/inputs.h"
#include "trimora_run/result_paths.h"
#include "trimora_run/voice.h"
#include "trimora_run/words.h"

namespace trimora::rooms {

namespace fs = std::filesystem;

namespace {

/// The path that results begin with: that of the alignment, without ".gz", in the folder of --into when there is one.
std::string stem_of(std::string path, const Settings& settings) {
  if (path.size() > 3 && path.ends_with(".gz")) path.resize(path.size() - 3);
  return settings.into.empty() ? path : in_folder(settings.into, getpath(path).name_file);
}

// ---- The coding sequences

/// The name of a file up to its first dot.
std::string first_name(const std::string& path) {
  const std::string name = getpath(path).name_file;
  return name.substr(0, name.find('.'));
}

/// Find the coding sequences of each alignment: by name up to the first dot; by order where that finds none and both are
/// lists; the one file for the one alignment.
void find_coding(Plan& plan, const Settings& settings, bool from_list) {
  const auto [files, list] = coding_files(settings.codons);
  if (files.size() == 1 && plan.jobs.size() == 1) {
    plan.jobs[0].coding = files[0];
    return;
  }
  std::unordered_map<std::string, const std::string*> by_name;
  std::unordered_map<std::string, const std::string*> twice;
  for (const std::string& file : files) {
    const auto [entry, fresh] = by_name.try_emplace(first_name(file), &file);
    if (!fresh) twice.try_emplace(entry->first, &file);
  }
  bool any = false;
  for (Job& job : plan.jobs) {
    const auto found = by_name.find(first_name(job.path));
    if (found == by_name.end()) continue;
    any = true;
    if (const auto other = twice.find(found->first); other != twice.end()) {
      throw Failure{.kind = Failure::Kind::bad_argument,
                    .file = settings.codons,
                    .detail = filled(words_of_run::same_coding_name, {*found->second, *other->second})};
    }
    job.coding = *found->second;
  }
  if (any || !list || !from_list || files.size() != plan.jobs.size()) return;
  for (std::size_t k = 0; k < files.size(); ++k) plan.jobs[k].coding = files[k];
}

/// The name that a file was to have which a killed run has left unfinished.
std::string_view finished(std::string_view name) {
  const std::size_t stem = name.find_last_not_of("0123456789") + 1;
  return name.substr(0, stem).ends_with(".part") && stem < name.size() ? name.substr(0, stem - 5) : name;
}

/// Whether a suffix alone tells results from alignments: -tr does; with b, nd4.fasb may be an alignment beside nd4.fas.
bool tells_results(const std::string& suffix) {
  const char first = suffix.front();
  return static_cast<unsigned char>(first) < 0x80 && !is_letter(first) && !is_digit(first);
}

/// Whether `name` ends as the results of a run with this suffix do, in any form. What --join puts together does not count.
bool ends_like_result(std::string_view name, const Settings& settings) {
  if (name.ends_with(".seq.nex") || name.ends_with(".seq.partitions")) return true;
  const auto without = [&](std::string_view ending) {
    const bool ends = name.ends_with(ending);
    if (ends) name.remove_suffix(ending.size());
    return ends;
  };
  const bool in_form = without(".fasta") || without(".phy") || without(".nexus");
  const bool concatenation = without(".seq");
  without(".codons");
  if (in_form && concatenation) return true;
  const bool telling = tells_results(settings.suffix);
  if ((telling && name.ends_with(settings.suffix)) || name.ends_with("--")) return concatenation || !settings.join;
  if (!telling) return false;
  for (const char* kind : {"Comp", "Mask", "PS", ".htm", ".txt", ".txts", ".columns.tsv"}) {
    if (name.ends_with(settings.suffix + kind)) return true;
  }
  return false;
}

/// Leave our own results out of files that were named together, `others` among them, which are no alignments: what ends
/// like a result, the concatenations of this run, and its tables. A file that a result would reach through a link is an
/// input like any other.
void leave_out_results(Plan& plan, std::vector<std::string> others, const Settings& settings) {
  Places places;
  const auto identity = [&](const std::string& path) { return places.of(path) + '\n' + getpath(path).name_file; };
  std::unordered_set<std::string> written;
  for (const Job& job : plan.jobs) written.insert(identity(names_path(job.stem)));
  for (const std::string& result : joined_results(plan, settings)) written.insert(identity(result));
  const auto own = [&](const std::string& path) {
    const std::string name = getpath(stem_of(path, settings)).name_file;
    return ends_like_result(finished(name), settings) || written.contains(identity(std::string(finished(path))));
  };
  auto left_out = static_cast<long long>(std::erase_if(plan.jobs, [&](const Job& job) { return own(job.path); }));
  left_out += static_cast<long long>(std::erase_if(others, own));
  if (!others.empty()) {
    plan.decided.push_back(number_of(std::ssize(others), "file") + " skipped as no alignment, the first is " +
                           others.front());
  }
  if (left_out > 0) plan.decided.push_back(number_of(left_out, "result") + " of an earlier run left out");
}

[[noreturn]] void refuse(const std::string& file, std::string_view words,
                         std::initializer_list<std::string_view> values) {
  throw Failure{.kind = Failure::Kind::would_overwrite, .file = file, .detail = filled(words, values)};
}

/// Refuse a run whose results would be written over its inputs, or over each other.
void check_results(const Plan& plan, const Settings& settings, const std::optional<std::string>& list) {
  Places places;
  std::unordered_map<std::string, const std::string*> inputs;
  std::unordered_map<std::string, const std::string*> numbers;  // of files with several names
  for (const Job& job : plan.jobs) {
    const auto [input, fresh] = inputs.try_emplace(places.of(job.path), &job.path);
    if (!fresh) refuse(settings.files.front(), words_of_run::listed_twice, {*input->second, job.path});
    const std::string number = plan.batch && settings.concatenates() ? file_number(job.path) : "";
    if (number.empty()) continue;
    const auto [other, alone] = numbers.try_emplace(number, &job.path);
    if (!alone) refuse(settings.files.front(), words_of_run::listed_twice, {*other->second, job.path});
  }
  if (list) inputs.try_emplace(places.of(*list), &*list);
  for (const Job& job : plan.jobs) {
    if (!job.coding.empty()) inputs.try_emplace(places.of(job.coding), &job.coding);
  }
  for (const std::string* given : {&settings.species, &settings.codons, &settings.codon_names}) {
    if (!given->empty()) inputs.try_emplace(places.of(*given), given);
  }

  const std::string& file = settings.files.front();
  std::unordered_map<std::string, const std::string*> stems;
  for (const Job& job : plan.jobs) {
    const auto [entry, fresh] = stems.try_emplace(settings.join ? source_of(job.path, settings) : job.stem, &job.path);
    if (fresh) continue;
    if (settings.join) refuse(file, words_of_run::same_gene, {*entry->second, job.path});
    if (results_of(job, settings).empty()) continue;
    if (!settings.into.empty()) refuse(job.path, words_of_run::same_base_name, {*entry->second, settings.into});
    refuse(job.path, words_of_run::same_results, {*entry->second});
  }
  std::unordered_map<std::string, bool> written;
  const auto check = [&](const std::string& result) {
    const std::string place = places.of(result);
    if (const auto input = inputs.find(place); input != inputs.end()) {
      refuse(file, words_of_run::overwrites, {result, *input->second});
    }
    if (!written.emplace(place, true).second) refuse(file, words_of_run::written_twice, {result});
  };
  const auto check_named = [&](const std::string& result) {
    if (!result.empty()) check(result);
  };
  for (const Job& job : plan.jobs) {
    for (const std::string& result : results_of(job, settings)) check(result);
  }
  for (const std::string& result : joined_results(plan, settings)) check(result);
  if (settings.table != "-") check_named(settings.table);
  check_named(settings.occupancy);
  check_named(settings.overview);
}

void make_folder(const Settings& settings) {
  if (settings.into.empty()) return;
  std::error_code error;
  fs::create_directories(system_path(settings.into), error);
  if (!error) return;
  throw Failure{.kind = Failure::Kind::not_writable,
                .file = settings.files.front(),
                .detail = filled(words_of_run::no_folder, {settings.into, error.message()})};
}

}  // namespace

Plan plan_of(const Settings& settings) {
  const Named named = named_files(settings);
  Plan plan;
  plan.decided = named.decided;
  plan.batch = named.list || named.several || settings.concatenates();
  for (const std::string& path : named.paths) plan.jobs.push_back({path, stem_of(path, settings)});
  const std::string base = !settings.name.empty() ? settings.name
                           : named.several        ? "supermatrix"
                                                  : getpath(stem_of(settings.files.front(), settings)).name_file;
  const std::string folder = !settings.into.empty() ? settings.into
                             : named.several        ? ""
                                                    : getpath(settings.files.front()).path_file;
  plan.joined_stem = in_folder(folder, base);
  if (settings.filter()) return plan;
  for (const Job& job : plan.jobs) {
    std::error_code unknown;
    if (fs::is_directory(system_path(job.path), unknown)) {  // named in a list
      throw Failure{.kind = Failure::Kind::not_readable, .file = job.path, .error = EISDIR};
    }
    if (!settings.into.empty() || is_file(job.path)) continue;
    throw Failure{.kind = Failure::Kind::not_writable, .file = job.path, .detail = std::string(words_of_run::no_place)};
  }

  if (named.several) leave_out_results(plan, named.others, settings);
  if (plan.jobs.empty()) {
    const std::string_view why = named.paths.empty() ? words_of_run::nothing_listed : words_of_run::only_results;
    throw Failure{.kind = Failure::Kind::empty, .file = settings.files.front(), .detail = std::string(why)};
  }
  if (!settings.codons.empty()) find_coding(plan, settings, named.list.has_value());
  check_results(plan, settings, named.list);
  make_folder(settings);
  return plan;
}

}  // namespace trimora::rooms
