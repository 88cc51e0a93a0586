#include "trimora_run/plan.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <system_error>
#include <unordered_map>

#include "ground/failure.h"
#include "ground/path.h"
#include "ground/places.h"
#include "ground/system_path.h"
#include "input/read.h"
#include "input/words.h"
#include "output/columns.h"
#include "output/file_names.h"
#include "output/results.h"
#include "trimora_run/wildcards.h"
#include "trimora_run/words.h"

namespace trimora::rooms {

namespace fs = std::filesystem;

namespace {

bool exists(const std::string& path) {
  std::error_code unknown;
  return fs::exists(system_path(path), unknown);
}

/// Whether it can be opened twice. A missing path counts as a file.
bool is_file(const std::string& path) {
  std::error_code unknown;
  const fs::file_type type = fs::status(system_path(path), unknown).type();
  return type == fs::file_type::regular || type == fs::file_type::not_found || type == fs::file_type::none;
}

bool is_folder(const std::string& path) {
  std::error_code unknown;
  return fs::is_directory(system_path(path), unknown);
}

std::string count(std::size_t number, const char* noun) {
  return std::to_string(number) + ' ' + noun + (number == 1 ? "" : "s");
}

std::string in_folder(const std::string& folder, const std::string& name) {
  if (folder.empty()) return name;
  return folder + (getpath(folder).name_file.empty() ? "" : "/") + name;
}

/// The path that results begin with: that of the alignment, without ".gz", in the folder of --into when there is one.
std::string stem_of(std::string path, const Settings& settings) {
  if (path.size() > 3 && path.ends_with(".gz")) path.resize(path.size() - 3);
  return settings.into.empty() ? path : in_folder(settings.into, getpath(path).name_file);
}

// ---- The alignments

/// What the files that were named hold.
struct Named {
  std::vector<std::string> paths;
  std::vector<std::string> decided;
  std::optional<std::string> list;  // the one file that was named is a list
  bool several = false;             // several files, or a folder
};

/// The path in a line of a list: as it is, below the home folder, or counted from the folder of the list.
std::string listed_path(std::string_view line, const std::string& list, std::size_t& from_list) {
  std::string path = in_utf8(std::string(trimmed(line)));
  if (path.starts_with("~/")) {
    const char* home = std::getenv("HOME");
    if (home == nullptr) home = std::getenv("USERPROFILE");  // on Windows
    if (home != nullptr) path.replace(0, 1, home);
  }
  if (exists(path)) return path;
  const std::string beside = in_folder(getpath(list).path_file, path);
  if (beside == path || !exists(beside)) return path;
  ++from_list;
  return beside;
}

bool is_comment(std::string_view line) {
  return line.empty() || line.starts_with('#');
}

/// The paths in a list: one a line; comments and empty lines do not count. Nothing when the file is no list: its first
/// line names no file.
std::optional<Named> read_list(const std::string& list) {
  Input input(list);
  if (input.format() != nullptr) return std::nullopt;
  Named named;
  std::size_t from_list = 0;
  for (std::string_view line; input.line(line);) {
    if (is_comment(trimmed(line))) continue;
    named.paths.push_back(listed_path(line, list, from_list));
    if (named.paths.size() == 1 && !exists(named.paths.front())) return std::nullopt;
  }
  if (named.paths.empty()) return std::nullopt;
  named.list = list;
  if (from_list > 0) named.decided.push_back(count(from_list, "path") + " counted from the folder of the list");
  return named;
}

/// The alignments in a folder, in bytewise order: no subfolders, no hidden files.
void add_folder(const std::string& folder, Named& named) {
  std::vector<std::string> names;
  std::error_code error;
  for (fs::directory_iterator entry(system_path(folder), error), end; !error && entry != end; entry.increment(error)) {
    std::error_code unknown;
    const std::string name = plain_path(entry->path().filename());
    if (entry->is_regular_file(unknown) && !name.starts_with('.')) names.push_back(name);
  }
  if (error) throw Failure{.kind = Failure::Kind::not_readable, .file = folder, .error = error.value()};
  std::sort(names.begin(), names.end());
  std::vector<std::string> skipped;
  for (const std::string& name : names) {
    const std::string path = in_folder(folder, name);
    bool alignment = false;
    try {
      const InputFormat* format = Input(path).format();
      alignment = format != nullptr && format->read != nullptr;
    } catch (const Failure&) {
    }
    if (alignment) {
      named.paths.push_back(path);
    } else {
      skipped.push_back(name);
    }
  }
  if (skipped.empty()) return;
  named.decided.push_back(folder + ": " + count(skipped.size(), "file") + " skipped as no alignment, the first is " +
                          skipped.front());
}

Named named_files(const Settings& settings) {
  if (settings.files.size() == 1 && !is_folder(settings.files.front())) {
    const std::string& file = settings.files.front();
    if (file != "-" && is_file(file)) {
      if (auto list = read_list(file)) return *list;
    }
    Named one;
    one.paths = {file};
    return one;
  }
  Named named;
  named.several = true;
  for (const std::string& file : settings.files) {
    if (is_folder(file)) {
      add_folder(file, named);
    } else {
      named.paths.push_back(file);
    }
  }
  return named;
}

// ---- The coding sequences

/// The name of a file up to its first dot.
std::string first_name(const std::string& path) {
  const std::string name = getpath(path).name_file;
  return name.substr(0, name.find('.'));
}

/// The files of a folder, a list, or the one file.
std::vector<std::string> coding_files(const std::string& path, bool& list) {
  list = false;
  if (is_folder(path)) {
    std::vector<std::string> files;
    std::error_code error;
    for (fs::directory_iterator entry(system_path(path), error), end; !error && entry != end; entry.increment(error)) {
      std::error_code unknown;
      const std::string name = plain_path(entry->path().filename());
      if (entry->is_regular_file(unknown) && !name.starts_with('.')) files.push_back(in_folder(path, name));
    }
    if (error) throw Failure{.kind = Failure::Kind::not_readable, .file = path, .error = error.value()};
    std::sort(files.begin(), files.end());
    return files;
  }
  if (auto named = read_list(path)) {
    list = true;
    return named->paths;
  }
  return {path};
}

/// Find the coding sequences of each alignment: by name up to the first dot; by order where that finds none and both are
/// lists; the one file for the one alignment.
void find_coding(Plan& plan, const Settings& settings, bool from_list) {
  bool list = false;
  const std::vector<std::string> files = coding_files(settings.codons, list);
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

// ---- The results

std::vector<std::string> in_forms(const std::string& path, const Settings& settings) {
  std::vector<std::string> paths;
  for (const Form form : settings.forms) paths.push_back(path + std::string(ending(form)));
  return paths;
}

/// Whether names may have to change to fit the forms that are written.
bool changes_names(const Settings& settings) {
  return std::any_of(settings.forms.begin(), settings.forms.end(), [](Form form) { return form != Form::trimora; });
}

/// The files that are written for one alignment.
std::vector<std::string> results_of(const Job& job, const Settings& settings) {
  std::vector<std::string> all;
  const OutputState run = output_state(settings, job.stem);
  for (const Result& result : results()) {
    if (!result.wanted(run)) continue;
    if (result.positions == nullptr) {
      all.push_back(result.path(run));
    } else {
      for (std::string& path : in_forms(result.path(run), settings)) all.push_back(std::move(path));
    }
  }
  if (changes_names(settings)) all.push_back(names_path(job.stem));
  if (settings.columns) all.push_back(columns_file(run));
  if (!settings.codons.empty()) {
    for (std::string& path : in_forms(codons_path(run), settings)) all.push_back(std::move(path));
  }
  return all;
}

constexpr Joined every_joined[] = {Joined::blocks, Joined::input, Joined::ungapped, Joined::codons};

std::vector<std::string> joined_results(const Plan& plan, const Settings& settings) {
  std::vector<std::string> all;
  const Supermatrix::Choice choice = joined_choice(plan, settings);
  for (const Joined joined : every_joined) {
    if (!choice.joined[static_cast<std::size_t>(joined)]) continue;
    const std::string path = joined_path(plan, settings, joined);
    for (std::string& form : in_forms(path, settings)) all.push_back(std::move(form));
    if (changes_names(settings)) all.push_back(names_path(path));
    if (settings.partitions) all.insert(all.end(), {raxml_file(path), nexus_file(path)});
  }
  if (!settings.occupancy.empty()) all.push_back(settings.occupancy);
  if (writes_kept(settings) && plan.batch && settings.concatenates()) all.push_back(kept_path(plan));
  if (settings.filters()) all.push_back(left_out_path(plan));
  return all;
}

/// Whether `name` ends as the results of a run with this suffix do, in any form.
bool ends_like_result(std::string_view name, const Settings& settings) {
  for (const char* form : {".fasta", ".phy", ".nexus"}) {
    if (name.ends_with(form)) {
      name.remove_suffix(std::string_view(form).size());
      break;
    }
  }
  if (name.ends_with(".seq")) name.remove_suffix(4);
  for (const char* kind : {"", "Comp", "Mask", "PS", ".htm", ".txt", ".txts", ".columns.tsv"}) {
    if (name.ends_with(settings.suffix + kind)) return true;
  }
  return name.ends_with("--");
}

/// Leave our own results out of files that were named together: what this run would write, and what ends like a result.
void leave_out_results(Plan& plan, const Settings& settings) {
  Places places;
  std::unordered_map<std::string, bool> written;
  for (const Job& job : plan.jobs) {
    for (const std::string& result : results_of(job, settings)) written.emplace(places.of(result), true);
  }
  for (const std::string& result : joined_results(plan, settings)) written.emplace(places.of(result), true);
  const auto own = [&](const Job& job) {
    const bool like_result = !settings.join && ends_like_result(getpath(job.stem).name_file, settings);
    return like_result || written.contains(places.of(job.path));
  };
  const std::size_t left_out = std::erase_if(plan.jobs, own);
  if (left_out > 0) plan.decided.push_back(count(left_out, "result") + " of an earlier run left out");
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
  if (!settings.species.empty()) inputs.try_emplace(places.of(settings.species), &settings.species);

  const std::string& file = settings.files.front();
  if (!settings.into.empty()) {
    std::unordered_map<std::string, const std::string*> stems;
    for (const Job& job : plan.jobs) {
      const auto [entry, fresh] = stems.try_emplace(job.stem, &job.path);
      if (!fresh) refuse(file, words_of_run::same_base_name, {*entry->second, job.path, settings.into});
    }
  }
  std::unordered_map<std::string, bool> written;
  const auto check = [&](const std::string& result) {
    const std::string place = places.of(result);
    if (const auto input = inputs.find(place); input != inputs.end()) {
      refuse(file, words_of_run::overwrites, {result, *input->second});
    }
    if (!written.emplace(place, true).second) refuse(file, words_of_run::written_twice, {result});
  };
  for (const Job& job : plan.jobs) {
    for (const std::string& result : results_of(job, settings)) check(result);
  }
  for (const std::string& result : joined_results(plan, settings)) check(result);
  if (!settings.table.empty() && settings.table != "-") check(settings.table);
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

OutputState output_state(const Settings& settings, const std::string& stem) {
  const auto toggle = [](bool on) { return static_cast<char>(on ? 1 : 0); };
  OutputState run;
  run.fichero1 = stem;
  run.tog_seqfile = toggle(settings.blocks);
  switch (settings.report) {
    case Report::html: run.tog_viewfile = html_report; break;
    case Report::text: run.tog_viewfile = text_report; break;
    case Report::brief: run.tog_viewfile = short_report; break;
    case Report::none: run.tog_viewfile = no_report; break;
  }
  run.tog_maskfile = toggle(settings.mask);
  run.tog_psfile = toggle(settings.map);
  run.tog_ncbfile = toggle(settings.nonconserved);
  run.tog_ungappedfile = toggle(settings.ungapped);
  run.exten = settings.suffix;
  run.breakcount = settings.line_length;
  run.escaped = true;
  return run;
}

std::string names_path(const std::string& path) {
  return path + ".names.tsv";
}

std::string left_out_path(const Plan& plan) {
  return plan.joined_stem + ".left_out.tsv";
}

std::string kept_path(const Plan& plan) {
  return plan.joined_stem + ".kept.txt";
}

bool writes_kept(const Settings& settings) {
  return settings.concatenates() && (settings.filters() || !settings.occupancy.empty());
}

std::string codons_path(const OutputState& run) {
  return seqfile(run) + ".codons";
}

std::string blocks_path(const OutputState& run, const Settings& settings) {
  return seqfile(run) + std::string(ending(settings.forms.front()));
}

std::string joined_path(const Plan& plan, const Settings& settings, Joined joined) {
  switch (joined) {
    case Joined::blocks: return plan.joined_stem + settings.suffix + ".seq";
    case Joined::input: return plan.joined_stem + ".seq";
    case Joined::ungapped: return plan.joined_stem + "--.seq";
    case Joined::codons: return plan.joined_stem + settings.suffix + ".codons.seq";
  }
  return {};
}

Supermatrix::Choice joined_choice(const Plan& plan, const Settings& settings) {
  Supermatrix::Choice choice;
  if (plan.batch) {
    choice.joined = {settings.all_blocks, settings.all_input, settings.all_ungapped,
                     settings.all_blocks && !settings.codons.empty()};
  }
  choice.by_name = settings.match == Match::name;
  return choice;
}

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
    if (!settings.into.empty() || is_file(job.path)) continue;
    throw Failure{.kind = Failure::Kind::not_writable, .file = job.path, .detail = std::string(words_of_run::no_place)};
  }

  if (named.several) leave_out_results(plan, settings);
  if (plan.jobs.empty()) {
    throw Failure{.kind = Failure::Kind::empty,
                  .file = settings.files.front(),
                  .detail = std::string(words_of_run::nothing_listed)};
  }
  if (!settings.codons.empty()) find_coding(plan, settings, named.list.has_value());
  check_results(plan, settings, named.list);
  make_folder(settings);
  return plan;
}

}  // namespace trimora::rooms
