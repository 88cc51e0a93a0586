// Standard input as the three menus read it. Every prompt is visible before the program waits for an answer. When input
// ends where an answer has to begin, the run ends without another word.
#pragma once
#include <optional>
#include <string>

#include "trimora/run_state.h"

namespace trimora::rooms {

/// Read a choice into `run.menu`: the first character of a line, in lower case, or the line end itself. A choice is
/// followed by two empty lines.
void read_choice(RunState& run);

/// Read a whole line, without its line end. It ends at its first NUL byte, as does a word.
std::string read_answer();

/// Read a number as the "%i" conversion does: 010 is eight and 0x1F is 31. Nothing when the answer is not a number.
/// Blanks and empty lines before it and the rest of its line are dropped.
std::optional<long long> read_number();

/// Read a word, up to white space. Blanks and empty lines before it and the rest of its line are dropped.
std::string read_word();

}  // namespace trimora::rooms
