#include "output/forms.h"

#include <algorithm>
#include <cstring>
#include <unordered_map>

#include "ground/failure.h"
#include "input/letters.h"
#include "output/record.h"

namespace trimora::rooms {

namespace {

// ---- Layouts

/// The letters of a row in plain lines of sixty.
class Lines {
 public:
  explicit Lines(OutputFile& out) : out_(out) {}
  void add(const char* text, std::ptrdiff_t count) {
    while (count > 0) {
      const std::ptrdiff_t taken = std::min(count, line_length - column_);
      if (taken == line_length) {
        char* to = out_.room(line_length + 1);
        std::memcpy(to, text, line_length);  // of known length: a few moves, no call
        to[line_length] = '\n';
        out_.filled(to + line_length + 1);
      } else {
        out_.put({text, static_cast<std::size_t>(taken)});
        column_ += taken;
        if (column_ == line_length) end();
      }
      text += taken;
      count -= taken;
    }
  }
  void end() {
    if (column_ > 0) out_.put('\n');
    column_ = 0;
  }

 private:
  static constexpr std::ptrdiff_t line_length = 60;
  OutputFile& out_;
  std::ptrdiff_t column_ = 0;  // letters already on the line
};

void write_fasta(OutputFile& out, const Sheet& sheet) {
  for (int i = 1; i <= sheet.name->size(); ++i) {
    out.put('>');
    out.put(plain_name((*sheet.name)[i]));
    out.put('\n');
    Lines lines(out);
    sheet.row(i, [&](const char* text, std::ptrdiff_t count) { lines.add(text, count); });
    lines.end();
  }
}

/// One line a sequence; the letters begin in the same column of the file, two blanks after the longest name.
void write_lines(OutputFile& out, const Sheet& sheet) {
  std::size_t longest = 0;
  for (int i = 1; i <= sheet.name->size(); ++i) longest = std::max(longest, plain_name((*sheet.name)[i]).size());
  const std::string blanks(longest + 2, ' ');
  for (int i = 1; i <= sheet.name->size(); ++i) {
    const std::string_view name = plain_name((*sheet.name)[i]);
    out.put(name);
    out.put(std::string_view(blanks).substr(name.size()));
    sheet.row(i, [&](const char* text, std::ptrdiff_t count) { out.put({text, static_cast<std::size_t>(count)}); });
    out.put('\n');
  }
}

void write_phylip(OutputFile& out, const Sheet& sheet) {
  out.print("%i %lld\n", sheet.name->size(), sheet.width);
  write_lines(out, sheet);
}

/// Whether the first T or U of the rows is a U: readers of NEXUS want to know, and take only one of the two.
bool is_rna(const Sheet& sheet) {
  char found = '\0';
  for (int i = 1; i <= sheet.name->size() && found == '\0'; ++i) {
    sheet.row(i, [&](const char* text, std::ptrdiff_t count) {
      if (found != '\0') return;
      const char* last = text + count;
      const char* first = std::find_if(text, last, [](char c) { return capital(c) == 'T' || capital(c) == 'U'; });
      if (first != last) found = capital(*first);
    });
  }
  return found == 'U';
}

void write_nexus(OutputFile& out, const Sheet& sheet, char seq_type) {
  out.print("#NEXUS\nbegin data;\n  dimensions ntax=%i nchar=%lld;\n", sheet.name->size(), sheet.width);
  out.print("  format datatype=%s missing=? gap=-;\n  matrix\n", seq_type == 'P' ? "protein"
                                                                 : is_rna(sheet) ? "rna"
                                                                                 : "dna");
  write_lines(out, sheet);
  out.put("  ;\nend;\n");
}

void write_records(OutputFile& out, const Sheet& sheet, const InputState& run) {
  for (int i = 1; i <= sheet.name->size(); ++i) {
    write_record(out, run, (*sheet.name)[i], [&](Body& body) {
      sheet.row(i, [&](const char* text, std::ptrdiff_t count) { body.add(text, count); });
    });
  }
}

// ---- Names

/// Whether a form can hold a character of a name. Found by trying: RAxML reads none of the characters that trees are
/// written with, MrBayes and IQ-TREE take NEXUS names apart at all but letters, digits, '_', '.' and '-'.
bool holds(Form form, char c) {
  const bool control = static_cast<unsigned char>(c) < ' ' || c == 127;
  switch (form) {
    case Form::trimora: return true;
    case Form::fasta: return !control || c == '\t';
    case Form::phylip: return !control && std::string_view(" ()[],:;'").find(c) == std::string_view::npos;
    case Form::nexus: return is_letter(c) || (c >= '0' && c <= '9') || c == '_' || c == '.' || c == '-';
  }
  return false;
}

std::string fitting(Form form, std::string_view name, int i) {
  std::string fit(name);
  for (char& c : fit) c = holds(form, c) ? c : '_';
  const bool opens = form == Form::nexus ? fit.starts_with('-') : fit.starts_with('>');
  if (opens) fit[0] = '_';
  return fit.empty() ? "sequence_" + std::to_string(i) : fit;
}

/// The names made by `part` of each; two that are the same are left in `twice`.
template <typename Part>
Table<std::string> fitting(Form form, const Table<std::string>& name, Part part, std::string& twice) {
  Table<std::string> fit;
  fit.reserve(name.size());
  twice.clear();
  for (int i = 1; i <= name.size(); ++i) fit.append(fitting(form, part(plain_name(name[i])), i));
  std::unordered_map<std::string_view, int> seen;
  for (int i = 1; i <= fit.size() && twice.empty(); ++i) {
    if (!seen.emplace(fit[i], i).second) twice = fit[i];
  }
  return fit;
}

/// Number the names that were there before.
void number(Table<std::string>& name) {
  std::unordered_map<std::string, int> last;  // number of each
  for (int i = 1; i <= name.size(); ++i) last.try_emplace(name[i], 0);
  for (int i = 1; i <= name.size(); ++i) {
    int& k = last[name[i]];
    if (++k == 1) continue;
    std::string numbered;
    for (; numbered.empty() || !last.try_emplace(numbered, 1).second; ++k) numbered = name[i] + '_' + std::to_string(k);
    name[i] = numbered;
  }
}

std::string_view first_word(std::string_view name) {
  return name.substr(0, name.find_first_of(" \t"));
}

}  // namespace

std::string_view ending(Form form) {
  switch (form) {
    case Form::trimora: return "";
    case Form::fasta: return ".fasta";
    case Form::phylip: return ".phy";
    case Form::nexus: return ".nexus";
  }
  return "";
}

std::string_view plain_name(std::string_view name) {
  while (!name.empty() && whitespace(name.back())) name.remove_suffix(1);
  while (!name.empty() && whitespace(name.front())) name.remove_prefix(1);
  return name;
}

Sheet sheet_of(const Alignment& ali, const std::vector<Stretch>& stretches) {
  return {&ali.name, total_length(stretches), [&](int i, const Sheet::Put& put) {
            const Row row = ali.let[i];
            for (const Stretch& stretch : stretches) put(row.from(stretch.first), stretch.length());
          }};
}

LetterMap same_letters() {
  LetterMap letters{};
  for (std::size_t c = 0; c < letters.size(); ++c) letters[c] = static_cast<char>(c);
  return letters;
}

Sheet mapped(const Sheet& sheet, const LetterMap& letters) {
  return {sheet.name, sheet.width, [row = sheet.row, letters](int i, const Sheet::Put& put) {
            row(i, [&](const char* text, std::ptrdiff_t count) {
              char changed[4096];
              for (std::ptrdiff_t done = 0; done < count;) {
                const std::ptrdiff_t piece = std::min<std::ptrdiff_t>(count - done, sizeof changed);
                std::transform(text + done, text + done + piece, changed,
                               [&](char c) { return letters[static_cast<unsigned char>(c)]; });
                put(changed, piece);
                done += piece;
              }
            });
          }};
}

FormNames names_for(Form form, const Table<std::string>& name, Unique unique) {
  FormNames names;
  std::string twice;
  if (form == Form::trimora) {
    names.name = name;
    return names;
  }
  if (form == Form::fasta) {
    names.name = fitting(
        form, name, [](std::string_view whole) { return whole; }, twice);
  } else {
    names.name = fitting(form, name, first_word, twice);
    if (!twice.empty()) {
      names.name = fitting(
          form, name, [](std::string_view whole) { return whole; }, twice);
    }
    if (!twice.empty() && unique == Unique::made) {
      number(names.name);
      twice.clear();
    }
    if (!twice.empty()) {
      throw Failure{.kind = Failure::Kind::same_name,
                    .name = twice,
                    .detail = std::string(" in ") + (form == Form::phylip ? "PHYLIP" : "NEXUS") +
                              ", which cannot hold all characters of their names: rename one"};
    }
  }
  for (int i = 1; i <= name.size(); ++i) names.changed += names.name[i] != plain_name(name[i]) ? 1 : 0;
  return names;
}

void write_form(OutputFile& out, const Sheet& sheet, Form form, const InputState& run) {
  switch (form) {
    case Form::trimora: return write_records(out, sheet, run);
    case Form::fasta: return write_fasta(out, sheet);
    case Form::phylip: return write_phylip(out, sheet);
    case Form::nexus: return write_nexus(out, sheet, run.seq_type);
  }
}

}  // namespace trimora::rooms
