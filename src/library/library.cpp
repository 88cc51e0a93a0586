// The public header, implemented on the rooms: to read, select, trim and write.
#include <algorithm>
#include <unordered_map>
#include <utility>

#include "ground/version.h"
#include "input/assembly.h"
#include "input/kind.h"
#include "input/read.h"
#include "library/alignment_data.h"
#include "output/forms.h"
#include "output/whole_file.h"
#include "selection/parameters.h"
#include "selection/presets.h"
#include "selection/reasons.h"
#include "selection/selection.h"

namespace trimora {

namespace {

Alignment made_of(rooms::Reading reading, std::optional<Kind> kind) {
  auto data = std::make_shared<Alignment::Data>();
  data->kind = kind ? kind : reading.kind;
  if (!data->kind) data->by_letters = rooms::kind_by_letters(reading).kind;
  if (data->kind.value_or(data->by_letters.value_or(Kind::protein)) != Kind::protein) rooms::read_u_as_t(reading);
  data->format = reading.format;
  data->inserts = std::move(reading.inserts);
  data->names = std::move(reading.names);
  data->nupo = reading.nupo;
  data->let = rooms::Rows(std::move(reading.letters), reading.nupo);
  return Alignment(std::move(data));
}

/// The letters of an alignment in a reading of their own.
rooms::Reading copied(const Alignment::Data& data) {
  rooms::Reading reading;
  reading.names = data.names;
  reading.nupo = data.nupo;
  reading.letters.reserve(data.names.size() * static_cast<std::size_t>(data.nupo));
  for (int i = 1; i <= data.numseq(); ++i) {
    const char* first = data.let[i].from(1);
    reading.letters.insert(reading.letters.end(), first, first + data.nupo);
  }
  return reading;
}

/// The alignment whose blocks are selected: the letters are shared where no column is dropped.
rooms::Alignment for_selection(const Alignment::Data& data, Kind kind) {
  rooms::Alignment ali;
  ali.numseq = data.numseq();
  ali.nupo = data.nupo;
  ali.let = data.let;
  ali.inserts = data.inserts;
  const bool settled = data.kind.value_or(data.by_letters.value_or(Kind::protein)) != Kind::protein;
  if (kind != Kind::protein && !settled) {  // U has not been looked at
    rooms::Reading reading = copied(data);
    rooms::read_u_as_t(reading);
    ali.let = rooms::Rows(std::move(reading.letters), data.nupo);
  }
  return rooms::without_gap_columns(std::move(ali));
}

rooms::SelectionState state_of(const Parameters& p, Kind kind, int numseq) {
  rooms::SelectionState run;
  run.numseq = numseq;
  run.seq_type = rooms::seq_type_of(kind);
  rooms::set_parameters(p, run);
  return run;
}

/// What select() and reasons() are made from.
struct Found {
  Kind kind;
  rooms::SelectionState run;
  rooms::Alignment work;  // without letters, where they are not needed any more
  rooms::PositionScores scores;
  rooms::SelectedBlocks blocks;
};

/// The type of sequence in force.
Kind settled(std::optional<Kind> wanted, std::optional<Kind> own) {
  if (!wanted && !own) throw Failure{.kind = Failure::Kind::undecided_type, .detail = ": set the kind"};
  return wanted ? *wanted : *own;
}

Found found_in(const Alignment& ali, const Parameters& parameters) {
  const Alignment::Data& data = ali.data();
  if (data.nupo == 0) throw Failure{.kind = Failure::Kind::too_few_positions};
  const Kind kind = settled(parameters.kind, ali.kind());
  Found found{kind, state_of(parameters, kind, data.numseq()), for_selection(data, kind), {}, {}};
  rooms::Selection blocks = rooms::find_blocks(found.work, found.run, false);
  found.scores = std::move(blocks.scores);
  found.blocks = std::move(blocks.blocks);
  return found;
}

char class_of(float score, const rooms::SelectionState& run) {
  if (score == 0) return '-';
  if (score < static_cast<float>(run.negval)) return '.';
  return score < static_cast<float>(run.flankval) ? 'C' : 'F';
}

Selection selection_of(const Found& found, int nupo) {
  Selection selection;
  selection.b1 = found.run.negval;
  selection.b2 = found.run.flankval;
  selection.kind = found.kind;
  const rooms::ColumnNumbers column_of(found.work);
  const auto from_0 = [&](int p) { return static_cast<int>(column_of(p)) - 1; };
  const auto width = static_cast<std::size_t>(nupo);
  selection.scores.assign(width, 0.0F);
  selection.classes.assign(width, 'd');
  selection.residues.assign(width, '?');
  int position = 0;
  for (const rooms::Stretch& kept : rooms::complement(found.work.dropped, nupo)) {
    for (int column = kept.first; column <= kept.last; ++column) {
      const float score = found.scores.val[++position];
      const auto at = static_cast<std::size_t>(column) - 1;
      selection.scores[at] = score;
      selection.classes[at] = class_of(score, found.run);
      selection.residues[at] = found.scores.val_aa[position];
    }
  }
  const auto add = [&](std::vector<std::pair<int, int>>& blocks, const rooms::Stretch& block) {
    blocks.emplace_back(from_0(block.first), from_0(block.last) + 1);
  };
  for (const rooms::Stretch& block : found.blocks.pos) add(selection.initial, block);
  selection.columns.reserve(static_cast<std::size_t>(found.blocks.nupo3));
  for (const rooms::Stretch& block : found.blocks.newpos) {
    if (block.length() <= 0) continue;  // of codons, without a whole one
    for (int p = block.first; p <= block.last; ++p) selection.columns.push_back(from_0(p));
    add(selection.blocks, block);
  }
  return selection;
}

Reasons reasons_of(const Found& found, const rooms::Table<rooms::Verdict>& verdicts, int nupo, int first) {
  const rooms::ColumnNumbers column_of(found.work);
  Reasons all;
  std::unordered_map<long long, int> known;
  const auto index_of = [&](const rooms::Verdict& verdict) {
    const long long key = verdict.number * 256LL + static_cast<int>(verdict.reason);
    const auto [at, fresh] = known.try_emplace(key, static_cast<int>(known.size()));
    if (fresh) all.words.push_back(rooms::words(verdict, found.run, [&](int p) { return column_of(p) - 1 + first; }));
    return at->second;
  };
  all.index.reserve(static_cast<std::size_t>(nupo));
  int p = 1;
  for (const rooms::Stretch& kept : rooms::complement(found.work.dropped, nupo)) {
    all.index.resize(static_cast<std::size_t>(kept.first) - 1, -1);
    for (int column = kept.first; column <= kept.last; ++column) all.index.push_back(index_of(verdicts[p++]));
  }
  all.index.resize(static_cast<std::size_t>(nupo), -1);
  for (const rooms::Stretch& insert : found.work.inserts) {
    std::fill_n(all.index.begin() + insert.first - 1, insert.length(), index_of({rooms::Reason::insert}));
  }
  if (found.work.dropped.empty()) return all;
  std::replace(all.index.begin(), all.index.end(), -1, index_of({rooms::Reason::all_gap}));
  return all;
}

/// The sheet of a whole alignment; `name` has to outlive it.
rooms::Sheet sheet_of(const Alignment::Data& data, const rooms::Table<std::string>& name) {
  return {&name, data.nupo, [&data](int i, const rooms::Sheet::Put& put) {
            if (data.nupo > 0) put(data.let[i].from(1), data.nupo);
          }};
}

void write_into(rooms::OutputFile& out, const Alignment::Data& data, Form form) {
  rooms::Table<std::string> stored;
  for (const std::string& name : data.names) stored.append(name + "\n");
  rooms::InputState run;
  run.fileformat = rooms::fasta;
  run.seq_type = rooms::seq_type_of(data.kind.value_or(data.by_letters.value_or(Kind::protein)));
  const rooms::FormNames names = rooms::names_for(form, stored);
  rooms::write_form(out, sheet_of(data, names.name), form, run);
}

}  // namespace

const char* version() {
  return rooms::version_text;
}

const char* name_of(Error::Kind kind) {
  using enum Error::Kind;
  switch (kind) {
    case not_found: return "not_found";
    case not_readable: return "not_readable";
    case not_writable: return "not_writable";
    case changed: return "changed";
    case empty: return "empty";
    case unknown_format: return "unknown_format";
    case refused_format: return "refused_format";
    case ambiguous_format: return "ambiguous_format";
    case damaged: return "damaged";
    case bad_record: return "bad_record";
    case unfinished_record: return "unfinished_record";
    case name_too_long: return "name_too_long";
    case bad_character: return "bad_character";
    case unequal_lengths: return "unequal_lengths";
    case too_long: return "too_long";
    case too_few_sequences: return "too_few_sequences";
    case too_few_positions: return "too_few_positions";
    case undecided_type: return "undecided_type";
    case contrary_type: return "contrary_type";
    case other_sequences: return "other_sequences";
    case unfit_name: return "unfit_name";
    case same_name: return "same_name";
    case bad_argument: return "bad_argument";
    case would_overwrite: return "would_overwrite";
    case out_of_memory: return "out_of_memory";
  }
  return "";  // no other value is ever made
}

Error::Error(Kind error_kind, std::string what, int which, std::string whose)
    : kind(error_kind), sequence(which), name(std::move(whose)), what_(std::move(what)) {}

Error::~Error() = default;

Alignment::Alignment(const std::vector<std::string>& names, const std::vector<std::string>& rows,
                     std::optional<Kind> kind) {
  if (names.size() != rows.size()) {
    told([&] { refuse(std::to_string(names.size()) + " names for " + std::to_string(rows.size()) + " rows"); });
  }
  const auto row = [&](std::size_t sequence) { return std::string_view(rows[sequence]); };
  data_ = from_rows(names, row, kind).data_;
}

Alignment Alignment::from_rows(const std::vector<std::string>& names,
                               const std::function<std::string_view(std::size_t sequence)>& row,
                               std::optional<Kind> kind) {
  return told([&] {
    std::optional<rooms::Assembly> assembly;
    for (std::size_t i = 0; i < names.size(); ++i) {
      const std::string_view letters = row(i);
      if (!assembly) assembly.emplace(names.size() * letters.size());
      assembly->add(names[i], letters);
    }
    if (!assembly) assembly.emplace();
    rooms::Reading reading = assembly->finish();
    rooms::settle_stars(reading);
    return made_of(std::move(reading), kind);
  });
}

std::size_t Alignment::size() const {
  return data_->names.size();
}

std::size_t Alignment::width() const {
  return static_cast<std::size_t>(data_->nupo);
}

std::string_view Alignment::name(std::size_t sequence) const {
  return data_->names[sequence];
}

std::string_view Alignment::row(std::size_t sequence) const {
  if (data_->nupo == 0) return {};
  return {data_->let[static_cast<int>(sequence) + 1].from(1), width()};
}

std::optional<Kind> Alignment::kind() const {
  return data_->kind ? data_->kind : data_->by_letters;
}

std::string_view Alignment::format() const {
  return data_->format;
}

Alignment read(const std::string& path) {
  return told([&] { return made_of(rooms::read(path), std::nullopt); });
}

Alignment read_text(std::string_view text) {
  return told([&] { return made_of(rooms::read_text(text), std::nullopt); });
}

Parameters preset(std::string_view name) {
  return told([&] {
    std::string names;
    for (const rooms::Preset& each : rooms::presets) {
      if (each.name == name) return each.parameters;
      names.append(names.empty() ? "" : ", ").append(each.name);
    }
    refuse("there is no preset " + std::string(name) + ", only " + names);
  });
}

struct ColumnCounts::Data {
  Kind kind = Kind::protein;
  int width = 0;          // columns
  rooms::Alignment work;  // without its letters
  rooms::PositionCounts counts;
};

ColumnCounts::ColumnCounts(const Alignment& ali, std::optional<Kind> kind)
    : data_(told([&] {
        const Alignment::Data& data = ali.data();
        if (data.nupo == 0) throw Failure{.kind = Failure::Kind::too_few_positions};
        auto made = std::make_shared<Data>();
        made->kind = settled(kind, ali.kind());
        made->width = data.nupo;
        made->work = for_selection(data, made->kind);
        made->counts = rooms::count_positions(made->work, state_of({}, made->kind, data.numseq()));
        made->work.let = {};
        return made;
      })) {}

Kind ColumnCounts::kind() const {
  return data_->kind;
}

namespace {

Found found_in(const ColumnCounts& counts, const Parameters& parameters) {
  const ColumnCounts::Data& data = counts.data();
  const Kind kind = parameters.kind.value_or(data.kind);
  if ((kind == Kind::protein) != (data.kind == Kind::protein)) {
    refuse("the columns were counted as another type of sequence");
  }
  Found found{kind, state_of(parameters, kind, data.work.numseq), data.work, {}, {}};
  found.scores = rooms::scores_of(data.counts, found.run);
  found.blocks = found.run.every ? rooms::every_position(data.work.nupo) : rooms::getpos(found.scores, found.run);
  return found;
}

}  // namespace

Selection select(const Alignment& ali, const Parameters& parameters) {
  return told([&] { return selection_of(found_in(ali, parameters), ali.data().nupo); });
}

Selection select(const ColumnCounts& counts, const Parameters& parameters) {
  return told([&] { return selection_of(found_in(counts, parameters), counts.data().width); });
}

std::vector<std::string> reasons(const Alignment& ali, const Parameters& parameters, int first) {
  return told([&] {
    const Found found = found_in(ali, parameters);
    const auto [words, index] =
        reasons_of(found, rooms::verdicts(found.work, found.scores, found.blocks, found.run), ali.data().nupo, first);
    std::vector<std::string> all;
    all.reserve(index.size());
    for (const int reason : index) all.push_back(words[static_cast<std::size_t>(reason)]);
    return all;
  });
}

Reasons reasons(const ColumnCounts& counts, const Parameters& parameters, int first) {
  return told([&] {
    const Found found = found_in(counts, parameters);
    return reasons_of(found, rooms::verdicts(counts.data().counts.gaps, found.scores, found.blocks, found.run),
                      counts.data().width, first);
  });
}

Alignment trim(const Alignment& ali, const Selection& selection) {
  return told([&] {
    const Alignment::Data& data = ali.data();
    for (const int column : selection.columns) {
      if (column < 0 || column >= data.nupo) refuse("column " + std::to_string(column) + " is not in the alignment");
    }
    auto trimmed = std::make_shared<Alignment::Data>();
    trimmed->names = data.names;
    trimmed->kind = selection.kind;
    trimmed->nupo = static_cast<int>(selection.columns.size());
    std::vector<char> letters;
    letters.reserve(data.names.size() * selection.columns.size());
    for (int i = 1; i <= data.numseq(); ++i) {
      const char* row = data.nupo > 0 ? data.let[i].from(1) : nullptr;
      for (const int column : selection.columns) letters.push_back(row[column]);
    }
    trimmed->let = rooms::Rows(std::move(letters), trimmed->nupo);
    return Alignment(std::move(trimmed));
  });
}

std::string write(const Alignment& ali, Form form) {
  return told([&] {
    std::string text;
    rooms::OutputFile out(&text);
    write_into(out, ali.data(), form);
    static_cast<void>(out.close());  // memory is never incomplete
    return text;
  });
}

void write(const Alignment& ali, Form form, const std::string& path) {
  told([&] { rooms::write_whole(path, [&](rooms::OutputFile& out) { write_into(out, ali.data(), form); }); });
}

}  // namespace trimora
