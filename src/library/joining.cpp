// The public header, implemented on the rooms: to put genes together, and the codons of proteins.
#include <algorithm>
#include <charconv>
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
#include "library/alignment_data.h"
#include "selection/parameters.h"

namespace trimora {

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

}  // namespace trimora
