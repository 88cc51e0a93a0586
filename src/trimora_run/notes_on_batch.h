// What a person would see in the names of a batch, and a script would not: whether its species are who they seem to be.
#pragma once
#include <string>
#include <vector>

#include "batch/identity.h"
#include "batch/species.h"
#include "trimora_run/settings.h"

namespace trimora::rooms {

/// Why nothing may be concatenated: no species is in two of the alignments. Empty: some are.
std::string names_never_meet(const Species& species, const Identity& identity);

/// Notes on names that meet little, that may be one species, or two. Each once, with ten names at most.
std::vector<std::string> notes_on_identity(const Species& species, const Identity& identity, const Settings& settings);

/// "a, b, c and 5 more": ten at most.
std::string listed_names(const std::vector<std::string>& names);

}  // namespace trimora::rooms
