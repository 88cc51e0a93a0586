#include "output/forms.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>

#include "input/letters.h"
#include "output/record.h"
#include "trimora_run/diagnosis.h"
#include "trimora_run/messages.h"
#include "batch/names.h"
#include "trimora_run/words.h"

namespace trimora::rooms {

namespace {

struct Description {
  std::string_view name;    // as --format takes it
  std::string_view called;  // as a person calls it
  std::string_view ending;
};
constexpr Description descriptions[] = {
    {"trimora", "groups of ten", ""},
    {"fasta", "FASTA", ".fasta"},
    {"phylip", "PHYLIP", ".phy"},
    {"nexus", "NEXUS", ".nexus"},
};
const Description& described(Form form) {
  return descriptions[static_cast<std::size_t>(form)];
}

// ---- Layouts

/// The letters of a row in plain lines of sixty.
class Lines {
 public:
  explicit Lines(OutputFile& out) : out_(out) {}
  void add(const char* text, std::ptrdiff_t count) {
    while (count > 0) {
      const std::ptrdiff_t taken = std::min(count, linelength - column_);
      if (taken == linelength) {
        char* to = out_.room(linelength + 1);
        std::memcpy(to, text, linelength);  // of known length: a few moves, no call
        to[linelength] = '\n';
        out_.filled(to + linelength + 1);
      } else {
        out_.put({text, static_cast<std::size_t>(taken)});
        column_ += taken;
        if (column_ == linelength) end();
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
  static constexpr std::ptrdiff_t linelength = 60;
  OutputFile& out_;
  std::ptrdiff_t column_ = 0;  // letters already on the line
};

void writefasta(OutputFile& out, const Sheet& sheet) {
  for (int i = 1; i <= sheet.name->size(); ++i) {
    out.put('>');
    out.put(plainname((*sheet.name)[i]));
    out.put('\n');
    Lines lines(out);
    sheet.row(i, [&](const char* text, std::ptrdiff_t count) { lines.add(text, count); });
    lines.end();
  }
}

/// One line a sequence.
void writelines(OutputFile& out, const Sheet& sheet) {
  for (int i = 1; i <= sheet.name->size(); ++i) {
    out.put(plainname((*sheet.name)[i]));
    out.put(' ');
    sheet.row(i, [&](const char* text, std::ptrdiff_t count) { out.put({text, static_cast<std::size_t>(count)}); });
    out.put('\n');
  }
}

void writephylip(OutputFile& out, const Sheet& sheet) {
  out.print("%i %lld\n", sheet.name->size(), sheet.width);
  writelines(out, sheet);
}

/// Whether the first T or U of the rows is a U: readers of NEXUS want to know, and take only one of the two.
bool isrna(const Sheet& sheet) {
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

void writenexus(OutputFile& out, const Sheet& sheet, char seq_type) {
  out.print("#NEXUS\nbegin data;\n  dimensions ntax=%i nchar=%lld;\n", sheet.name->size(), sheet.width);
  out.print("  format datatype=%s missing=? gap=-;\n  matrix\n", seq_type == 'P' ? "protein"
                                                                 : isrna(sheet)  ? "rna"
                                                                                 : "dna");
  writelines(out, sheet);
  out.put("  ;\nend;\n");
}

void writerecords(OutputFile& out, const Sheet& sheet, const InputState& run) {
  for (int i = 1; i <= sheet.name->size(); ++i) {
    writerecord(out, run, (*sheet.name)[i], [&](Body& body) {
      sheet.row(i, [&](const char* text, std::ptrdiff_t count) { body.add(text, count); });
    });
  }
}

// ---- Names

/// What is wrong with a name in a form, and whether other characters in it are the remedy. Found by trying: RAxML reads
/// none of the characters that trees are written with, MrBayes and IQ-TREE take NEXUS names apart at all but these.
struct Flaw {
  const char* words = nullptr;
  bool replaceable = true;
};

Flaw flawof(std::string_view name, Form form) {
  if (form == Form::trimora) return {};
  if (name.empty()) return {"is empty", false};
  if (name[0] == '>') return {"begins with >", false};
  if (form == Form::nexus && name[0] == '-') return {"begins with -", false};
  const auto control = [&](char c) { return (c >= 0 && c < ' ' && !whitespace(c)) || c == '\r' || c == 127; };
  if (std::any_of(name.begin(), name.end(), control)) return {"holds an invisible character"};
  if (form == Form::plain) return {};
  if (std::any_of(name.begin(), name.end(), whitespace)) return {"holds a blank"};
  if (name.find_first_of("()[],:;'") != name.npos) return {"holds one of ( ) [ ] , : ; '"};
  const auto plain = [](char c) { return isletter(c) || (c >= '0' && c <= '9') || c == '_' || c == '.' || c == '-'; };
  if (form == Form::phylip || std::all_of(name.begin(), name.end(), plain)) return {};
  return {"holds other characters than letters, digits, _ . and -"};
}

}  // namespace

std::optional<Forms> formsof(std::string_view text) {
  Forms forms;
  for (bool more = true; more;) {
    const std::size_t comma = std::min(text.find(','), text.size());
    const auto* found = std::find_if(std::begin(descriptions), std::end(descriptions),
                                     [&](const Description& w) { return w.name == text.substr(0, comma); });
    const auto form = static_cast<Form>(found - std::begin(descriptions));
    if (found == std::end(descriptions) || std::find(forms.begin(), forms.end(), form) != forms.end()) {
      return std::nullopt;
    }
    forms.push_back(form);
    more = comma < text.size();
    if (more) text.remove_prefix(comma + 1);
  }
  return forms;
}

std::string_view ending(Form form) {
  return described(form).ending;
}

Sheet sheetof(const Alignment& ali, const std::vector<Stretch>& stretches) {
  return {&ali.name, totallength(stretches), [&](int i, const Sheet::Put& put) {
            const Row row = ali.let[i];
            for (const Stretch& stretch : stretches) put(row.from(stretch.first), stretch.length());
          }};
}

Sheet sheetof(const Concatenation& all, const Table<std::string>& name,
              std::function<int(std::size_t alignment, int i)> rowof) {
  return {&name, all.columns(), [&all, rowof = std::move(rowof)](int i, const Sheet::Put& put) {
            static const std::string missing(4096, '?');
            std::size_t alignment = 0;
            for (const Concatenation::Part& part : all.parts()) {
              const int row = rowof(alignment++, i);
              if (row > 0) {
                put(part.rows[row].from(1), part.width);
                continue;
              }
              const auto atonce = static_cast<int>(missing.size());
              for (int left = part.width; left > 0; left -= atonce) put(missing.data(), std::min(left, atonce));
            }
          }};
}

void writeform(OutputFile& out, const Sheet& sheet, Form form, const InputState& run) {
  switch (form) {
    case Form::trimora: return writerecords(out, sheet, run);
    case Form::plain: return writefasta(out, sheet);
    case Form::phylip: return writephylip(out, sheet);
    case Form::nexus: return writenexus(out, sheet, run.seq_type);
  }
}

void saveforms(const std::string& path, const Sheet& sheet, const Forms& forms, const InputState& run) {
  for (const Form form : forms) {
    OutputFile out(path + std::string(ending(form)));
    writeform(out, sheet, form, run);
  }
}

std::string unfitname(const Table<std::string>& name, const Forms& forms, const std::string& path, int fileformat) {
  for (const Form form : forms) {
    for (int i = 1; i <= name.size(); ++i) {
      const std::string_view plain = plainname(name[i]);
      const Flaw flaw = flawof(plain, form);
      if (flaw.words == nullptr) continue;
      const std::string number = std::to_string(i);
      if (!flaw.replaceable) return filled(words::unfitstart, {number, plain, flaw.words, described(form).called});
      // The prefix of a NBRF/PIR name ends with a semicolon, which stays.
      const std::string_view kept = fileformat == pir ? "^>;A-Za-z0-9_.-" : "^>A-Za-z0-9_.-";
      return filled(words::unfitname, {number, plain, flaw.words, described(form).called, kept, typed(path)});
    }
    if (form != Form::phylip && form != Form::nexus) continue;
    if (const auto [first, second] = sametwice(name, plainname); first > 0) {
      return filled(words::samenames, {std::to_string(first), std::to_string(second), plainname(name[first])});
    }
  }
  return "";
}

}  // namespace trimora::rooms
