#include "trimora_run/result_paths.h"

#include <algorithm>
#include <string_view>

#include "output/columns.h"
#include "output/file_names.h"
#include "output/forms.h"
#include "output/results.h"

namespace trimora::rooms {

namespace {

std::vector<std::string> in_forms(const std::string& path, const Settings& settings) {
  std::vector<std::string> paths;
  for (const Form form : settings.forms) paths.push_back(path + std::string(ending(form)));
  return paths;
}

/// Whether names may have to change to fit the forms that are written.
bool changes_names(const Settings& settings) {
  return std::any_of(settings.forms.begin(), settings.forms.end(), [](Form form) { return form != Form::trimora; });
}

constexpr Joined every_joined[] = {Joined::blocks, Joined::input, Joined::ungapped, Joined::codons};

}  // namespace

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
  if (writes_kept(settings) && plan.batch && settings.concatenates()) all.push_back(kept_path(plan));
  if (settings.filters()) all.push_back(left_out_path(plan));
  return all;
}

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
  run.form = ending(settings.forms.front());
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

std::string report_path(const Job& job, const Settings& settings) {
  return settings.report == Report::none ? "" : viewfile(output_state(settings, job.stem));
}

std::string codons_path(const OutputState& run) {
  return seqfile(run) + ".codons";
}

std::string blocks_path(const OutputState& run, const Settings& settings) {
  return seqfile(run) + std::string(ending(settings.forms.front()));
}

std::string source_of(const std::string& path, const Settings& settings) {
  std::string_view stem = path;
  for (const std::string_view ending : {".gz", ".fasta", ".phy", ".nexus", ".codons"}) {
    if (stem.ends_with(ending)) stem.remove_suffix(ending.size());
  }
  for (const std::string_view ending : {std::string_view(settings.suffix), std::string_view("--")}) {
    if (stem.ends_with(ending)) return std::string(stem.substr(0, stem.size() - ending.size()));
  }
  return path;
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

}  // namespace trimora::rooms
