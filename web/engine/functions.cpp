// The library as functions.mjs calls it: alignments, counts and selections live here, and JavaScript holds their addresses.
// Words     bytes: text with its length, as names and letters may hold anything | kind, gaps, form: the place of the
//           choice in the enumeration of the header; -1: none
// Errors    a function that fails returns nothing (0) and leaves the failure in `failure`; the others leave it as it is
// Counting  sequences and columns from 0
#include <emscripten.h>

#include <cstdint>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "batch/genetic_code.h"
#include "batch/name_keys.h"
#include "ground/failure.h"
#include "input/read.h"
#include "selection/presets.h"
#include "selection/selection_state.h"
#include "trimora/trimora.h"
#include "trimora_run/options.h"

#define EXPORTED extern "C" EMSCRIPTEN_KEEPALIVE

namespace {

using trimora::Alignment;
using trimora::ColumnCounts;
using trimora::Kind;
using trimora::Selection;

/// What JavaScript reads: where it is, and how much.
struct Bytes {
  const void* first;
  std::size_t size;
};
std::string kept;  // the text that was handed out last
Bytes* handed_text(std::string text) {
  static Bytes bytes;
  kept = std::move(text);
  bytes = {kept.data(), kept.size()};
  return &bytes;
}
Bytes* handed_text(std::string_view text) {
  static Bytes bytes;
  bytes = {text.data(), text.size()};
  return &bytes;
}
template <typename Entry>
Bytes handed(const std::vector<Entry>& entries) {
  return {entries.data(), entries.size() * sizeof(Entry)};
}

std::optional<trimora::Error> failure;

template <typename Step>
auto unless_it_fails(Step step) -> decltype(step()) {
  try {
    return step();
  } catch (const trimora::Error& error) {
    failure = error;
  } catch (const std::bad_alloc&) {
    failure = trimora::Error(trimora::Error::Kind::out_of_memory, "there is not enough memory");
  }
  return {};
}

std::optional<Kind> kind_of(int number) {
  if (number < 0) return {};
  return static_cast<Kind>(number);
}

/// Texts one after another, each with its length before.
struct Texts {
  const char* bytes;
  const std::uint32_t* lengths;
  std::string_view next() {
    const std::string_view text(bytes, *lengths++);
    bytes += text.size();
    return text;
  }
};

/// The numbers of parameters, in this order; -1: as by default.
struct Wanted {
  int preset, kind, gaps, b0, b1, b1_percent, b2, b2_percent, b3, b4, similarity;

  trimora::Parameters parameters() const {
    trimora::Parameters p;
    if (preset >= 0) p = trimora::rooms::presets[preset].parameters;
    p.kind = kind_of(kind);
    if (gaps >= 0) p.gaps = static_cast<trimora::Gaps>(gaps);
    if (b0 != -1) p.b0 = b0;
    if (b1 != -1) p.b1 = trimora::Sequences{b1, b1_percent > 0};
    if (b2 != -1) p.b2 = trimora::Sequences{b2, b2_percent > 0};
    if (b3 != -1) p.b3 = b3;
    if (b4 != -1) p.b4 = b4;
    if (similarity >= 0) p.similarity = similarity > 0;
    return p;
  }
};

std::string json(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += static_cast<unsigned char>(c) < ' ' ? ' ' : c;  // JSON has no control character as it is
  }
  return quoted + '"';
}

}  // namespace

// ---- Texts and failures

/// Free the text that was handed out last.
EXPORTED void trimora_forget() {
  kept = std::string();
}

EXPORTED Bytes* trimora_error() {
  const trimora::Error& e = *failure;
  return handed_text(std::string(trimora::name_of(e.kind)) + '\n' + std::to_string(e.sequence) + '\n' + e.name + '\0' +
                     e.what());
}

/// The options of the program, as JSON.
EXPORTED Bytes* trimora_options() {
  std::string all = "[";
  for (const trimora::rooms::Option& option : trimora::rooms::all_options()) {
    all += all.size() > 1 ? ",{" : "{";
    all += "\"name\":" + json(option.name) + ",\"values\":" + json(option.values) +
           ",\"standard\":" + json(option.standard);
    all += ",\"least\":" + std::to_string(option.range.least) + ",\"most\":" + std::to_string(option.range.most);
    all += ",\"brief\":" + json(option.brief) + '}';
  }
  return handed_text(all + ']');
}

