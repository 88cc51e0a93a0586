// Writes what completions, manual page and documents say of the options of trimora-run, from the table that it reads its
// command line by: trimora-options [--check] SOURCE
// With --check it only says which files hold something else, and its status is 1.
// In each file the lines between "made by scripts/options.sh: PART" and "end of PART" are replaced.
#include <algorithm>
#include <cctype>
#include <fstream>
#include <functional>
#include <iostream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "trimora_run/options.h"

namespace {

using trimora::rooms::Option;

std::string replaced(std::string text, std::string_view from, std::string_view to) {
  for (std::size_t at = 0; (at = text.find(from, at)) != text.npos; at += to.size()) {
    text.replace(at, from.size(), to);
  }
  return text;
}

/// The words of a text with `mark` applied to those between backquotes, and to options: words that begin with a dash.
template <typename Mark>
std::string marked(std::string_view text, Mark mark) {
  std::string out;
  for (std::size_t at = 0; at < text.size();) {
    if (text[at] == '`') {
      const std::size_t end = text.find('`', at + 1);
      out += mark(text.substr(at + 1, end - at - 1));
      at = end + 1;
    } else if (text[at] == '-' && (at == 0 || text[at - 1] == ' ')) {
      std::size_t end = std::min(text.find_first_of(" :;,\n", at), text.size());
      while (text[end - 1] == '.') --end;
      out += mark(text.substr(at, end - at));
      at = end;
    } else {
      out += text[at++];
    }
  }
  return out;
}

// ---- Completions

std::string for_bash(const Option& option) {
  std::string text = "    " + std::string(option.name);
  if (option.optional) return text + '\n';
  if (option.takes_value()) text += '=';
  if (!choices(option).empty()) {
    text += '\'' + shown_values(option).substr(0, shown_values(option).find('[')) + '\'';
  } else if (option.values == "FILE" || option.values == "FOLDER") {
    text += option.values;
  }
  return text + '\n';
}

std::string for_zsh(const Option& option) {
  std::string text = std::string(option.name) +
                     (option.optional        ? "=-"
                      : option.takes_value() ? "="
                                             : "") +
                     '[' + std::string(option.brief) + ']' + (option.optional ? ":" : "");
  const auto all = choices(option);
  const std::string range = option.range.text();
  if (!option.takes_value()) {
  } else if (all.empty()) {
    text += ':' + (range.empty() ? std::string(option.values) : range) + ':';
    if (option.values == "FILE") text += "_files";
    if (option.values == "FOLDER") text += "_files -/";
  } else if (option.values.ends_with(']')) {
    text += ":values:_values -s , value";
    for (const auto& words : all) text += ' ' + words.front();
  } else {
    const bool explained = all.front().size() > 1;
    text += explained ? ":value:((" : ":value:(";
    for (const auto& words : all) {
      text += (&words == &all.front() ? "" : " ") + words.front() + (explained ? "\\:" + words[1] : "");
    }
    text += explained ? "))" : ")";
  }
  return "  '" + replaced(text, "'", "'\\''") + "'\n";
}

// ---- Documents

/// The brief text and the rest, as sentences; `capital`: the first one begins like one.
std::string sentences(const Option& option, std::string_view between, bool capital) {
  std::string text(option.brief);
  if (capital) text[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(text[0])));
  text += between;
  if (!option.more.empty()) text += (text.ends_with('.') ? " " : ". ") + std::string(option.more);
  return text;
}

std::string row_for_markdown(const Option& option) {
  const auto code = [](std::string_view text) { return '`' + std::string(text) + '`'; };
  std::string values;
  for (const auto& words : choices(option)) values += (values.empty() ? "" : ", ") + words.front();
  if (values.empty()) values = option.range.text().empty() ? option.values : option.range.text();
  const std::string standard = option.standard.starts_with('-') ? code(option.standard) : std::string(option.standard);
  const std::string meaning = marked(sentences(option, "", false), code);
  return "| `" + std::string(option.name) + "` | " + standard + " | " + values + " | " + replaced(meaning, "|", "\\|") +
         " |\n";
}

