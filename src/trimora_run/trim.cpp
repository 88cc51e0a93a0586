#include "trimora_run/trim.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <new>
#include <utility>

#include "batch/names.h"
#include "input/kind.h"
#include "input/read.h"
#include "output/columns.h"
#include "output/results.h"
#include "output/whole_file.h"
#include "selection/parameters.h"
#include "trimora_run/notes.h"
#include "trimora_run/words.h"

namespace trimora::rooms {

namespace {

const char* name_of(char seq_type) {
  return seq_type == 'P' ? "protein" : seq_type == 'D' ? "DNA" : "codons";
}

/// The type of sequence: as it was asked for, as the file says, by its letters, or as the alignments before it.
char decide_type(const Reading& reading, const KindByLetters& by_letters, const Settings& settings,
                 const Before& before, std::vector<std::string>& decided) {
  if (settings.kind) return seq_type_of(*settings.kind);
  if (reading.kind) return seq_type_of(*reading.kind);
  if (by_letters.kind) {
    decided.push_back(std::string(name_of(seq_type_of(*by_letters.kind))) + ", by its letters");
    return seq_type_of(*by_letters.kind);
  }
  if (!before.path.empty()) {
    decided.push_back(std::string(name_of(before.first.seq_type)) + ", as the first alignment");
    return before.first.seq_type;
  }
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
Alignment alignment_of(Reading reading) {
  Alignment ali;
  ali.numseq = reading.numseq();
  ali.nupo = reading.nupo;
  allocating("name", [&] {
    ali.name.reserve(ali.numseq);
    for (std::string& name : reading.names) ali.name.append(std::move(name += '\n'));
  });
  ali.inserts = std::move(reading.inserts);
  allocating("let", [&] { ali.let = Rows(std::move(reading.letters), ali.nupo); });
  return without_gap_columns(std::move(ali));
}

/// Why an alignment cannot be concatenated by order with the first one of its batch; empty when it can.
std::string why_not_joined(const Alignment& ali, const Settings& settings, const Before& before) {
  const std::string first = before.path;
  if (settings.match == Match::name || first.empty()) return "";
  const Table<std::string>& names = before.name;
  const std::string_view outcome = settings.keep_going ? "it is left out" : "nothing was concatenated";
  if (ali.numseq != names.size()) {
    const bool numbers = (settings.b1 && !settings.b1->percent) || (settings.b2 && !settings.b2->percent);
    return filled(words_of_run::other_count, {std::to_string(ali.numseq), first, std::to_string(names.size()),
                                              numbers ? ", with -b1 and -b2 in per cent" : ""});
  }
  if (settings.match == Match::order) return "";
  int i = 1;
  while (i <= ali.numseq && key_of(ali.name[i]) == key_of(names[i])) ++i;
  if (i > ali.numseq) return "";
  if (same_keys(ali.name, names)) return filled(words_of_run::other_order, {first, outcome});
  return filled(words_of_run::other_names,
                {std::to_string(i), plain_name(ali.name[i]), plain_name(names[i]), first, outcome});
}

/// Write the files of one alignment.
void write_results(const Settings& settings, Outcome& outcome) {
  const OutputState& run = outcome.run;
  const LetterMap letters = letters_written(settings, run.seq_type);
  const auto whole = [&](const std::string& path, auto write) {
    write_whole(path, write);
    outcome.written.push_back(path);
  };
  const std::string names_path = run.fichero1 + ".names.tsv";
  for (const Result& result : results()) {
    if (!result.wanted(run)) continue;
    if (result.positions == nullptr) {
      whole(result.path(run), [&](OutputFile& out) { result.write(out, outcome.ali, outcome.found, run); });
      continue;
    }
    const std::vector<Stretch> positions = result.positions(outcome.ali, outcome.found);
    Sheet sheet = sheet_of(outcome.ali, positions);
    if (settings.unknown == Unknown::x) sheet = mapped(sheet, letters);
    write_forms(result.path(run), sheet, settings.forms, run, names_path, outcome.decided, outcome.written);
  }
  if (settings.columns) {
    whole(columns_file(run), [&](OutputFile& out) { write_columns(out, outcome.ali, outcome.found, run); });
  }
}

void trim_into(Outcome& outcome, const Job& job, const Plan& plan, const Settings& settings, const Before& before) {
  TableRow& row = outcome.row;
  Reading reading = job.path == "-" ? Input::standard_input().read() : read(job.path);
  if (reading.format != "FASTA" && reading.format != "NBRF/PIR") {
    outcome.decided.push_back("read as " + std::string(reading.format));
  }
  const KindByLetters by_letters = kind_by_letters(reading);
  const char seq_type = decide_type(reading, by_letters, settings, before, outcome.decided);
  if (seq_type != 'P') read_u_as_t(reading);
  for (const Remark& remark : reading.remarks) outcome.decided.push_back(words(remark));
  const std::vector<Remark> remarks = reading.remarks;
  const bool is_pir = reading.format == "NBRF/PIR";
  row.sequences = reading.numseq();
  row.columns = reading.nupo;
  outcome.ali = alignment_of(std::move(reading));
  const Alignment& ali = outcome.ali;
  row.positions = ali.nupo;
  if (const int gaps = total_length(ali.dropped) - total_length(ali.inserts); gaps > 0) {
    outcome.decided.push_back(std::to_string(gaps) + (gaps == 1 ? " column" : " columns") +
                              " dropped as gaps in every sequence");
  }

  OutputState& run = outcome.run;
  run = output_state(settings, job.stem);
  run.fileformat = is_pir ? pir : fasta;
  run.seq_type = seq_type;
  run.numseq = ali.numseq;
  set_parameters(settings, run);
  row.b1 = run.negval;
  row.b2 = run.flankval;

  const bool joined = plan.batch && settings.concatenates();
  if (joined && !before.path.empty() && before.first.seq_type != seq_type) {
    throw Failure{.kind = Failure::Kind::contrary_type,
                  .detail = filled(words_of_run::other_type, {name_of(seq_type), name_of(before.first.seq_type)})};
  }
  if (joined && settings.match == Match::name) check_keys(ali.name, settings.name_end);
  if (joined) outcome.why_not_joined = why_not_joined(ali, settings, before);

  outcome.notes = notes_on_alignment(ali, remarks, by_letters, run, settings);
  const bool needs_ungapped = settings.ungapped || !settings.table.empty() || (joined && settings.all_ungapped);
  outcome.found = find_blocks(ali, run, needs_ungapped);
  for (std::string& note : notes_on_selection(ali, outcome.found, run)) outcome.notes.push_back(std::move(note));
  row.selected = outcome.found.blocks.nupo3;
  row.percent = outcome.found.blocks.nupo3per;
  row.blocks = static_cast<int>(outcome.found.blocks.newpos.size());
  if (needs_ungapped) row.ungapped = outcome.found.ungapped.nupoung;

  if (settings.filter()) {
    Sheet sheet = sheet_of(ali, outcome.found.blocks.newpos);
    if (settings.unknown == Unknown::x) sheet = mapped(sheet, letters_written(settings, seq_type));
    const Form form = settings.forms.front();
    const FormNames names = names_for(form, ali.name);
    sheet.name = &names.name;
    OutputFile out(stdout);
    write_form(out, sheet, form, run);
    if (const int error = out.close(); error != 0) {
      throw Failure{.kind = Failure::Kind::not_writable, .file = "standard output", .error = error};
    }
  } else {
    write_results(settings, outcome);
  }
}

}  // namespace

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
                 const std::string& names_path, std::vector<std::string>& decided, std::vector<std::string>& written) {
  std::string changes;  // lines of the table of names
  int changed = 0;
  for (const Form form : forms) {
    const FormNames names = names_for(form, *sheet.name);
    Sheet named = sheet;
    named.name = &names.name;
    const std::string whole = path + std::string(ending(form));
    write_whole(whole, [&](OutputFile& out) { write_form(out, named, form, run); });
    written.push_back(whole);
    changed = std::max(changed, names.changed);
    for (int i = 1; i <= names.name.size() && names.changed > 0; ++i) {
      const std::string_view original = plain_name((*sheet.name)[i]);
      if (names.name[i] == original) continue;
      changes += std::string(ending(form).substr(1)) + '\t' + names.name[i] + '\t' + std::string(original) + '\n';
    }
  }
  const bool told = std::find(written.begin(), written.end(), names_path) != written.end();
  if (changed == 0 || told) return;
  write_whole(names_path, [&](OutputFile& out) { out.put("form\tnew\toriginal\n" + changes); });
  written.push_back(names_path);
  decided.push_back(std::to_string(changed) + (changed == 1 ? " name" : " names") +
                    " changed to fit the form, listed in " + names_path);
}

Outcome trim(const Job& job, const Plan& plan, const Settings& settings, const Before& before) {
  Outcome outcome;
  outcome.row.alignment = job.path;
  try {
    trim_into(outcome, job, plan, settings, before);
    outcome.row.status = TableRow::Status::ok;
  } catch (const Failure& failure) {
    outcome.failure = failure;
  } catch (const std::bad_alloc&) {
    outcome.failure = Failure{.kind = Failure::Kind::out_of_memory};
  }
  if (outcome.failure) outcome.row.status = TableRow::Status::failed;
  return outcome;
}

}  // namespace trimora::rooms