/// The presets, as JSON, with the words of Parameters.
EXPORTED Bytes* trimora_presets() {
  static constexpr const char* gap_names[] = {"none", "half", "all"};
  std::string all = "[";
  for (const trimora::rooms::Preset& preset : trimora::rooms::presets) {
    const trimora::Parameters& p = preset.parameters;
    all += all.size() > 1 ? ",{" : "{";
    all += "\"name\":" + json(preset.name) + ",\"every\":" + (p.every ? "true" : "false") + ",\"parameters\":{";
    if (p.b2) all += "\"b2\":" + json(std::to_string(p.b2->number) + (p.b2->percent ? "%" : "")) + ',';
    all += "\"b3\":" + std::to_string(p.b3) + ",\"b4\":" + std::to_string(p.b4) +
           ",\"gaps\":" + json(gap_names[static_cast<int>(p.gaps)]) + "}}";
  }
  return handed_text(all + ']');
}

/// The genetic codes, as JSON: the number of each and its residues, as GeneticCode has them.
EXPORTED Bytes* trimora_genetic_codes() {
  std::string all = "[";
  for (const int number : trimora::rooms::genetic_code_numbers()) {
    all += all.size() > 1 ? ",{" : "{";
    all += "\"number\":" + std::to_string(number) +
           ",\"residues\":" + json(trimora::rooms::GeneticCode::numbered(number)->residues()) + '}';
  }
  return handed_text(all + ']');
}

/// b1 and b2 by default, as numbers of sequences; the first is also the least of b1.
EXPORTED int trimora_standard(int numseq, int b2) {
  trimora::rooms::SelectionState run;
  run.numseq = numseq;
  trimora::rooms::derive_defaults(run);
  return b2 != 0 ? run.flankval : run.negval;
}

/// The rules that bring names of several alignments together, as JSON. `texts`: the names in each, with a line end after
/// every one.
EXPORTED Bytes* trimora_name_rules(std::size_t alignments, Texts* texts) {
  return unless_it_fails([&] {
    std::vector<trimora::rooms::Names> genes(alignments);
    for (trimora::rooms::Names& names : genes) {
      std::string_view text = texts->next();
      for (std::size_t end; (end = text.find('\n')) != text.npos; text.remove_prefix(end + 1)) {
        names.emplace_back(text.substr(0, end));
      }
    }
    std::string all = "[";
    for (const trimora::rooms::Proposal& each : trimora::rooms::proposals(genes)) {
      std::string options = trimora::rooms::options_for(each.rule);
      std::erase(options, '\'');  // which are for a shell
      all += all.size() > 1 ? ",{" : "{";
      all += "\"options\":" + json(options) + ",\"name\":" + json(each.name) + ",\"key\":" + json(each.key) +
             ",\"meeting\":" + std::to_string(each.meeting) + '}';
    }
    return handed_text(all + ']');
  });
}

// ---- Alignments

/// Whether a file that begins with `head` is in a format that is read.
EXPORTED int trimora_can_read(const char* head, std::size_t size) {
  try {
    const trimora::rooms::InputFormat* format = trimora::rooms::Input::memory({head, size}).format();
    return format != nullptr && format->read != nullptr ? 1 : 0;
  } catch (const trimora::rooms::Failure&) {
    return 0;
  }
}

EXPORTED Alignment* trimora_read(const char* bytes, std::size_t size) {
  return unless_it_fails([&] { return new Alignment(trimora::read_text({bytes, size})); });
}

/// `texts`: a name, its letters, the next name.
EXPORTED Alignment* trimora_alignment(std::size_t size, Texts* texts, int kind) {
  return unless_it_fails([&] {
    std::vector<std::string> names;
    std::vector<std::string_view> rows;
    for (std::size_t i = 0; i < size; ++i) {
      names.emplace_back(texts->next());
      rows.push_back(texts->next());
    }
    return new Alignment(Alignment::from_rows(
        names, [&](std::size_t i) { return rows[i]; }, kind_of(kind)));
  });
}

