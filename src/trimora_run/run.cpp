#include "trimora_run/run.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

#include "driver/options.h"
#include "ground/speaker.h"
#include "input/filetype.h"
#include "input/input_file.h"
#include "selection/calculate.h"
#include "trimora_run/diagnosis.h"
#include "trimora_run/guard.h"
#include "trimora_run/names.h"
#include "trimora_run/notes.h"
#include "trimora_run/words.h"

namespace {

std::vector<Answer> apply(Arguments& arguments, RunState& run) {
  return applyoptions(static_cast<int>(arguments.settled.size()), arguments.settled.data(), 0, run);
}

/// Refuse the first option that was not taken as it was written.
void check(const std::vector<Answer>& answers, const Arguments& arguments) {
  for (std::size_t k = 0; k < answers.size(); ++k) {
    const std::string option = arguments.settled[k];
    if (answers[k].kind == Answer::ignored) throw WrongUsage{option + " is not an option"};
    if (answers[k].kind == Answer::guessed) throw WrongUsage{option + " is not a whole number"};
    if (answers[k].kind == Answer::refused) {
      throw WrongUsage{option + " is refused:" + withoutnewline(answers[k].warning)};
    }
  }
}

/// Refuse settings that give two files one name.
void checknames(const BatchState& run) {
  if (run.exten != "--") return;
  if (run.tog_ungappedfile == 1 && run.tog_seqfile == 1) throw WrongUsage{"-e=-- and -u=y give two files one name"};
  if (run.tog_allfile == 1 && run.tog_allungfile == 1) {
    throw WrongUsage{"-e=--, -a=y and -w=y give two files one name"};
  }
}

/// Whether a run with these settings may concatenate `ali`, the names of whose first alignment are `firstnames`; if not,
/// that is said.
bool samespecies(const Alignment& ali, const Table<std::string>& firstnames, const std::string& first,
                 const std::string& path, Messages& messages) {
  int i = 1;
  while (i <= ali.numseq && i <= firstnames.size() && keyof(ali.name[i]) == keyof(firstnames[i])) ++i;
  if (i > ali.numseq) return true;
  messages.error(path, samekeys(ali.name, firstnames)
                           ? filled(words::otherorder, {first})
                           : filled(words::othernames, {std::to_string(i), withoutlineend(ali.name[i]),
                                                        withoutlineend(firstnames[i]), first}));
  return false;
}

}  // namespace

void checkbeforehand(const Arguments& arguments) {
  for (char* option : arguments.settled) {
    RunState any;
    any.negval = any.initnegval = INT_MIN;
    any.flankval = any.numseq = INT_MAX;
    Arguments alone;
    alone.settled = {option};
    check(apply(alone, any), alone);
  }
}

bool Run::carryout() {
  run_.filename = arguments_.file;
  std::optional<Alignment> loaded = openfile(run_);
  opened_ = loaded.has_value();
  const std::vector<Answer> answers = apply(arguments_, run_);
  if (opened_) check(answers, arguments_);
  checknames(run_);
  for (const Answer& answer : answers) std::fprintf(prints, "%s", answer.warning.c_str());
  if (!opened_) load(run_);  // which fails, in the words of trimora

  std::vector<std::string> paths = {run_.fichero1};
  std::size_t listed = 1;
  if (run_.tog_sb == 1) {
    const auto list = listedpaths(run_.filename);
    if (!list) return fail(run_.filename, words::listgone);
    paths = *list;
    listed = paths.size();
    paths.resize(std::min(listed, static_cast<std::size_t>(std::max(0, run_.numal))));
  }
  guard(paths);

  Concatenations all = allalloc(run_);
  Table<std::string> name;  // of the last alignment
  for (const std::string& path : paths) {
    run_.fichero1 = path;
    Alignment ali = loaded ? *std::exchange(loaded, std::nullopt) : load(run_);
    trim(ali, all);
    name = std::move(ali.name);
  }
  if (concatenable_ && !paths.empty()) allsaveseq(all, name, run_);
  if (run_.tog_sb == 1 && paths.empty()) return fail(run_.filename, words::listnothing);
  if (paths.size() < listed) return fail(run_.filename, filled(words::listincomplete, {typed(run_.filename)}));
  return true;
}

const std::string& Run::culprit() const {
  return run_.fichero1.empty() ? arguments_.file : run_.fichero1;
}

void Run::explain(const ExecutionTerminated& end) {
  if (!opened_) return messages_.error(arguments_.file, whynotopened(arguments_.file));
  if (run_.tog_sb == 1) {
    std::error_code error;
    const std::string why = std::filesystem::exists(culprit(), error) ? "" : whynopath(culprit(), run_.filename);
    if (!why.empty()) return messages_.error(run_.filename, why);
  }
  const std::string why = diagnose(end, culprit(), first_);
  if (!why.empty()) messages_.error(culprit(), why);
}

bool Run::fail(const std::string& file, std::string_view words) {
  messages_.error(file, words);
  return false;
}

/// Refuse a run whose results would be written over its input.
void Run::guard(const std::vector<std::string>& paths) {
  std::vector<std::string> results;
  OutputState each = run_;
  for (const std::string& path : paths) {
    each.fichero1 = path;
    for (std::string& result : resultsof(each)) results.push_back(std::move(result));
  }
  BatchState last = run_;
  if (!paths.empty()) last.fichero1 = paths.back();
  for (std::string& result : concatenationsof(last)) results.push_back(std::move(result));
  std::vector<std::string> inputs = paths;
  inputs.push_back(run_.filename);
  if (const auto found = overwritten(results, inputs)) {
    Culprit told;
    told.told = true;
    messages_.error(arguments_.file, filled(words::overwrites, {found->first, found->second}));
    errfunc(told, "\nNothing was written\n");
  }
}

/// Carry one alignment from its notes to the concatenations.
void Run::trim(const Alignment& ali, Concatenations& all) {
  const bool first = first_.empty();
  take(ali, first, reference_, run_);
  if (first) {
    first_ = run_.fichero1;
    firstnames_ = ali.name;
  }
  notealignment(ali, run_, messages_);
  const bool concatenates = all.letall || all.letall_init || all.newletall;
  if (concatenates && arguments_.match == Match::same) {
    concatenable_ = samespecies(ali, firstnames_, first_, run_.fichero1, messages_) && concatenable_;
  }
  const Selection found = findblocks(ali, run_);
  noteselection(ali, found, run_, messages_);
  savefiles(ali, found, run_);
  if (concatenable_) allconcat(all, ali, found.blocks, found.ungapped);
}
