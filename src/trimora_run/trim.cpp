#include "trimora_run/trim.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <new>
#include <utility>

#include "batch/identity.h"
#include "batch/names.h"
#include "input/kind.h"
#include "input/read.h"
#include "output/columns.h"
#include "output/results.h"
#include "selection/parameters.h"
#include "trimora_run/interruption.h"
#include "trimora_run/notes.h"
#include "trimora_run/result_paths.h"
#include "trimora_run/words.h"

namespace trimora::rooms {

namespace {

const char* name_of(char seq_type) {
  return seq_type == 'P' ? "protein" : seq_type == 'D' ? "DNA" : "codons";
}

/// The type of sequence: as it was asked for, as the file says, by its letters, or as the alignments before it.
char decide_type(const Reading& reading, const KindByLetters& by_letters, const Settings& settings,
                 const Before& before, std::vector<std::string>& decided) {
  const auto is = [&](char seq_type, const std::string& why) {
    decided.push_back(name_of(seq_type) + why);
    return seq_type;
  };
  if (settings.kind) return is(seq_type_of(*settings.kind), ", by -t");
  if (reading.kind) return is(seq_type_of(*reading.kind), ", as the file says");
  if (by_letters.kind) return is(seq_type_of(*by_letters.kind), ", by its letters");
  if (before.type_known) return is(before.first.seq_type, ", as " + before.type_path);
  Failure failure{.kind = Failure::Kind::undecided_type};
  const std::string remedy = ": -t=P for protein, -t=D for DNA";
  switch (by_letters.why) {
    case KindByLetters::Undecided::few_letters:
      failure.detail = ", since they are only " + std::to_string(by_letters.letters) + remedy;
      break;
    case KindByLetters::Undecided::both:
      failure.detail = ": sequence " + std::to_string(by_letters.dna) + " looks like DNA, sequence " +
                       std::to_string(by_letters.protein) + " like protein" + remedy;
      break;
    case KindByLetters::Undecided::neither:
    case KindByLetters::Undecided::no: failure.detail = remedy; break;
  }
  throw Failure(failure);
}

/// The alignment that is in a reading, which it takes over.
Alignment alignment_of(Reading reading, bool as_it_is) {
  Alignment ali;
  ali.numseq = reading.numseq();
  ali.nupo = reading.nupo;
  allocating("name", [&] {
    ali.name.reserve(ali.numseq);
    for (std::string& name : reading.names) ali.name.append(std::move(name += '\n'));
  });
  ali.inserts = std::move(reading.inserts);
  allocating("let", [&] { ali.let = Rows(std::move(reading.letters), ali.nupo); });
  return as_it_is ? ali : without_gap_columns(std::move(ali));
}

/// Whether the second words of two names do not tell two species apart.
bool same_epithet(std::string_view a, std::string_view b) {
  const std::string_view first = second_word(a), second = second_word(b);
  return first.empty() || second.empty() || first == second;
}

/// Why an alignment cannot be concatenated by order with the first one of its batch; empty when it can.
std::string why_not_joined(const Alignment& ali, const Settings& settings, const Before& before) {
  const std::string first = before.path;
  if (settings.match == Match::name || first.empty()) return "";
  const Table<std::string>& names = before.name;
  const std::string_view outcome = settings.keep_going ? "it is left out" : "nothing was concatenated";
  if (ali.numseq != names.size()) {
    const bool numbers = (settings.b1 && !settings.b1->percent) || (settings.b2 && !settings.b2->percent);
    return filled(words_of_run::other_count, {std::to_string(ali.numseq), first, std::to_string(names.size()), outcome,
                                              numbers ? ", with -b1 and -b2 in per cent" : ""});
  }
  if (settings.match == Match::order) return "";
  int i = 1;
  while (i <= ali.numseq && key_of(ali.name[i]) == key_of(names[i])) ++i;
  const bool keys_agree = i > ali.numseq;
  if (keys_agree) {
    i = 1;
    while (i <= ali.numseq && same_epithet(ali.name[i], names[i])) ++i;
    if (i > ali.numseq) return "";
  }
  if (!keys_agree && same_keys(ali.name, names)) return filled(words_of_run::other_order, {first, outcome});
  return filled(words_of_run::other_names,
                {std::to_string(i), plain_name(ali.name[i]), plain_name(names[i]), first, outcome});
}

/// Write the files of one alignment.
void write_results(const Settings& settings, Outcome& outcome) {
  const OutputState& run = outcome.run;
  const LetterMap letters = letters_written(settings, run.seq_type);
  const auto whole = [&](const std::string& path, auto write) {
    write_result(path, write);
    outcome.written.push_back(path);
  };
  // What goes into a concatenation by name is called by its key there: its own file is no reason to stop.
  const Unique unique = settings.match == Match::name && settings.concatenates() ? Unique::made : Unique::needed;
  const std::string changed_names = names_path(run.fichero1);
  for (const Result& result : results()) {
    if (!result.wanted(run)) continue;
    if (result.positions == nullptr) {
      whole(result.path(run), [&](OutputFile& out) { result.write(out, outcome.ali, outcome.found, run); });
      continue;
    }
    const std::vector<Stretch> positions = result.positions(outcome.ali, outcome.found);
    Sheet sheet = sheet_of(outcome.ali, positions);
    if (settings.unknown == Unknown::x) sheet = mapped(sheet, letters);
    write_forms(result.path(run), sheet, settings.forms, run, changed_names, outcome.decided, outcome.written, unique);
  }
  if (!settings.codons.empty()) {
    const std::vector<Stretch> all = {{1, outcome.codons.nupo}};
    const Sheet sheet = sheet_of(outcome.codons, all);  // whose letters no program stops at
    InputState as_codons = run;
    as_codons.seq_type = 'C';
    write_forms(codons_path(run), sheet, settings.forms, as_codons, changed_names, outcome.decided, outcome.written,
                unique);
  }
  if (settings.columns) {
    whole(columns_file(run), [&](OutputFile& out) { write_columns(out, outcome.ali, outcome.found, run); });
  }
}

/// Whether the alignments are put together.
bool joins(const Plan& plan, const Settings& settings) {
  return plan.batch && settings.concatenates();
}

/// Read the sequences that stay, with their type.
Reading read_chosen(Outcome& outcome, const Job& job, const Settings& settings, const Filters& filters,
                    const Before& before, KindByLetters& by_letters) {
  Reading reading = read_job(job, settings);
  const bool plain = reading.format == "FASTA" || reading.format == "NBRF/PIR";
  const bool told = std::any_of(reading.remarks.begin(), reading.remarks.end(),
                                [](const Remark& remark) { return remark.what == Remark::What::layout; });
  if (!plain && !told) {
    outcome.decided.push_back("read as " + std::string(reading.format));
  }
  by_letters = kind_by_letters(reading);
  outcome.type_known = !settings.join || settings.kind || reading.kind || by_letters.kind;
  const char seq_type = outcome.type_known || before.type_known
                            ? decide_type(reading, by_letters, settings, before, outcome.decided)
                            : 'D';
  if (seq_type != 'P') read_u_as_t(reading);
  if (const int turned = strip_turned(reading.names); turned > 0) {
    outcome.decided.push_back("_R_, with which mafft marks sequences that it has turned, taken from " +
                              std::to_string(turned) + (turned == 1 ? " name" : " names"));
  }
  for (const Remark& remark : reading.remarks) outcome.decided.push_back(words(remark));
  outcome.run = output_state(settings, job.stem);
  outcome.run.fileformat = reading.format == "NBRF/PIR" ? pir : fasta;
  outcome.run.seq_type = seq_type;
  outcome.row.sequences = reading.numseq();
  outcome.row.columns = reading.nupo;
  if (settings.filters() || settings.match == Match::name || !settings.codons.empty()) {
    outcome.chosen = filters.choose(reading, seq_type);
  }
  outcome.row.species = reading.numseq();
  return reading;
}

/// Why an alignment of so many sequences is left out.
std::optional<LeftOut> why_left_out(int sequences, const Settings& settings, const Filters& filters) {
  const auto whole = [](std::string_view option, std::string reason) {
    return LeftOut{option, "alignment", "", std::move(reason)};
  };
  if (sequences < (settings.join ? 1 : 2) && (!settings.species.empty() || settings.min_filled)) {
    return whole(settings.min_filled ? "--min-filled" : "--species",
                 std::to_string(sequences) + (sequences == 1 ? " sequence is left" : " sequences are left"));
  }
  if (std::string few = filters.few_species(sequences); !few.empty()) return whole("--min-species", few);
  return {};
}

/// Count what is there before and after selection.
void count_all(Outcome& outcome, const Settings& settings, bool joined) {
  TableRow& row = outcome.row;
  const Alignment& ali = outcome.ali;
  const char seq_type = outcome.run.seq_type;
  const std::vector<Stretch>& blocks = outcome.found.blocks.newpos;
  const Table<RowCounts> before = count(ali, {{1, ali.nupo}}, seq_type);
  const Table<RowCounts> after = count(ali, blocks, seq_type);
  row.before = sum(before);
  row.after = sum(after);
  if (settings.tells_each()) {
    const Variation found = variation(ali, blocks, seq_type);
    row.variable = found.variable;
    row.informative = found.informative;
  }
  if (!joined) return;
  outcome.counts = settings.all_blocks  ? after
                   : settings.all_input ? before
                                        : count(ali, outcome.found.ungapped.newlet, seq_type);
}

void write_to_output(const Outcome& outcome, const Settings& settings) {
  Sheet sheet = sheet_of(outcome.ali, outcome.found.blocks.newpos);
  if (settings.unknown == Unknown::x) sheet = mapped(sheet, letters_written(settings, outcome.run.seq_type));
  const Form form = settings.forms.front();
  const FormNames names = names_for(form, outcome.ali.name);
  sheet.name = &names.name;
  OutputFile out(stdout);
  write_form(out, sheet, form, outcome.run);
  if (const int error = out.close(); error != 0) {
    throw Failure{.kind = Failure::Kind::not_writable, .file = "standard output", .error = error};
  }
}

/// Whether b2 had to be raised to a b1 that was given, or to half of the sequences + 1 where b2 was.
bool follows_b1(const Settings& settings, const SelectionState& run) {
  if (settings.given_as("-b1") == nullptr && settings.given_as("-b2") == nullptr) return false;
  SelectionState by_default = run;
  derive_defaults(by_default);
  return run.flankval > (settings.b2 ? number_of(*settings.b2, run.numseq) : by_default.flankval);
}

void trim_into(Outcome& outcome, const Job& job, const Plan& plan, const Settings& settings, const Filters& filters,
               const Coding& coding, const Before& before) {
  TableRow& row = outcome.row;
  const bool joined = joins(plan, settings);
  KindByLetters by_letters;
  Reading reading = read_chosen(outcome, job, settings, filters, before, by_letters);
  outcome.left_out = why_left_out(reading.numseq(), settings, filters);
  if (outcome.left_out) return;

  Codons codons;
  if (coding.wanted()) {
    if (outcome.run.seq_type != 'P') {
      throw Failure{.kind = Failure::Kind::contrary_type,
                    .detail = filled(words_of_run::no_protein, {name_of(outcome.run.seq_type)})};
    }
    codons = coding.codons_of(job, reading, outcome.chosen);
    outcome.decided.insert(outcome.decided.end(), codons.decided.begin(), codons.decided.end());
  }
  const std::vector<Remark> remarks = reading.remarks;
  outcome.ali = alignment_of(std::move(reading), settings.join);
  const Alignment& ali = outcome.ali;
  OutputState& run = outcome.run;
  row.positions = ali.nupo;
  const bool stars = std::any_of(remarks.begin(), remarks.end(), [](const Remark& remark) {
    return remark.what == Remark::What::last_column_of_stars;  // which tells of this column
  });
  const int gaps = total_length(ali.dropped) - total_length(ali.inserts) - (stars ? 1 : 0);
  if (gaps > 0 && !settings.join) {
    outcome.decided.push_back(std::to_string(gaps) + (gaps == 1 ? " column" : " columns") +
                              " dropped as gaps in every sequence");
  }
  run.numseq = ali.numseq;
  if (joined && before.type_known && outcome.type_known && before.first.seq_type != run.seq_type) {
    throw Failure{.kind = Failure::Kind::contrary_type,
                  .detail = filled(words_of_run::other_type, {name_of(run.seq_type), name_of(before.first.seq_type)})};
  }
  if (joined && settings.match == Match::name) check_keys(outcome.chosen.names, outcome.chosen.keys, settings.keys());
  if (joined) outcome.why_not_joined = why_not_joined(ali, settings, before);

  if (settings.join) {
    outcome.found.blocks.newpos = {{1, ali.nupo}};
    outcome.found.blocks.nupo3 = ali.nupo;
    count_all(outcome, settings, joined);
    return;
  }
  set_parameters(settings, run);
  if (!settings.every) {
    row.b1 = run.negval;
    row.b2 = run.flankval;
    if (settings.b1 && number_of(*settings.b1, run.numseq) < run.negval) {
      outcome.decided.push_back("b1 is " + std::to_string(run.negval) + ", half of the sequences + 1");
    }
    if (follows_b1(settings, run)) outcome.decided.push_back("b2 is " + std::to_string(run.flankval) + ", as b1");
  }
  outcome.notes = notes_on_alignment(ali, remarks, by_letters, run, settings);
  outcome.notes.insert(outcome.notes.end(), codons.notes.begin(), codons.notes.end());
  const bool needs_ungapped = settings.ungapped || settings.tells_each() || (joined && settings.all_ungapped);
  outcome.found = find_blocks(ali, run, needs_ungapped);
  row.selected = outcome.found.blocks.nupo3;
  row.percent = outcome.found.blocks.nupo3per;
  row.blocks = static_cast<int>(outcome.found.blocks.newpos.size());
  if (needs_ungapped) row.ungapped = outcome.found.ungapped.nupoung;
  if (coding.wanted()) outcome.codons = selected_codons(codons, ali, outcome.found.blocks.newpos);
  if (joined || settings.tells_each()) count_all(outcome, settings, joined);
  if (const std::string few = filters.few_columns(row.selected); !few.empty()) {
    outcome.left_out = LeftOut{"--min-columns", "alignment", "", few};
    return;
  }
  for (std::string& note : notes_on_selection(ali, outcome.found, by_letters, run)) {
    outcome.notes.push_back(std::move(note));
  }
  if (settings.filter()) {
    write_to_output(outcome, settings);
  } else {
    write_results(settings, outcome);
  }
}

}  // namespace

std::optional<char> type_told_by(const Job& job, const Settings& settings) {
  try {
    const Reading reading = read_job(job, settings);
    const std::optional<Kind> kind = reading.kind ? reading.kind : kind_by_letters(reading).kind;
    return kind ? std::optional(seq_type_of(*kind)) : std::nullopt;
  } catch (const Failure&) {  // which is told when its turn comes
    return std::nullopt;
  }
}

LetterMap letters_written(const Settings& settings, char seq_type) {
  LetterMap letters = same_letters();
  if (settings.unknown == Unknown::keep) return letters;
  const bool protein = seq_type == 'P';
  letters['!'] = letters['*'] = protein ? 'X' : 'N';
  if (protein) {
    for (const char c : {'U', 'O', 'J'}) letters[static_cast<unsigned char>(c)] = 'X';
    for (const char c : {'u', 'o', 'j'}) letters[static_cast<unsigned char>(c)] = 'x';
  }
  return letters;
}

void write_forms(const std::string& path, const Sheet& sheet, const Forms& forms, const InputState& run,
                 const std::string& changed_names, std::vector<std::string>& decided, std::vector<std::string>& written,
                 Unique unique) {
  std::string changes;  // lines of the table of names
  int changed = 0;
  for (const Form form : forms) {
    const FormNames names = names_for(form, *sheet.name, unique);
    Sheet named = sheet;
    named.name = &names.name;
    const std::string whole = path + std::string(ending(form));
    write_result(whole, [&](OutputFile& out) { write_form(out, named, form, run); });
    written.push_back(whole);
    changed = std::max(changed, names.changed);
    for (int i = 1; i <= names.name.size() && names.changed > 0; ++i) {
      const std::string_view original = plain_name((*sheet.name)[i]);
      if (names.name[i] == original) continue;
      changes += std::string(ending(form).substr(1)) + '\t' + names.name[i] + '\t' + std::string(original) + '\n';
    }
  }
  const bool told = std::find(written.begin(), written.end(), changed_names) != written.end();
  if (changed == 0 || told) return;
  write_result(changed_names, [&](OutputFile& out) { out.put("form\tnew\toriginal\n" + changes); });
  written.push_back(changed_names);
  decided.push_back(std::to_string(changed) + (changed == 1 ? " name" : " names") +
                    " changed to fit the form, listed in " + changed_names);
}

Outcome trim(const Job& job, const Plan& plan, const Settings& settings, const Filters& filters, const Coding& coding,
             const Before& before) {
  Outcome outcome;
  outcome.row.alignment = job.path;
  try {
    trim_into(outcome, job, plan, settings, filters, coding, before);
    outcome.row.status = outcome.left_out ? TableRow::Status::left_out : TableRow::Status::ok;
  } catch (const Failure& failure) {
    outcome.failure = failure;
  } catch (const std::bad_alloc&) {
    outcome.failure = Failure{.kind = Failure::Kind::out_of_memory};
  }
  if (outcome.failure) outcome.row.status = TableRow::Status::failed;
  return outcome;
}

}  // namespace trimora::rooms
