#include "trimora_run/run.h"

#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "batch/supermatrix.h"
#include "ground/failure.h"
#include "output/whole_file.h"
#include "trimora_run/notes.h"
#include "trimora_run/options.h"
#include "trimora_run/plan.h"
#include "trimora_run/terminal.h"
#include "trimora_run/trim.h"
#include "trimora_run/words.h"

namespace trimora::rooms {

namespace {

/// What the run says: the account on standard output, or on standard error where an alignment or a table takes its place;
/// notes and errors on standard error, one a line.
class Voice {
 public:
  explicit Voice(const Settings& settings)
      : account_(settings.quiet                               ? nullptr
                 : settings.filter() || settings.table == "-" ? stderr
                                                              : stdout) {}

  void account(const std::string& line) {
    if (account_ != nullptr) say(account_, line);
  }
  void note(const std::string& file, std::string_view words) {
    noted_ = true;
    message(file, words);
  }
  void error(const std::string& file, std::string_view words) {
    failed_ = true;
    message(file, words);
  }
  bool noted() const { return noted_; }
  bool failed() const { return failed_; }

 private:
  static void message(const std::string& file, std::string_view words) {
    std::string line = "trimora-run: " + file + ": ";
    say(stderr, line.append(words));
  }
  /// In one piece, since other processes may write there as well. A name may hold anything: it stays on its line.
  static void say(std::FILE* stream, std::string line) {
    for (char& c : line) c = static_cast<unsigned char>(c) < ' ' && c != '\t' ? ' ' : c;
    line += '\n';
    std::fputs(line.c_str(), stream);
    if (stream == stderr) std::fflush(stream);
  }

  std::FILE* account_;
  bool noted_ = false;
  bool failed_ = false;
};

std::string joined_by(const std::vector<std::string>& texts, std::string_view between) {
  std::string all;
  for (const std::string& text : texts) all.append(all.empty() ? "" : between).append(text);
  return all;
}

std::string message_of(const Failure& failure, const std::string& job) {
  const bool elsewhere = !failure.file.empty() && failure.file != job;
  return (elsewhere ? failure.file + " " : "") + words(failure);
}

/// "globins.fas: 45 sequences, 154 positions, 114 kept (74 %) in 2 blocks; read as CLUSTAL"
std::string account_of(const Outcome& outcome) {
  const TableRow& row = outcome.row;
  std::string line = row.alignment + ": " + std::to_string(row.sequences) + " sequences, " +
                     std::to_string(row.positions) + " positions, " + std::to_string(row.selected) + " kept (" +
                     std::to_string(row.percent) + " %) in " + std::to_string(row.blocks) +
                     (row.blocks == 1 ? " block" : " blocks");
  if (!outcome.decided.empty()) line += "; " + joined_by(outcome.decided, "; ");
  return line;
}

/// The table of alignments, where it was asked for: in its file, or on standard output.
class ResultsTable {
 public:
  explicit ResultsTable(const Settings& settings) {
    if (settings.table == "-") {
      stream_.emplace(stdout);
    } else if (!settings.table.empty()) {
      file_.emplace(settings.table);
    }
    if (OutputFile* out = this->out()) write_table_header(*out);
  }
  void add(const TableRow& row) {
    if (OutputFile* out = this->out()) write_table_row(*out, row);
  }
  void commit() {
    if (file_) file_->commit();
    if (!stream_) return;
    if (const int error = stream_->close(); error != 0) {
      throw Failure{.kind = Failure::Kind::not_writable, .file = "standard output", .error = error};
    }
  }

