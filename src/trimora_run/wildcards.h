// * and ? in the names of files, which on Windows no shell puts the files for.
#pragma once
#include <string>
#include <string_view>
#include <vector>

namespace trimora::rooms {

/// Whether `name` is of this pattern: * matches any characters, ? one. Case does not matter.
bool fits(std::string_view pattern, std::string_view name);

/// The files that a word with * or ? means on Windows, in bytewise order; the word itself when there are none, and
/// everywhere else. Folders and hidden files are not among them.
std::vector<std::string> expand_wildcards(const std::string& word);

}  // namespace trimora::rooms
