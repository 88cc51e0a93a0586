// Names in ASCII, for programs that read nothing else.
#pragma once
#include <string>
#include <string_view>

namespace trimora::rooms {

/// A text in UTF-8 with its Latin, Greek and Cyrillic letters as letters of ASCII: "été" as "ete". Marks that only change
/// the letter before them go; what has no letter becomes '?'.
std::string in_ascii(std::string_view text);

}  // namespace trimora::rooms
