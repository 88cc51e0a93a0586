#include "trimora_run/coding.h"

#include <utility>

#include "batch/codons.h"
#include "ground/failure.h"
#include "input/read.h"
#include "input/words.h"
#include "output/forms.h"
#include "trimora_run/notes_on_batch.h"
#include "trimora_run/words.h"

namespace trimora::rooms {

namespace {

[[noreturn]] void not_coded(std::string_view words, std::initializer_list<std::string_view> values) {
  throw Failure{.kind = Failure::Kind::other_sequences, .detail = filled(words, values)};
}

/// What was dropped from coding sequences, counted.
struct Dropped {
  int final_stops = 0, left_over = 0;
  std::vector<std::string> shifted;

  std::string words() const {
    std::string text;
    const auto add = [&](const std::string& what) { text += (text.empty() ? "" : ", ") + what; };
    if (final_stops > 0) add("the final stop codon of " + std::to_string(final_stops));
    if (left_over > 0) add("one or two letters at the end of " + std::to_string(left_over));
    if (!shifted.empty()) add("the first letters of " + listed_names(shifted));
    return text.empty() ? "" : "of the coding sequences, dropped " + text;
  }
};

}  // namespace

Coding::Coding(const Settings& settings)
    : settings_(settings), code_(*GeneticCode::numbered(settings.code.value_or(1))) {
  if (settings.codon_names.empty()) return;
  Input input(settings.codon_names);
  for (std::string_view line; input.line(line);) {
    std::string_view left = line;
    const std::string_view protein = take_word(left), coding = take_word(left);
    if (protein.empty() || protein.starts_with('#')) continue;
    names_.emplace(protein, coding);
  }
}

Codons Coding::codons_of(const Job& job, const Reading& reading, const Chosen& chosen) const {
  if (job.coding.empty()) not_coded(words_of_run::no_coding, {settings_.codons});
  const CodingSequences coding = read_coding_sequences(job.coding);
  const int numseq = reading.numseq();
  std::vector<int> matched;
  if (settings_.match == Match::order) {
    if (coding.names.size() != static_cast<std::size_t>(numseq)) {
      not_coded(words_of_run::coding_count, {std::to_string(numseq), job.coding, std::to_string(coding.names.size())});
    }
    for (int k = 0; k < numseq; ++k) matched.push_back(k);
  } else {
    std::vector<std::string> rows, row_keys, keys;
    for (int i = 1; i <= numseq; ++i) {
      const std::string name(plain_name(chosen.names[i]));
      const auto other = names_.find(std::string(name.substr(0, name.find_first_of(" \t"))));
      rows.push_back(other != names_.end() ? other->second : name);
      row_keys.push_back(other != names_.end() ? other->second : key_of(name, settings_.keys()));
    }
    const KeyRule rule = names_.empty() ? settings_.keys() : KeyRule{};
    for (const std::string& name : coding.names) keys.push_back(key_of(name, rule));
    matched = match_by_name(rows, row_keys, coding.names, keys);
  }

  Codons made;
  made.numseq = numseq;
  made.letters.reserve(static_cast<std::size_t>(numseq) * static_cast<std::size_t>(reading.nupo) * 3);
  Dropped dropped;
  int with_stops = 0;
  std::string first_stop;
  std::vector<bool> used(coding.names.size(), false);
  for (int i = 1; i <= numseq; ++i) {
    const std::string name(plain_name(chosen.names[i]));
    const int at = matched[static_cast<std::size_t>(i) - 1];
    if (at < 0) not_coded(words_of_run::no_coding_row, {std::to_string(i), name, job.coding});
    used[static_cast<std::size_t>(at)] = true;
    Backtranslated row;
    try {
      row = backtranslate({reading.row(i), static_cast<std::size_t>(reading.nupo)},
                          coding.sequences[static_cast<std::size_t>(at)], code_);
    } catch (const Failure& failure) {
      not_coded(words_of_run::bad_codon, {std::to_string(i), name, job.coding, failure.detail});
    }
    made.letters.insert(made.letters.end(), row.codons.begin(), row.codons.end());
    dropped.final_stops += row.final_stop ? 1 : 0;
    dropped.left_over += row.left_over > 0 ? 1 : 0;
    if (row.begins > 1) dropped.shifted.push_back(name);
    if (row.stops > 0 && with_stops++ == 0) first_stop = name;
  }
  if (const std::string text = dropped.words(); !text.empty()) made.decided.push_back(text);
  if (with_stops > 0) {
    made.notes.push_back(filled(words_of_run::coding_stops, {std::to_string(with_stops), first_stop}));
  }
  std::vector<std::string> extra;
  for (std::size_t k = 0; k < used.size(); ++k) {
    if (!used[k]) extra.push_back(coding.names[k]);
  }
  if (!extra.empty()) {
    made.notes.push_back(filled(words_of_run::coding_extra,
                                {std::to_string(extra.size()) + (extra.size() == 1 ? " sequence" : " sequences"),
                                 job.coding, listed_names(extra)}));
  }
  return made;
}

Alignment selected_codons(const Codons& codons, const Alignment& ali, const std::vector<Stretch>& blocks) {
  const ColumnNumbers column_of(ali);
  std::vector<std::size_t> columns;  // from 0
  for (const Stretch& block : blocks) {
    for (int p = block.first; p <= block.last; ++p) columns.push_back(static_cast<std::size_t>(column_of(p)) - 1);
  }
  Alignment selected;
  selected.numseq = ali.numseq;
  selected.nupo = static_cast<int>(columns.size()) * 3;
  selected.name = ali.name;
  const std::size_t width = codons.letters.size() / static_cast<std::size_t>(codons.numseq);
  std::vector<char> letters;
  letters.reserve(static_cast<std::size_t>(selected.numseq) * columns.size() * 3);
  for (std::size_t i = 0; i < static_cast<std::size_t>(selected.numseq); ++i) {
    const char* row = codons.letters.data() + i * width;
    for (const std::size_t column : columns) letters.insert(letters.end(), row + 3 * column, row + 3 * column + 3);
  }
  selected.let = Rows(std::move(letters), selected.nupo);
  return selected;
}

}  // namespace trimora::rooms
