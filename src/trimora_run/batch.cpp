#include "trimora_run/batch.h"

#include <algorithm>
#include <utility>

#include "ground/path.h"
#include "ground/version.h"
#include "output/forms.h"
#include "trimora_run/interruption.h"
#include "trimora_run/notes.h"
#include "trimora_run/notes_on_batch.h"
#include "trimora_run/options.h"
#include "trimora_run/result_paths.h"
#include "trimora_run/words.h"

namespace trimora::rooms {

namespace {

/// "97.2 %", cut after the first digit.
std::string share_of(long long part, long long whole) {
  if (whole == 0) return "0 %";
  const long long tenths = part * 1000 / whole;
  return std::to_string(tenths / 10) + '.' + std::to_string(tenths % 10) + " %";
}

/// "Homo_sapiens (12.3 %), ...": the three with the smallest share of letters among those that are not complete.
std::string emptiest(std::vector<Filled> all) {
  constexpr std::size_t shown = 3;
  std::erase_if(all, [](const Filled& each) { return each.letters == each.cells; });
  const auto emptier = [](const Filled& a, const Filled& b) { return a.letters * b.cells < b.letters * a.cells; };
  std::stable_sort(all.begin(), all.end(), emptier);
  std::string text;
  for (std::size_t k = 0; k < std::min(shown, all.size()); ++k) {
    text += (k > 0 ? ", " : "") + all[k].name + " (" + share_of(all[k].letters, all[k].cells) + ")";
  }
  return text;
}

/// The value of a parameter as it was given, as the preset has it, or by default.
std::string value_of(const Option& option, const Settings& settings) {
  if (const std::string* word = settings.given_as(option.name)) return word->substr(word->find('=') + 1);
  const std::string begin = ' ' + std::string(option.name) + '=';
  const std::string preset = ' ' + std::string(settings.preset->stands_for) + ' ';
  const std::size_t at = preset.find(begin);
  if (at == preset.npos) return std::string(option.standard);
  const std::size_t first = at + begin.size();
  return preset.substr(first, preset.find(' ', first) - first);
}

}  // namespace

Batch::Batch(const Settings& settings, const Plan& plan, const Filters& filters)
    : settings_(settings),
      plan_(plan),
      filters_(filters),
      all_(joined_choice(plan, settings)),
      identity_(settings.keys()) {
  if (!settings.occupancy.empty()) cells_.emplace(settings.occupancy, &unfinished());
  if (!settings.overview.empty()) page_.emplace(settings.overview, &unfinished());
  if (!settings.filters() || settings.filter()) return;
  left_out_.emplace(left_out_path(plan), &unfinished());
  write_left_out_header(left_out_->out());
}

void Batch::left_out(const std::string& path, const LeftOut& each) {
  ++(each.what == "sequence" ? sequences_out_ : each.what == "alignment" ? alignments_out_ : species_out_);
  if (left_out_) write_left_out(left_out_->out(), path, each);
}

void Batch::leave_out(const Outcome& outcome) {
  for (const LeftOut& each : outcome.chosen.left_out) left_out(outcome.row.alignment, each);
  if (outcome.left_out) left_out(outcome.row.alignment, *outcome.left_out);
  listed_.insert(outcome.chosen.listed.begin(), outcome.chosen.listed.end());
}

void Batch::add(const Outcome& outcome) {
  const std::string& path = outcome.row.alignment;
  const Alignment& ali = outcome.ali;
  if (!all_.wanted()) return;
  const std::string gene = settings_.join ? source_of(path, settings_) : path;
  all_.add(gene, ali, outcome.chosen.keys, outcome.found, outcome.run.seq_type, outcome.codons);
  const int width = settings_.all_blocks  ? outcome.found.blocks.nupo3
                    : settings_.all_input ? ali.nupo
                                          : outcome.found.ungapped.nupoung;
  occupancy_.add(path, width, outcome.counts);
  if (settings_.match == Match::name) identity_.add(path, outcome.chosen.names);
  if (ali.numseq < 4) small_.push_back(path);
  const bool written = settings_.blocks && !settings_.join;
  kept_.push_back(written ? blocks_path(outcome.run, settings_) : path);
}

void Batch::complete(TableRow& row) const {
  if (!row.before) return;
  const bool by_name = settings_.match == Match::name && all_.wanted();
  const long long missing = by_name && row.status == TableRow::Status::ok ? all_.name().size() - row.species : 0;
  row.before->absent = missing * row.positions;
  row.after->absent = missing * (settings_.join ? row.positions : row.selected);
}

void Batch::note(const std::string& path, const std::string& words, Voice& voice) {
  notes_.push_back(path + ": " + words);
  voice.note(path, words);
}

void Batch::error(std::string_view words, Voice& voice) {
  notes_.emplace_back(words);
  voice.error(plan_.joined_stem, words);
}

void Batch::note_identity(Voice& voice) {
  if (settings_.match == Match::name) {
    for (const std::string& note : notes_on_identity(all_.species(), identity_, settings_)) {
      this->note(plan_.joined_stem, note, voice);
    }
  }
  if (!small_.empty()) {
    note(plan_.joined_stem,
         filled(words_of_run::small_genes, {number_of(std::ssize(small_), "alignment"), listed_names(small_)}), voice);
  }
}

void Batch::write_joined(const InputState& run, Voice& voice) {
  if (!all_.wanted()) return;
  if (all_.size() == 0) {
    if (alignments_out_ > 0) error(words_of_run::nothing_left, voice);
    return;
  }
  const bool by_name = settings_.match == Match::name;
  if (by_name) {
    const std::string apart = names_never_meet(all_.species(), identity_);
    if (!apart.empty()) return error(apart, voice);
  }
  note_identity(voice);

  std::vector<LeftOut> species_out;
  if (by_name) {
    chosen_ = filters_.species_kept(all_.species(), all_.size(), species_out);
  } else {
    for (int i = 1; i <= all_.name().size(); ++i) chosen_.push_back(i);
  }
  for (const LeftOut& each : species_out) left_out("", each);
  for (const int s : chosen_) name_.append(all_.name()[s]);
  if (chosen_.empty()) return error(words_of_run::nobody_left, voice);
  for (const Joined joined : {Joined::blocks, Joined::input, Joined::ungapped, Joined::codons}) {
    if (all_.wanted(joined)) write_one(joined, run, voice);
  }
  write_files_of_batch(voice);
  say_summary(voice);
}

void Batch::write_one(Joined joined, const InputState& first, Voice& voice) {
  InputState run = first;
  if (joined == Joined::codons) run.seq_type = 'C';
  const char seq_type = run.seq_type;
  const std::string path = joined_path(plan_, settings_, joined);
  Sheet sheet = all_.sheet(joined, chosen_, name_);
  if (settings_.unknown == Unknown::x) sheet = mapped(sheet, letters_written(settings_, seq_type));
  std::vector<std::string> written;
  std::vector<std::string> decided = {number_of(all_.size(), "alignment") + ", " + number_of(name_.size(), "sequence") +
                                      ", " + number_of(sheet.width, "position") + " put together"};
  write_forms(path, sheet, settings_.forms, run, names_path(path), decided, written);
  if (sheet.width > 0) {
    for (const std::string& note : notes_on_species(sheet, seq_type)) this->note(path, note, voice);
  }
  if (settings_.partitions) {
    const bool given = !settings_.model.empty() && joined != Joined::codons;
    const std::string model = given ? settings_.model : seq_type == 'P' ? "LG" : "DNA";
    const Division division = seq_type == 'C' ? settings_.division.value_or(Division::positions) : Division::genes;
    const Partitions& parts = all_.partitions(joined);
    write_result(raxml_file(path), [&](OutputFile& out) { parts.write_raxml(out, model, division); });
    write_result(nexus_file(path), [&](OutputFile& out) { parts.write_nexus(out, division); });
    written.insert(written.end(), {raxml_file(path), nexus_file(path)});
  }
  voice.account(joined_by(decided, "; ") + ": " + joined_by(written, ", "));
  files_.insert(files_.end(), written.begin(), written.end());
}

void Batch::write_files_of_batch(Voice& voice) {
  const RowOf row = [&](std::size_t gene, int species) { return all_.row(gene, species); };
  std::vector<std::string> written;
  if (cells_) {
    write_occupancy(cells_->out(), occupancy_, row, chosen_, all_.name());
    cells_->commit();
    written.push_back(settings_.occupancy);
  }
  if (writes_kept(settings_)) {
    write_result(kept_path(plan_), [&](OutputFile& out) {
      for (const std::string& path : kept_) out.put(path + '\n');
    });
    written.push_back(kept_path(plan_));
  }
  if (!written.empty()) voice.account("  also written: " + joined_by(written, ", "));
  files_.insert(files_.end(), written.begin(), written.end());
}

void Batch::say_summary(Voice& voice) const {
  const RowOf row = [&](std::size_t gene, int species) { return all_.row(gene, species); };
  const Summary all = summary(occupancy_, row, chosen_, all_.name());
  const Counts& c = all.counts;
  const long long cells = c.cells();
  const long long columns = chosen_.empty() ? 0 : cells / std::ssize(chosen_);
  voice.account("  " + number_of(std::ssize(all.genes), "alignment") + ", " +
                number_of(std::ssize(chosen_), "species") + ", " + number_of(columns, "column") + ": " +
                share_of(c.letters, cells) + " letters, " + share_of(c.unknown, cells) + " unknown, " +
                share_of(c.gaps, cells) + " gaps (" + share_of(c.end_gaps, cells) + " at the ends), " +
                share_of(c.absent, cells) + " absent; gene occupancy " + share_of(all.present, all.pairs));
  for (const auto& [what, list] : {std::pair("species", emptiest(all.species)), {"alignments", emptiest(all.genes)}}) {
    if (!list.empty()) voice.account(std::string("  fewest letters, ") + what + ": " + list);
  }
}

void Batch::finish(Voice& voice) {
  const std::vector<std::string> in_vain = filters_.listed_in_vain(listed_);
  if (!in_vain.empty()) {
    note(settings_.species,
         filled(words_of_run::listed_in_vain, {number_of(std::ssize(in_vain), "name"), listed_names(in_vain)}), voice);
  }
  if (!left_out_) return;
  left_out_->commit();
  files_.push_back(left_out_path(plan_));
  voice.account("left out: " + number_of(sequences_out_, "sequence") + ", " + number_of(alignments_out_, "alignment") +
                ", " + number_of(species_out_, "species") + ", listed in " + left_out_path(plan_));
}

void Batch::write_page(const std::vector<TableRow>& rows, Voice& voice) {
  if (!page_) return;
  Overview about{settings_.overview,
                 std::string("trimora-run ") + version_text,
                 getpath(plan_.joined_stem).name_file,
                 settings_.command,
                 {},
                 notes_,
                 files_};
  for (const Option& option : all_options()) {
    if (option.group != Group::parameters || settings_.join) continue;
    if (settings_.every && option.name.starts_with("-b")) continue;
    about.parameters.push_back({std::string(option.name), value_of(option, settings_), std::string(option.brief)});
  }
  if (!settings_.table.empty() && settings_.table != "-") about.files.push_back(settings_.table);
  const auto report = [&](std::size_t r) {
    return rows[r].status == TableRow::Status::ok ? report_path(plan_.jobs[r], settings_) : "";
  };
  const RowOf row = [&](std::size_t gene, int species) { return all_.row(gene, species); };
  write_overview(page_->out(), about, rows, report, {occupancy_, row, chosen_, all_.name()});
  page_->commit();
  voice.account("overview: " + settings_.overview);
}

}  // namespace trimora::rooms
