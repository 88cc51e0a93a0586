// The public header, implemented on the rooms.
#include <algorithm>
#include <charconv>
#include <new>
#include <stdexcept>
#include <system_error>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "batch/codons.h"
#include "batch/counts.h"
#include "batch/genetic_code.h"
#include "batch/identity.h"
#include "batch/names.h"
#include "batch/supermatrix.h"
#include "ground/failure.h"
#include "ground/version.h"
#include "input/assembly.h"
#include "input/kind.h"
#include "input/read.h"
#include "output/forms.h"
#include "output/whole_file.h"
#include "selection/parameters.h"
#include "selection/presets.h"
#include "selection/reasons.h"
#include "selection/selection.h"
#include "trimora/trimora.h"

namespace trimora {

using rooms::Failure;

struct Alignment::Data {
  std::vector<std::string> names;
  rooms::Rows let;
  int nupo = 0;
  std::optional<Kind> kind;        // that the file declares, or that was given
  std::optional<Kind> by_letters;  // where it does not
  std::string format;
  std::vector<rooms::Stretch> inserts;

  int numseq() const { return static_cast<int>(names.size()); }
};

namespace {

/// Carry out `step`; what fails in it becomes an Error.
template <typename Step>
auto told(Step step) -> decltype(step()) {
  try {
    return step();
  } catch (const Failure& failure) {
    std::string what = failure.file.empty() ? "" : failure.file + ": ";
    throw Error(failure.kind, what + rooms::words(failure), failure.sequence - 1,
                failure.sequence > 0 || failure.file.empty() ? failure.name : failure.file);
  } catch (const std::bad_alloc&) {
    throw Error(Error::Kind::out_of_memory, rooms::words(Failure{}));
  } catch (const std::length_error&) {
    throw Error(Error::Kind::out_of_memory, rooms::words(Failure{}));
  }
}

[[noreturn]] void refuse(const std::string& why) {
  throw Failure{.kind = Failure::Kind::bad_argument, .detail = why};
}

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

namespace {

rooms::KeyRule rule_of(const Joining& joining) {
  using Style = rooms::KeyRule::Style;
  const std::string& parts = joining.name_parts;
  if (parts.empty()) return {.begin = joining.name_begin, .end = joining.name_end};
  if (!joining.name_begin.empty() || !joining.name_end.empty()) {
    refuse("name_parts goes with neither name_begin nor name_end");
  }
  if (parts == "OS") return {.style = Style::organism};
  if (parts == "brackets") return {.style = Style::brackets};
  if (parts == "letters") return {.style = Style::letters};
  const auto field = [&](std::size_t from, std::size_t to) {
    int number = 0;
    const auto [end, error] = std::from_chars(parts.data() + from, parts.data() + to, number);
    return error == std::errc() && end == parts.data() + to ? number : 0;
  };
  const std::size_t dash = parts.find('-');
  const int first = field(0, std::min(dash, parts.size()));
  const int last = dash == parts.npos ? first : field(dash + 1, parts.size());
  if (first < 1 || last < first) {
    refuse("name_parts is " + parts + ": it has to be fields, as 2 or 1-2, or OS, brackets or letters");
  }
  return {.style = Style::fields, .first = first, .last = last};
}

bool enough(long long number, const std::optional<Sequences>& least, long long total) {
  if (!least) return true;
  return least->percent ? rooms::at_least(number, least->number, total) : number >= least->number;
}

/// The sequences of an alignment that stay.
struct Gene {
  std::vector<int> rows;            // from 1
  rooms::Table<std::string> names;  // as stored, with line ends
  rooms::Table<std::string> keys;
};

/// The species that were asked for.
class Listed {
 public:
  explicit Listed(const Joining& joining) : species_(joining.species) {
    for (std::size_t k = 0; k < species_.size(); ++k) {
      const auto& [old_name, new_name] = species_[k];
      if (!places_.emplace(key_of(old_name), k).second) refuse("species has " + old_name + " twice");
      new_places_.emplace(key_of(new_name.empty() ? old_name : new_name), k);
    }
  }