/// Text for a manual page: lines of at most 80 characters, which end where a sentence does.
std::string filled(const std::string& text) {
  std::string out, line;
  const auto end = [&] {
    if (line.starts_with('.') || line.starts_with('\'')) out += "\\&";
    if (!line.empty()) out += line + '\n';
    line.clear();
  };
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    if (line.size() + word.size() > 78) end();
    line += (line.empty() ? "" : " ") + word;
    if (word.ends_with('.')) end();
  }
  end();
  return out;
}

std::string paragraph_for_man(const Option& option) {
  const auto bold = [](std::string_view text) { return "\\fB" + replaced(std::string(text), "-", "\\-") + "\\fP"; };
  std::string heading = bold(option.name) + (option.optional ? "[=" : option.takes_value() ? "=" : "");
  const auto all = choices(option);
  for (const auto& words : all) heading += (&words == &all.front() ? "" : "|") + bold(words.front());
  if (option.values.ends_with(']')) heading += "[,...]";
  if (option.optional) heading += "]";
  if (all.empty() && option.takes_value()) heading += "\\fI" + std::string(option.values) + "\\fP";
  std::string facts = option.range.text().empty() ? "." : ": " + option.range.text() + ".";
  if (!option.standard.empty()) facts += " Default: " + std::string(option.standard) + ".";
  std::string text;
  std::istringstream said(replaced(sentences(option, facts, true), ". ", ".\n"));
  for (std::string sentence; std::getline(said, sentence);) {
    if (sentence.find("](") == sentence.npos) text += sentence + '\n';  // a manual page links nowhere
  }
  return ".TP\n" + heading + '\n' + filled(marked(text, bold));
}

// ---- Parts

std::string list(bool of_trimora, std::string (*item)(const Option&)) {
  std::string text;
  for (const Option& option : trimora::rooms::all_options()) {
    if (option.of_trimora() == of_trimora) text += item(option);
  }
  return text;
}

std::string manual() {
  std::string text;
  const Option* previous = nullptr;
  for (const Option& option : trimora::rooms::all_options()) {
    if (!previous || previous->group != option.group) text += ".SS " + std::string(heading(option.group)) + '\n';
    text += paragraph_for_man(option);
    previous = &option;
  }
  return text;
}

std::string table(bool of_trimora) {
  return "\n| Option | Default | Values | Meaning |\n|---|---|---|---|\n" + list(of_trimora, row_for_markdown) + '\n';
}

const struct {
  const char* file;
  const char* part;
  std::function<std::string()> text;
} parts[] = {
    {"completions/trimora.bash", "options of both programs", [] { return list(true, for_bash); }},
    {"completions/trimora.bash", "options of trimora-run", [] { return list(false, for_bash); }},
    {"completions/_trimora", "options of both programs", [] { return list(true, for_zsh); }},
    {"completions/_trimora", "options of trimora-run", [] { return list(false, for_zsh); }},
    {"docs/trimora-run.1", "options", manual},
    {"docs/options.md", "options of both programs", [] { return table(true); }},
    {"docs/options.md", "options of trimora-run", [] { return table(false); }},
};

}  // namespace

int main(int argc, char* argv[]) {
  const bool check = argc == 3 && argv[1] == std::string_view("--check");
  if (argc != (check ? 3 : 2)) {
    std::cerr << "Usage: trimora-options [--check] SOURCE\n";
    return 2;
  }
  int status = 0;
  for (const auto& [file, part, text] : parts) {
    const std::string path = std::string(argv[argc - 1]) + '/' + file;
    const std::string old = (std::ostringstream() << std::ifstream(path, std::ios::binary).rdbuf()).str();
    const std::string opening = std::string("made by scripts/options.sh: ") + part;
    const std::size_t begin = old.find('\n', old.find(opening));
    const std::size_t closing = old.find(std::string("end of ") + part, begin);
    const std::size_t end = old.rfind('\n', closing);
    if (old.find(opening) == old.npos || closing == old.npos || end < begin) {
      std::cerr << file << " has no place for the part: " << part << '\n';
      return 1;
    }
    const std::string made = old.substr(0, begin + 1) + text() + old.substr(end + 1);
    if (made == old) continue;
    if (check) {
      std::cerr << file << ": " << part << ": not what the table of options says: scripts/options.sh writes it\n";
      status = 1;
    } else if (!(std::ofstream(path, std::ios::binary) << made << std::flush)) {
      std::cerr << file << " could not be written\n";
      status = 1;
    }
  }
  return status;
}