EXPORTED void trimora_drop_alignment(Alignment* ali) {
  delete ali;
}
EXPORTED std::size_t trimora_size(const Alignment* ali) {
  return ali->size();
}
EXPORTED std::size_t trimora_width(const Alignment* ali) {
  return ali->width();
}
EXPORTED int trimora_kind(const Alignment* ali) {
  const std::optional<Kind> kind = ali->kind();
  return kind ? static_cast<int>(*kind) : -1;
}
EXPORTED const char* trimora_row(const Alignment* ali, std::size_t sequence) {
  return ali->row(sequence).data();
}
EXPORTED Bytes* trimora_name(const Alignment* ali, std::size_t sequence) {
  return handed_text(ali->name(sequence));
}
EXPORTED Bytes* trimora_format(const Alignment* ali) {
  return handed_text(ali->format());
}
EXPORTED Bytes* trimora_write(const Alignment* ali, int form) {
  return unless_it_fails([&] { return handed_text(trimora::write(*ali, static_cast<trimora::Form>(form))); });
}
EXPORTED Alignment* trimora_trim(const Alignment* ali, const int* columns, std::size_t count, int kind) {
  return unless_it_fails([&] {
    Selection selection;
    selection.columns.assign(columns, columns + count);
    selection.kind = static_cast<Kind>(kind);
    return new Alignment(trimora::trim(*ali, selection));
  });
}
/// The first and one past the last column of each go to `parts`.
EXPORTED Alignment* trimora_supermatrix(Alignment** all, std::size_t count, std::uint32_t* parts) {
  return unless_it_fails([&] {
    std::vector<Alignment> alignments;
    for (std::size_t k = 0; k < count; ++k) alignments.push_back(*all[k]);
    trimora::Supermatrix joined = trimora::supermatrix(alignments);
    for (const auto& [first, end] : joined.parts) {
      *parts++ = static_cast<std::uint32_t>(first);
      *parts++ = static_cast<std::uint32_t>(end);
    }
    return new Alignment(std::move(joined.alignment));
  });
}
EXPORTED Alignment* trimora_codons(const Alignment* proteins, std::size_t size, Texts* texts, int code) {
  return unless_it_fails([&] {
    std::vector<std::string> names, sequences;
    for (std::size_t i = 0; i < size; ++i) {
      names.emplace_back(texts->next());
      sequences.emplace_back(texts->next());
    }
    return new Alignment(trimora::codons(*proteins, names, sequences, code));
  });
}

// ---- Selections

EXPORTED ColumnCounts* trimora_counts(const Alignment* ali, int kind) {
  return unless_it_fails([&] { return new ColumnCounts(*ali, kind_of(kind)); });
}
EXPORTED void trimora_drop_counts(ColumnCounts* counts) {
  delete counts;
}

EXPORTED Selection* trimora_select(const Alignment* ali, const Wanted* wanted) {
  return unless_it_fails([&] { return new Selection(trimora::select(*ali, wanted->parameters())); });
}
EXPORTED Selection* trimora_select_counts(const ColumnCounts* counts, const Wanted* wanted) {
  return unless_it_fails([&] { return new Selection(trimora::select(*counts, wanted->parameters())); });
}
EXPORTED void trimora_drop_selection(Selection* selection) {
  delete selection;
}
EXPORTED Bytes* trimora_table(const Selection* s, int table) {
  static Bytes bytes;
  switch (table) {
    case 0: bytes = handed(s->columns); break;
    case 1: bytes = handed(s->blocks); break;
    case 2: bytes = handed(s->scores); break;
    case 3: bytes = handed(s->classes); break;
    case 4: bytes = handed(s->residues); break;
    default: bytes = handed(s->initial);
  }
  return &bytes;
}
EXPORTED int trimora_in_force(const Selection* s, int which) {
  return which == 0 ? static_cast<int>(s->kind) : which == 1 ? s->b1 : s->b2;
}

EXPORTED trimora::Reasons* trimora_reasons(const ColumnCounts* counts, const Wanted* wanted, int first) {
  return unless_it_fails([&] { return new trimora::Reasons(trimora::reasons(*counts, wanted->parameters(), first)); });
}
/// With a line end after each.
EXPORTED Bytes* trimora_reason_words(const trimora::Reasons* reasons) {
  std::string text;
  for (const std::string& word : reasons->words) text += word + '\n';
  return handed_text(std::move(text));
}
EXPORTED Bytes* trimora_reason_index(const trimora::Reasons* reasons) {
  static Bytes bytes;
  bytes = handed(reasons->index);
  return &bytes;
}
EXPORTED void trimora_drop_reasons(trimora::Reasons* reasons) {
  delete reasons;
}