 private:
  OutputFile* out() { return file_ ? &file_->out() : stream_ ? &*stream_ : nullptr; }
  std::optional<WholeFile> file_;
  std::optional<OutputFile> stream_;
};

/// Write the concatenations and their partitions.
void write_joined(const Supermatrix& all, const Plan& plan, const Settings& settings, const InputState& run,
                  Voice& voice) {
  const char seq_type = run.seq_type;
  const bool codons = seq_type == 'C';
  const std::string model = !settings.model.empty() ? settings.model : seq_type == 'P' ? "LG" : "DNA";
  for (const Joined joined : {Joined::blocks, Joined::input, Joined::ungapped}) {
    if (!all.wanted(joined)) continue;
    const std::string path = joined_path(plan, settings, joined);
    Sheet sheet = all.sheet(joined);
    if (settings.unknown == Unknown::x) sheet = mapped(sheet, letters_written(settings, seq_type));
    std::vector<std::string> written;
    std::vector<std::string> decided = {
        std::to_string(all.size()) + (all.size() == 1 ? " alignment, " : " alignments, ") +
        std::to_string(sheet.name->size()) + " sequences, " + std::to_string(sheet.width) + " positions put together"};
    write_forms(path, sheet, settings.forms, run, path + ".names.tsv", decided, written);
    if (sheet.width > 0) {
      for (const std::string& note : notes_on_species(sheet)) voice.note(path, note);
    }
    if (settings.partitions) {
      const Partitions& parts = all.partitions(joined);
      write_whole(raxml_file(path), [&](OutputFile& out) { parts.write_raxml(out, model, codons); });
      write_whole(nexus_file(path), [&](OutputFile& out) { parts.write_nexus(out, codons); });
      written.insert(written.end(), {raxml_file(path), nexus_file(path)});
    }
    voice.account(joined_by(decided, "; ") + ": " + joined_by(written, ", "));
  }
}

}  // namespace

int carry_out(const Settings& settings) {
  Voice voice(settings);
  try {
    const Plan plan = plan_of(settings);
    for (const std::string& line : plan.decided) voice.account(line);
    ResultsTable table(settings);
    Supermatrix all(joined_choice(plan, settings));
    Before before;
    Progress progress(plan.jobs.size());
    bool joinable = true;
    bool ended = false;  // by a failure: what follows is skipped
    for (const Job& job : plan.jobs) {
      if (ended) {
        TableRow skipped;
        skipped.alignment = job.path;
        table.add(skipped);
        continue;
      }
      Outcome outcome = trim(job, plan, settings, before);
      TableRow& row = outcome.row;
      for (const std::string& note : outcome.notes) voice.note(job.path, note);
      row.message = joined_by(outcome.notes, "; ");
      if (outcome.failure) {
        if (outcome.failure->kind == Failure::Kind::bad_argument && before.path.empty()) {
          throw WrongUsage{job.path + ": " + outcome.failure->detail};
        }
        row.message = message_of(*outcome.failure, job.path);
        voice.error(job.path, row.message);
        ended = !settings.keep_going;
        joinable = joinable && settings.keep_going;
      } else {
        voice.account(account_of(outcome));
        if (plan.jobs.size() == 1 && !outcome.written.empty()) {
          voice.account("  written: " + joined_by(outcome.written, ", "));
        }
        if (before.path.empty()) {
          before.path = job.path;
          before.first = outcome.run;
          before.name = outcome.ali.name;
        }
        if (!outcome.why_not_joined.empty()) {
          voice.error(job.path, outcome.why_not_joined);
          row.message = outcome.why_not_joined;
          if (settings.keep_going) row.status = TableRow::Status::failed;
          joinable = joinable && settings.keep_going;
        } else if (joinable) {
          all.add(job.path, outcome.ali, outcome.found, outcome.run.seq_type);
        }
      }
      table.add(row);
      progress.step();
    }
    progress.end();
    table.commit();
    if (joinable && all.wanted() && all.size() > 0) write_joined(all, plan, settings, before.first, voice);
  } catch (const Failure& failure) {
    voice.error(failure.file.empty() ? settings.files.front() : failure.file, words(failure));
  }
  return voice.failed() || (settings.strict && voice.noted()) ? exit_failed : exit_done;
}

}  // namespace trimora::rooms
