// What a person would see in an alignment or in its results, and a script would not: notes, each a line.
#pragma once
#include <string>
#include <vector>

#include "input/alignment.h"
#include "input/kind.h"
#include "output/forms.h"
#include "output/output_state.h"
#include "selection/selection.h"
#include "trimora_run/settings.h"

namespace trimora::rooms {

/// What makes the results of `ali` other than its file seems to hold: characters that agree with nothing, letters that may
/// mean gaps, another type of sequence or frame than it is read as, names that the next program mixes up.
std::vector<std::string> notes_on_alignment(const Alignment& ali, const std::vector<Remark>& remarks,
                                            const KindByLetters& by_letters, const OutputState& run,
                                            const Settings& settings);

/// Why nothing was selected, or which sequences have nothing left.
std::vector<std::string> notes_on_selection(const Alignment& ali, const Selection& found,
                                            const KindByLetters& by_letters, const OutputState& run);

/// Which sequences of a concatenation are nothing but gaps and unknown letters.
std::vector<std::string> notes_on_species(const Sheet& concatenation, char seq_type);

}  // namespace trimora::rooms
