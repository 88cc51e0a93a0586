#include "trimora_run/run.h"

#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "ground/failure.h"
#include "output/whole_file.h"
#include "trimora_run/batch.h"
#include "trimora_run/filters.h"
#include "trimora_run/interruption.h"
#include "trimora_run/notes_on_batch.h"
#include "trimora_run/options.h"
#include "trimora_run/plan.h"
#include "trimora_run/terminal.h"
#include "trimora_run/trim.h"
#include "trimora_run/voice.h"

namespace trimora::rooms {

namespace {

std::string message_of(const Failure& failure, const std::string& job) {
  const bool elsewhere = !failure.file.empty() && failure.file != job;
  return (elsewhere ? failure.file + " " : "") + words(failure);
}

/// "globins.fas: 45 sequences, 154 positions, 114 kept (74 %) in 2 blocks; read as CLUSTAL"
std::string account_of(const Outcome& outcome) {
  const TableRow& row = outcome.row;
  std::string line = row.alignment + ": " + std::to_string(row.sequences) + " sequences, " +
                     std::to_string(row.positions) + (row.positions == 1 ? " position" : " positions");
  if (row.selected >= 0) {  // not with --join
    line += ", " + std::to_string(row.selected) + " kept (" + std::to_string(row.percent) + " %) in " +
            std::to_string(row.blocks) + (row.blocks == 1 ? " block" : " blocks");
  }
  if (!outcome.decided.empty()) line += "; " + joined_by(outcome.decided, "; ");
  return line;
}

/// "preset classic, the default: -b2=85% -b3=8 -b4=10 -b5=n; instead: -b3=6", for the methods section of a paper.
std::string preset_of(const Settings& settings) {
  const Preset& preset = *settings.preset;
  const bool given = settings.given_as("--preset") != nullptr;
  std::string line = "preset " + std::string(preset.name) + (given ? ": " : ", the default: ");
  line += preset.stands_for;
  if (!settings.in_place_of_preset.empty()) line += "; instead: " + settings.in_place_of_preset;
  return line;
}

/// The lines of the alignments, where they were asked for, and the table of them: in its file, or on standard output.
class ResultsTable {
 public:
  explicit ResultsTable(const Settings& settings) : keeps_(settings.tells_each()) {
    if (settings.table == "-") {
      stream_.emplace(stdout);
    } else if (!settings.table.empty()) {
      file_.emplace(settings.table, &unfinished());
    }
    if (OutputFile* out = this->out()) write_table_header(*out);
  }
  /// Keep a row until the whole batch is known.
  void add(TableRow row) {
    if (keeps_) rows_.push_back(std::move(row));
  }
  const std::vector<TableRow>& rows() const { return rows_; }
  /// Complete the rows by `batch`, and write them.
  void commit(const Batch& batch) {
    for (TableRow& row : rows_) {
      batch.complete(row);
      if (out() != nullptr) write_table_row(*out(), row);
    }
    if (file_) file_->commit();
    if (!stream_) return;
    if (const int error = stream_->close(); error != 0) {
      throw Failure{.kind = Failure::Kind::not_writable, .file = "standard output", .error = error};
    }
  }

 private:
  OutputFile* out() { return file_ ? &file_->out() : stream_ ? &*stream_ : nullptr; }
  bool keeps_;
  std::optional<WholeFile> file_;
  std::optional<OutputFile> stream_;
  std::vector<TableRow> rows_;
};

/// The run as far as it has come.
class Run {
 public:
  Run(const Settings& settings, const Plan& plan, Voice& voice)
      : settings_(settings),
        plan_(plan),
        voice_(voice),
        filters_(settings, plan),
        coding_(settings),
        table_(settings),
        batch_(settings, plan, filters_) {
    if (filters_.united().empty()) return;
    voice_.account(settings.species + ": several species become one: " + listed_names(filters_.united()));
  }