  Gene choose(const Alignment::Data& data, const rooms::KeyRule& rule) const {
    struct Row {
      std::size_t place;
      int i;
      std::string name, key;
    };
    std::vector<Row> rows;
    for (int i = 1; i <= data.numseq(); ++i) {
      const std::string& name = data.names[static_cast<std::size_t>(i) - 1];
      std::string key = rooms::key_of(name, rule);
      if (species_.empty()) {
        rows.push_back({0, i, name, std::move(key)});
      } else if (const auto found = places_.find(key); found != places_.end()) {
        const std::string& new_name = species_[found->second].second;
        rows.push_back(
            {found->second, i, new_name.empty() ? name : new_name, new_name.empty() ? key : key_of(new_name)});
      }
    }
    std::stable_sort(rows.begin(), rows.end(), [](const Row& a, const Row& b) { return a.place < b.place; });
    Gene gene;
    for (Row& row : rows) {
      gene.rows.push_back(row.i);
      gene.names.append(row.name + '\n');
      gene.keys.append(std::move(row.key));
    }
    return gene;
  }

  /// Species in the order of the list.
  void sort(std::vector<int>& chosen, const rooms::Table<std::string>& name) const {
    if (species_.empty()) return;
    const auto place = [&](int s) { return new_places_.at(std::string(rooms::plain_name(name[s]))); };
    std::stable_sort(chosen.begin(), chosen.end(), [&](int a, int b) { return place(a) < place(b); });
  }

