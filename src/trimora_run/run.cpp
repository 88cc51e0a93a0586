#include "trimora_run/run.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <new>
#include <optional>
#include <system_error>
#include <utility>

#include "trimora/options.h"
#include "ground/path.h"
#include "ground/speaker.h"
#include "ground/system_path.h"
#include "input/filetype.h"
#include "input/input_file.h"
#include "output/file_names.h"
#include "selection/reduced_views.h"
#include "output/columns.h"
#include "trimora_run/diagnosis.h"
#include "trimora_run/guard.h"
#include "batch/names.h"
#include "trimora_run/notes.h"
#include "trimora_run/words.h"

namespace trimora::rooms {

namespace {

std::vector<Answer> apply(Arguments& arguments, RunState& run) {
  return applyoptions(static_cast<int>(arguments.settled.size()), arguments.settled.data(), 0, run);
}

/// Why trimora refuses a value, from its warning of several lines, in one; where it gives no reason the range tells.
std::string reason(const std::string& warning) {
  const std::string_view opening = "not properly entered.";
  std::string text = warning.substr(warning.find(opening) + opening.size());
  for (char& c : text) c = c == '\n' ? ' ' : c;
  const bool b3 = warning.find("-b3 ") != std::string::npos;
  if (text == " ") text = b3 ? " it has to be from 0 to 32000" : " it has to be from 2 to 32000";
  if (text.ends_with(' ')) text.pop_back();
  return text;
}

/// Refuse the first option that was not taken as it was written.
void check(const std::vector<Answer>& answers, const Arguments& arguments) {
  for (std::size_t k = 0; k < answers.size(); ++k) {
    const std::string option = arguments.settled[k];
    if (answers[k].kind == Answer::ignored) throw WrongUsage{option + " is not an option"};
    if (answers[k].kind == Answer::guessed) throw WrongUsage{option + " is not a whole number"};
    if (answers[k].kind == Answer::refused) {
      throw WrongUsage{option + " is refused:" + reason(answers[k].warning)};
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

/// The first line of an unread file that is not empty, without its line end.
std::string firstline(const InputFile& file) {
  const std::string_view text = file.unread();
  const std::size_t begin = std::min(text.find_first_not_of('\n'), text.size());
  return std::string(text.substr(begin, text.find('\n', begin) - begin));
}

/// Whether a run with these settings may concatenate `ali`, the names of whose first alignment are `firstnames`; if not,
/// that is said, with the `outcome`.
bool samespecies(const Alignment& ali, const Table<std::string>& firstnames, const std::string& first,
                 const std::string& path, std::string_view outcome, Messages& messages) {
  int i = 1;
  while (i <= ali.numseq && i <= firstnames.size() && keyof(ali.name[i]) == keyof(firstnames[i])) ++i;
  if (i > ali.numseq) return true;
  messages.error(path, samekeys(ali.name, firstnames)
                           ? filled(words::otherorder, {first, outcome})
                           : filled(words::othernames, {std::to_string(i), withoutlineend(ali.name[i]),
                                                        withoutlineend(firstnames[i]), first, outcome}));
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

Run::Run(Arguments& arguments, Messages& messages)
    : arguments_(arguments), messages_(messages), forms_(arguments.forms), matrix_(arguments) {
  if (forms_.empty()) forms_ = {arguments.filter ? Form::plain : Form::trimora};
}

bool Run::carryout() {
  run_.filename = arguments_.file;
  if (arguments_.filter) return filter();
  std::optional<Alignment> loaded;
  try {
    loaded = open();
    settle(loaded.has_value());
    if (!opened_) load(run_);  // which fails, in the words of trimora
  } catch (const ExecutionTerminated& end) {
    neverbegun(end);
    throw;
  }

  std::size_t listed = 1;
  if (run_.tog_sb == 1) {
    auto list = listedpaths(run_.filename);
    if (!list) return fail(run_.filename, words::listgone);
    listed = list->size();
    list->resize(std::min(listed, static_cast<std::size_t>(std::max(0, run_.numal))));
    paths_ = std::move(*list);
  } else {
    paths_ = {run_.fichero1};
  }
  guard(paths_);

  matrix_.start(run_);
  for (const std::string& path : paths_) {
    run_.fichero1 = path;
    row_ = {};
    row_.alignment = path;
    messages_.since();  // what was said before concerns the run
    try {
      trim(loaded && path == loaded_ ? *std::exchange(loaded, std::nullopt) : loadlisted());
    } catch (const ExecutionTerminated& end) {
      explain(end);
      failed(end);
    } catch (const std::bad_alloc&) {
      Messages::outofmemory(path.c_str());
      row_.message = words::outofmemory;
      failed({"\nMemory allocation failure\n", {}});
    }
    record();
  }
  overview_.reset();
  if (concatenable_ && matrix_.whole() && !first_.empty()) matrix_.save(forms_, placed(), messages_);
  if (run_.tog_sb == 1 && paths_.empty()) return fail(run_.filename, words::listnothing);
  if (paths_.size() < listed) return fail(run_.filename, filled(words::listincomplete, {typed(run_.filename)}));
  return complete_;
}

/// Open the file and load the alignment, or the first one of a batch. With --keep-going that is the first one that can be
/// loaded, and all follow its format; those that cannot fail when their turn comes.
std::optional<Alignment> Run::open() {
  const auto opens = [](const std::string& path) { return unfit(path).empty() && InputFile(path); };
  const auto list = arguments_.keepgoing ? listedpaths(arguments_.file) : std::nullopt;
  std::optional<Alignment> loaded;
  if (InputFile file(arguments_.file); file) {  // a pipe in the first line would be opened to see whether it is there
    const std::string first = firstline(file);
    if (const std::string why = unfit(first); !why.empty()) refuse(first, why, "\nFile not opened\n");
  }
  if (!list || list->empty() || list->front().starts_with('>') || std::none_of(list->begin(), list->end(), opens)) {
    loaded = openfile(run_);
    opened_ = loaded.has_value();
    loaded_ = run_.fichero1;
    return loaded;
  }
  for (auto path = list->begin(); path != list->end() && !loaded; ++path) {
    if (!opens(*path)) continue;
    RunState alone;
    alone.filename = loaded_ = *path;
    try {
      loaded = openfile(alone);
      if (alone.tog_sb == 1) loaded.reset();  // a list in the list
      if (loaded) run_ = alone;
    } catch (const ExecutionTerminated&) {
      continue;
    }
  }
  InputFile pathsfile(arguments_.file);
  run_.filename = arguments_.file;
  run_.tog_sb = 1;
  run_.numal = pathsfile ? countpaths(pathsfile, "") : 0;
  return loaded;
}

/// Load the alignment in work, one of a list, in the format of the first one. Where none could be loaded by itself there is
/// no format, and each is refused or fails in its own.
Alignment Run::loadlisted() {
  if (const std::string why = unfit(run_.fichero1); !why.empty()) refuse(run_.fichero1, why, "\nFile not opened\n");
  InputFile file(run_.fichero1);
  if (!file) errfunc("\nFile not opened\n");
  InputState state = run_;
  const std::string line = firstline(file);
  const bool foreign = state.fileformat == fasta && !line.empty() && !line.starts_with('>');
  if (state.fileformat == 0 || foreign) checkformat(line + '\n', state);
  return load(file, state);
}

/// The file, or the first alignment of a list, could not be loaded: say why, here and in the table.
void Run::neverbegun(const ExecutionTerminated& end) {
  explain(end);
  if (!arguments_.table.empty()) {
    const auto list = run_.tog_sb == 1 ? listedpaths(arguments_.file) : std::nullopt;
    paths_ = list && !list->empty() ? *list : std::vector<std::string>{arguments_.file};
    std::vector<std::string> inputs = paths_;
    inputs.push_back(arguments_.file);
    if (const auto clash = overwritten({arguments_.table}, inputs)) {
      refuse(arguments_.file, filled(words::overwrites, {clash->result, clash->input}));
    }
    overview_.emplace(arguments_.table);
    row_.alignment = paths_.front();
  }
  failed(end);
}

/// The alignment comes from standard input, and its selected blocks go to standard output.
bool Run::filter() {
  run_.fichero1 = run_.filename;
  InputFile input;
  const std::string line = input ? firstline(input) : "";
  if (!line.starts_with('>')) refuse(run_.filename, whatitis(input ? input.unread() : "", run_.filename));
  checkformat(line + '\n', run_);
  const Alignment ali = load(input, run_);
  run_.numseq = ali.numseq;
  derivedefaults(run_);
  settle(true);
  derivepercents();
  notealignment(ali, run_, messages_);
  if (const std::string why = unfitname(ali.name, forms_, run_.filename, run_.fileformat); !why.empty()) {
    refuse(run_.filename, why);
  }
  const Selection found = findblocks(ali, run_);
  noteselection(ali, found, run_, messages_);
  OutputFile out;
  writeform(out, sheetof(ali, found.blocks.newpos), forms_.front(), run_);
  return true;
}

/// Apply the options; the first alignment, as far as it is `known`, tells what they may be.
void Run::settle(bool known) {
  const std::vector<Answer> answers = apply(arguments_, run_);
  if (known) check(answers, arguments_);
  checknames(run_);
  for (const Answer& answer : answers) std::fprintf(prints, "%s", answer.warning.c_str());
  if (arguments_.match == Match::name) {
    run_.tog_sub = 0;
    run_.tog_own = 1;
  }
}

/// b1 and b2 in per cent of the sequences of the alignment in work: truncated, and at least what they have to be.
void Run::derivepercents() {
  const auto share = [&](int percent) { return static_cast<int>(static_cast<long long>(run_.numseq) * percent / 100); };
  if (arguments_.b1percent) run_.negval = std::max(run_.initnegval, share(*arguments_.b1percent));
  if (arguments_.b2percent) run_.flankval = share(*arguments_.b2percent);
  if (arguments_.b1percent || arguments_.b2percent) run_.flankval = std::max(run_.negval, run_.flankval);
}

const std::string& Run::culprit() const {
  return run_.fichero1.empty() ? arguments_.file : run_.fichero1;
}

void Run::explain(const ExecutionTerminated& end) {
  if (end.culprit.told) return;
  if (!opened_) return messages_.error(arguments_.file, whynotopened(arguments_.file));
  if (run_.tog_sb == 1) {
    std::error_code error;
    const std::string why =
        std::filesystem::exists(systempath(culprit()), error) ? "" : whynopath(culprit(), run_.filename);
    if (!why.empty()) return messages_.error(run_.filename, why);
  }
  const std::string why = diagnose(end, culprit(), first_);
  if (!why.empty()) messages_.error(culprit(), why);
}

bool Run::fail(const std::string& file, std::string_view words) {
  messages_.error(file, words);
  return false;
}

/// End the run for a reason that is said here.
void Run::refuse(const std::string& file, std::string_view words, const char* message) {
  Culprit told;
  told.told = true;
  messages_.error(file, words);
  errfunc(told, "%s", message);
}

/// The state with which files are written: in another folder, if one was named.
BatchState Run::placed() const {
  BatchState state = run_;
  if (arguments_.into.empty()) return state;
  state.fichero1 =
      arguments_.into + (getpath(arguments_.into).name_file.empty() ? "" : "/") + getpath(run_.fichero1).name_file;
  return state;
}

/// Refuse a run whose results would be written over its input, or over each other; and make what it needs to write.
void Run::guard(const std::vector<std::string>& paths) {
  std::vector<std::string> results;
  for (const std::string& path : paths) {
    run_.fichero1 = path;
    for (std::string& result : resultsof(placed(), forms_, arguments_.columns)) results.push_back(std::move(result));
  }
  for (std::string& result : concatenationsof(placed(), forms_, arguments_.partitions)) {
    results.push_back(std::move(result));
  }
  if (!arguments_.table.empty()) results.push_back(arguments_.table);
  std::vector<std::string> inputs = paths;
  inputs.push_back(run_.filename);
  const auto clash = overwritten(results, inputs);
  if (clash && !clash->input.empty()) {
    refuse(arguments_.file, filled(words::overwrites, {clash->result, clash->input}));
  }
  if (clash && clash->result == arguments_.table) {
    throw WrongUsage{"--table=" + arguments_.table + " is the name of another file that is written"};
  }
  if (!arguments_.into.empty()) {
    if (const auto same = samebasename(paths)) {
      refuse(arguments_.file, filled(words::samebasename, {same->first, same->second, arguments_.into}));
    }
  }
  if (clash) refuse(arguments_.file, filled(words::writtentwice, {clash->result}));
  if (!arguments_.into.empty()) {
    std::error_code error;
    std::filesystem::create_directories(systempath(arguments_.into), error);
    if (error) refuse(arguments_.file, filled(words::nofolder, {arguments_.into, error.message()}));
  }
  if (!arguments_.table.empty()) overview_.emplace(arguments_.table);
}

/// The alignment in work has failed: the run ends, unless it is to go on.
void Run::failed(const ExecutionTerminated& end) {
  row_.status = "failed";
  complete_ = false;
  if (arguments_.keepgoing && run_.tog_sb == 1) return;
  record();
  for (; recorded_ < paths_.size(); record()) {
    row_ = {};
    row_.alignment = paths_[recorded_];
  }
  overview_.reset();
  ExecutionTerminated told = end;
  told.culprit.told = true;
  throw ExecutionTerminated(told);
}

/// Put the alignment in work into the table.
void Run::record() {
  const std::string said = messages_.since();
  if (row_.message.empty()) row_.message = said;
  if (overview_) overview_->add(row_);
  ++recorded_;
}

/// Carry one alignment from its notes to the concatenations.
void Run::trim(const Alignment& ali) {
  const bool first = first_.empty();
  const int incomplete = OutputFile::incomplete();
  row_.sequences = ali.numseq;
  row_.columns = static_cast<long long>(ali.nupo) + totallength(ali.dropped);
  row_.positions = ali.nupo;
  take(ali, first, reference_, run_);
  derivepercents();
  if (first) {
    first_ = run_.fichero1;
    firstnames_ = ali.name;
  }
  notealignment(ali, run_, messages_);
  if (run_.tog_sb == 0 && run_.tog_allfile + run_.tog_allfile_init + run_.tog_allungfile > 0) {
    messages_.note(run_.fichero1, words::nolist);
  }
  const bool concatenates = matrix_.wanted();
  checknamesofforms(ali, concatenates);
  bool fits = true;
  if (concatenates && arguments_.match == Match::same) {
    const std::string_view outcome = arguments_.keepgoing ? "it is left out" : "nothing was concatenated";
    fits = samespecies(ali, firstnames_, first_, run_.fichero1, outcome, messages_);
    if (!arguments_.keepgoing) concatenable_ = fits && concatenable_;
  }
  const Selection found = findblocks(ali, run_);
  noteselection(ali, found, run_, messages_);
  if (overview_) describe(ali, found);
  save(ali, found);
  const bool whole = OutputFile::incomplete() == incomplete;
  row_.status = whole && (fits || !arguments_.keepgoing) ? "ok" : "failed";
  if (!whole) row_.message = words::incomplete;
  if (arguments_.keepgoing && std::string_view(row_.status) == "failed") return;
  if (concatenates && concatenable_) matrix_.add(ali, found, run_);
}

/// Refuse names that a form, or the species by name, cannot hold: before anything is written for this alignment.
void Run::checknamesofforms(const Alignment& ali, bool concatenates) {
  const auto check = [&](const std::string& why) {
    if (!why.empty()) refuse(run_.fichero1, why, "\nAlignment not trimmed\n");
  };
  const bool byname = arguments_.match == Match::name;
  const bool written = run_.tog_seqfile == 1 || run_.tog_ncbfile == 1 || run_.tog_ungappedfile == 1;
  if (concatenates && byname) check(unfitkey(ali.name, arguments_.nameend));
  if (forms_ == Forms{Form::trimora}) return;
  if (written || (concatenates && !byname)) check(unfitname(ali.name, forms_, run_.fichero1, run_.fileformat));
  if (!concatenates || !byname) return;
  Table<std::string> keys;
  for (int i = 1; i <= ali.numseq; ++i) keys.append(std::string(keyof(ali.name[i], arguments_.nameend)));
  check(unfitname(keys, forms_, run_.fichero1, run_.fileformat));
}

void Run::describe(const Alignment& ali, const Selection& found) {
  const bool known = run_.tog_ungappedfile == 1 || concatenatesungapped(run_);
  row_.ungapped = known ? found.ungapped.nupoung : ungap(ali).nupoung;
  row_.selected = found.blocks.nupo3;
  row_.percent = found.blocks.nupo3per;
  row_.blocks = static_cast<int>(found.blocks.newpos.size());
  row_.b1 = run_.negval;
  row_.b2 = run_.flankval;
}

/// Write the files of one alignment.
void Run::save(const Alignment& ali, const Selection& found) {
  const BatchState files = placed();
  OutputState grouped = files;
  Forms others = forms_;
  if (std::erase(others, Form::trimora) == 0) grouped.tog_seqfile = grouped.tog_ncbfile = grouped.tog_ungappedfile = 0;
  savefiles(ali, found, grouped);
  const auto savealignment = [&](const std::string& path, const std::vector<Stretch>& stretches) {
    saveforms(path, sheetof(ali, stretches), others, files);
  };
  if (files.tog_seqfile == 1) savealignment(seqfile(files), found.blocks.newpos);
  if (files.tog_ncbfile == 1 && !others.empty()) {
    savealignment(ncbfile(files), complement(found.blocks.newpos, ali.nupo));
  }
  if (files.tog_ungappedfile == 1) savealignment(ungappedfile(files), found.ungapped.newlet);
  if (arguments_.columns) savecolumns(columnsfile(files), ali, found.scores, found.blocks, files);
}

}  // namespace trimora::rooms