  void take(const Job& job) {
    if (ended_) {
      TableRow skipped;
      skipped.alignment = job.path;
      table_.add(skipped);
      return;
    }
    Outcome outcome = trim(job, plan_, settings_, filters_, coding_, before_);
    const bool undecided = outcome.failure && outcome.failure->kind == Failure::Kind::undecided_type;
    if (undecided && !before_.type_known && learn_type(job)) {
      outcome = trim(job, plan_, settings_, filters_, coding_, before_);
    }
    TableRow& row = outcome.row;
    for (const std::string& note : outcome.notes) voice_.note(job.path, note);
    row.message = joined_by(outcome.notes, "; ");
    batch_.leave_out(outcome);
    if (outcome.failure) {
      fail(outcome);
    } else if (outcome.left_out) {
      row.message = outcome.left_out->reason;
      voice_.account(job.path + ": left out: " + row.message);
    } else {
      take_in(outcome);
    }
    table_.add(std::move(row));
  }

  void end() {
    table_.commit(batch_);
    if (joinable_) batch_.write_joined(before_.first, voice_);
    batch_.finish(voice_);
    batch_.write_page(table_.rows(), voice_);
  }

 private:
  /// Where the first alignments do not tell their type of sequence, the first one after `job` that does tells it for them.
  bool learn_type(const Job& job) {
    for (const Job* later = &job + 1; later != plan_.jobs.data() + plan_.jobs.size(); ++later) {
      const std::optional<char> type = type_told_by(*later, settings_);
      if (!type) continue;
      before_.first.seq_type = *type;
      before_.type_known = true;
      before_.type_path = later->path;
      return true;
    }
    return false;
  }

  void fail(Outcome& outcome) {
    const std::string& path = outcome.row.alignment;
    if (outcome.failure->kind == Failure::Kind::bad_argument && before_.path.empty()) {
      throw WrongUsage{path + ": " + outcome.failure->detail};
    }
    outcome.row.message = message_of(*outcome.failure, path);
    voice_.error(path, outcome.row.message);
    ended_ = !settings_.keep_going;
    joinable_ = joinable_ && settings_.keep_going;
  }

  void take_in(Outcome& outcome) {
    TableRow& row = outcome.row;
    voice_.account(account_of(outcome));
    if (plan_.jobs.size() == 1 && !outcome.written.empty()) {
      voice_.account("  written: " + joined_by(outcome.written, ", "));
    }
    if (before_.path.empty()) {
      before_.path = row.alignment;
      before_.first = outcome.run;  // of this type, too, if a later one told it
      before_.name = outcome.ali.name;
    }
    if (!before_.type_known && outcome.type_known) {
      before_.first.seq_type = outcome.run.seq_type;
      before_.type_known = true;
      before_.type_path = row.alignment;
    }
    if (!outcome.why_not_joined.empty()) {
      voice_.error(row.alignment, outcome.why_not_joined);
      row.message = outcome.why_not_joined;
      if (settings_.keep_going) row.status = TableRow::Status::failed;
      joinable_ = joinable_ && settings_.keep_going;
    } else if (joinable_) {
      batch_.add(outcome);
    }
  }

  const Settings& settings_;
  const Plan& plan_;
  Voice& voice_;
  Filters filters_;
  Coding coding_;
  ResultsTable table_;
  Batch batch_;
  Before before_;
  bool joinable_ = true;
  bool ended_ = false;  // by a failure: what follows is skipped
};

}  // namespace

int carry_out(const Settings& settings) {
  Voice voice(settings);
  try {
    const Plan plan = plan_of(settings);
    if (!settings.join) voice.opening(preset_of(settings));
    for (const std::string& line : plan.decided) voice.account(line);
    Run run(settings, plan, voice);
    Progress progress(plan.jobs.size());
    for (const Job& job : plan.jobs) {
      run.take(job);
      progress.step();
    }
    progress.end();
    run.end();
  } catch (const Failure& failure) {
    voice.error(failure.file.empty() ? settings.files.front() : failure.file, words(failure));
  }
  return voice.failed() || (settings.strict && voice.noted()) ? exit_failed : exit_done;
}

}  // namespace trimora::rooms
