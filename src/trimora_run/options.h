// The options of trimora-run: one table that the command line is read by, and from which the help, the completions, the
// manual page and the documents are made (trimora-options writes them).
// Words     choice: one of the words that an option takes | placeholder: what else it takes, in capitals, as NUMBER
#pragma once
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "trimora_run/settings.h"

namespace trimora::rooms {

/// The values that an option may have: the two ends of a range of numbers, or words for anything else.
struct ValueRange {
  int least = 0, most = 0;
  std::string_view words = {};

  std::string text() const;  // "0 to 32000", "half + 1 to b2"; empty: the option says it all
};

/// Where an option belongs.
enum class Group { parameters, files, batch, run };
/// Its heading.
std::string_view heading(Group group);

/// What an option does to the settings.
/// bool         true without a value; with the choices yes and no, what the value says
/// int          a whole number within `range`
/// std::string  the value, which is not empty
/// forms        one or more of the choices, with commas between them
/// functions    take the number of the choice, from 0; or the value, and return what it has to be when it is not: "" is well
using Setter = std::variant<bool Settings::*, int Settings::*, std::optional<int> Settings::*, std::string Settings::*,
                            std::vector<trimora::Form> Settings::*, void (*)(int choice, Settings&),
                            std::string_view (*)(std::string_view value, Settings&)>;

struct Option {
  Group group;
  std::string_view name;    // with one dash: an option of trimora as well
  std::string_view values;  // "Y yes|N no": choices, each by its first word or another one; a placeholder; "": no value
  std::string_view standard;  // the default; "": none
  Setter sets;
  std::string_view brief;  // for the help and all documents
  ValueRange range = {};
  std::string_view more = {};  // for the documents alone; `code` and [links](files.md) are marked as in Markdown
  bool optional = false;       // the value may be left out

  bool of_trimora() const { return !name.starts_with("--"); }
  bool takes_value() const { return !values.empty(); }
};

/// All of them, in the order of the documents.
std::span<const Option> all_options();

/// The whole number that `text` is, nothing when it is none; one too large for an int becomes the nearest that fits.
std::optional<int> whole_number(std::string_view text);

/// The choices of an option, each with its words, the first of which is the one that is shown; none when it has none.
std::vector<std::vector<std::string>> choices(const Option& option);

/// The values as the help shows them: "Y|N", "NUMBER".
std::string shown_values(const Option& option);

/// What --help says.
std::string help();

/// What is wrong with a command line.
struct WrongUsage {
  std::string why;
};

/// Read the command line; argv[0] is the program's name. Options and files come in any order, and the options are judged
/// together. What only the alignment can tell, as the ranges of b1 and b2, is left to the run.
/// Fails     with WrongUsage, and nothing else.
Settings parse_command_line(int argc, char* argv[]);

}  // namespace trimora::rooms
