// What a person would see in an alignment or in its results, and a script would not: notes.
#pragma once
#include "batch/batch_state.h"
#include "input/alignment.h"
#include "trimora/calculate.h"
#include "output/forms.h"
#include "trimora_run/messages.h"

namespace trimora::rooms {

/// Say what makes the results of `ali` differ from what its file seems to hold: dropped columns, characters that count
/// as positions though they are no letters, letters that may mean gaps, another format, type of sequence or frame than
/// it is read as, names that the next program mixes up.
void notealignment(const Alignment& ali, const BatchState& run, Messages& messages);

/// Say which sequence of the concatenation in the file `path` holds no letter.
void notespecies(const Sheet& concatenation, const std::string& path, Messages& messages);

/// Say why nothing was selected, or which sequence has nothing left.
void noteselection(const Alignment& ali, const Selection& found, const BatchState& run, Messages& messages);

}  // namespace trimora::rooms