 private:
  static std::string key_of(const std::string& name) { return rooms::key_of(name, {.end = "\n"}); }
  const std::vector<std::pair<std::string, std::string>>& species_;
  std::unordered_map<std::string, std::size_t> places_, new_places_;
};

rooms::Alignment with_rows(const Alignment::Data& data, Gene& gene) {
  rooms::Alignment ali;
  ali.numseq = static_cast<int>(gene.rows.size());
  ali.nupo = data.nupo;
  ali.name = std::move(gene.names);
  const bool all = ali.numseq == data.numseq() && std::is_sorted(gene.rows.begin(), gene.rows.end());
  if (all) {
    ali.let = data.let;
    return ali;
  }
  std::vector<char> letters;
  letters.reserve(gene.rows.size() * static_cast<std::size_t>(data.nupo));
  for (const int i : gene.rows) {
    if (data.nupo > 0) letters.insert(letters.end(), data.let[i].from(1), data.let[i].from(1) + data.nupo);
  }
  ali.let = rooms::Rows(std::move(letters), data.nupo);
  return ali;
}

/// Fail where names do not tell the species of the alignment `number` apart, in words without an option of a program.
void check_names(const rooms::Table<std::string>& name, const rooms::Table<std::string>& keys, std::size_t number) {
  try {
    rooms::check_keys(name, keys);
  } catch (Failure& failure) {
    const std::string where = " of alignment " + std::to_string(number + 1);
    if (failure.kind == Failure::Kind::same_name) {
      failure.detail = ": they are of one species, by the names" + where + ". Where does the name of a species end?";
    } else {
      failure.detail += where;
    }
    throw;
  }
}

/// Fail where alignments cannot be put together by their order.
void check_order(const rooms::Alignment& ali, const rooms::Table<std::string>& first, Match match, std::size_t number) {
  const auto fail = [&](const std::string& why) {
    throw Failure{.kind = Failure::Kind::other_sequences,
                  .detail = "alignment " + std::to_string(number + 1) + " " + why};
  };
  if (ali.numseq != first.size()) {
    fail("has " + std::to_string(ali.numseq) + " sequences, the first one " + std::to_string(first.size()));
  }
  for (int i = 1; i <= ali.numseq && match == Match::same; ++i) {
    const std::string_view name = rooms::plain_name(ali.name[i]), other = rooms::plain_name(first[i]);
    const std::string_view word = rooms::second_word(name), other_word = rooms::second_word(other);
    const bool same_word = word.empty() || other_word.empty() || word == other_word;
    if (rooms::key_of(name) == rooms::key_of(other) && same_word) continue;
    fail("has " + std::string(name) + " where the first one has " + std::string(other));
  }
}

}  // namespace

Supermatrix supermatrix(const std::vector<Alignment>& alignments, const Joining& joining) {
  return told([&] {
    if (alignments.empty()) refuse("there is no alignment");
    const bool by_name = joining.match == Match::name;
    if (joining.min_genes && !by_name) refuse("min_genes goes with match by name");
    for (const auto& least : {joining.min_species, joining.min_genes}) {
      if (least && (least->number < 1 || (least->percent && least->number > 100))) {
        refuse("min_species and min_genes are from 1, or from 1 to 100 per cent");
      }
    }
    if (joining.min_columns < 0) refuse("min_columns is below 0");
    const rooms::KeyRule rule = rule_of(joining);
    const Listed listed(joining);
    std::vector<Gene> genes;
    std::unordered_set<std::string> everybody;
    for (const Alignment& each : alignments) {
      const Gene& gene = genes.emplace_back(listed.choose(each.data(), rule));
      for (int i = 1; i <= gene.keys.size() && joining.min_species; ++i) everybody.insert(gene.keys[i]);
    }

    rooms::Supermatrix all({.joined = {false, true, false, false}, .by_name = by_name});
    std::optional<Kind> kind;
    std::vector<std::pair<std::size_t, std::size_t>> parts;
    std::vector<bool> left_out;
    std::vector<rooms::Table<rooms::RowCounts>> counts;  // of the alignments that stay
    rooms::Table<std::string> first;
    std::size_t columns = 0;
    for (std::size_t k = 0; k < alignments.size(); ++k) {
      const Alignment::Data& data = alignments[k].data();
      const bool out = genes[k].rows.empty() || data.nupo < joining.min_columns ||
                       !enough(std::ssize(genes[k].rows), joining.min_species, std::ssize(everybody));
      left_out.push_back(out);
      const std::size_t before = columns;
      if (!out) columns += alignments[k].width();
      parts.emplace_back(before, columns);
      if (out) continue;
      const std::optional<Kind> own = data.kind ? data.kind : data.by_letters;
      if (kind && own && (*kind == Kind::protein) != (*own == Kind::protein)) {
        throw Failure{.kind = Failure::Kind::contrary_type,
                      .detail = "alignment " + std::to_string(k + 1) + " has another type of sequence"};
      }
      if (own) kind = kind && *kind != *own ? Kind::dna : *own;
      const rooms::Alignment ali = with_rows(data, genes[k]);
      if (by_name) {
        check_names(ali.name, genes[k].keys, k);
      } else {
        if (first.size() == 0) first = ali.name;
        check_order(ali, first, joining.match, k);
      }
      const char seq_type = rooms::seq_type_of(own.value_or(Kind::protein));
      all.add("", ali, genes[k].keys, {}, seq_type);
      counts.push_back(rooms::count(ali, {{1, ali.nupo}}, seq_type));
    }
    if (columns > 2'147'483'646) throw Failure{.kind = Failure::Kind::too_long, .expected = 2'147'483'646};

    std::vector<int> chosen;
    bool meet = !by_name || all.size() < 2;
    for (int i = 1; i <= all.name().size(); ++i) {
      if (by_name) meet = meet || all.species().genes_of(i) > 1;
      if (!by_name || enough(all.species().genes_of(i), joining.min_genes, all.size())) chosen.push_back(i);
    }
    if (!meet && all.size() > 1) {
      throw Failure{.kind = Failure::Kind::other_sequences,
                    .detail = "no species is in two of the alignments: where does its name end?"};
    }
    if (chosen.empty()) {
      throw Failure{.kind = Failure::Kind::other_sequences,
                    .detail = all.size() == 0 ? "no alignment is left" : "no species is left"};
    }
    if (by_name) listed.sort(chosen, all.name());

    auto joined = std::make_shared<Alignment::Data>();
    joined->kind = kind;
    joined->nupo = static_cast<int>(columns);
    std::vector<char> letters;
    letters.reserve(chosen.size() * columns);
    rooms::Table<std::string> names;
    for (const int i : chosen) names.append(all.name()[i]);
    const rooms::Sheet sheet = all.sheet(rooms::Joined::input, chosen, names);
    std::vector<std::vector<int>> occupancy;
    for (int k = 1; k <= names.size(); ++k) {
      joined->names.emplace_back(rooms::plain_name(names[k]));
      sheet.row(k, [&](const char* text, std::ptrdiff_t count) { letters.insert(letters.end(), text, text + count); });
      std::vector<int> cells;
      std::size_t gene = 0;
      for (const bool out : left_out) {
        const int row = out ? 0 : all.row(gene, chosen[static_cast<std::size_t>(k) - 1]);
        cells.push_back(row == 0 ? -1 : static_cast<int>(counts[gene][row].letters));
        if (!out) ++gene;
      }
      occupancy.push_back(std::move(cells));
    }
    joined->let = rooms::Rows(std::move(letters), joined->nupo);
    return Supermatrix{Alignment(std::move(joined)), std::move(parts), std::move(left_out), std::move(occupancy)};
  });
}

Alignment codons(const Alignment& proteins, const std::vector<std::string>& names,
                 const std::vector<std::string>& sequences, int code) {
  return told([&] {
    const auto genetic_code = rooms::GeneticCode::numbered(code);
    if (!genetic_code) refuse("there is no genetic code " + std::to_string(code));
    if (names.size() != sequences.size()) {
      refuse(std::to_string(names.size()) + " names for " + std::to_string(sequences.size()) + " sequences");
    }
    const Alignment::Data& data = proteins.data();
    const auto keys = [](const std::vector<std::string>& of) {
      std::vector<std::string> all;
      all.reserve(of.size());
      for (const std::string& name : of) all.push_back(rooms::key_of(name, rooms::KeyRule{}));
      return all;
    };
    const std::vector<int> matched = rooms::match_by_name(data.names, keys(data.names), names, keys(names));
    if (data.nupo > 2'147'483'646 / 3) throw Failure{.kind = Failure::Kind::too_long, .expected = 2'147'483'646 / 3};
    auto made = std::make_shared<Alignment::Data>();
    made->names = data.names;
    made->kind = Kind::codons;
    made->nupo = data.nupo * 3;
    std::vector<char> letters;
    letters.reserve(data.names.size() * static_cast<std::size_t>(made->nupo));
    for (std::size_t k = 0; k < data.names.size(); ++k) {
      const auto fail = [&](const std::string& why) {
        throw Failure{.kind = Failure::Kind::other_sequences,
                      .sequence = static_cast<int>(k) + 1,
                      .name = data.names[k],
                      .detail = "sequence " + std::to_string(k + 1) + " (" + data.names[k] + ") " + why};
      };
      if (matched[k] < 0) fail("has no coding sequence");
      try {
        const std::string codons =
            rooms::backtranslate(proteins.row(k),
                                 rooms::nucleotides_of(sequences[static_cast<std::size_t>(matched[k])]), *genetic_code)
                .codons;
        letters.insert(letters.end(), codons.begin(), codons.end());
      } catch (const Failure& failure) {
        if (failure.kind != Failure::Kind::contrary_type) throw;
        fail(failure.detail);
      }
    }
    made->let = rooms::Rows(std::move(letters), made->nupo);
    return Alignment(std::move(made));
  });
}

CodingSequences read_coding_sequences(const std::string& path) {
  return told([&] {
    rooms::CodingSequences coding = rooms::read_coding_sequences(path);
    return CodingSequences{std::move(coding.names), std::move(coding.sequences)};
  });
}

Alignment codons(const Alignment& proteins, const Selection& selection, const CodingSequences& coding, int code) {
  const Alignment all = codons(proteins, coding.names, coding.sequences, code);
  return told([&] {
    Selection triplets;
    triplets.kind = Kind::codons;
    triplets.columns.reserve(3 * selection.columns.size());
    for (const int column : selection.columns) {
      if (column < 0 || static_cast<std::size_t>(column) >= proteins.width()) {
        refuse("column " + std::to_string(column) + " is not in the alignment");
      }
      for (int k = 0; k < 3; ++k) triplets.columns.push_back(3 * column + k);
    }
    return trim(all, triplets);
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
