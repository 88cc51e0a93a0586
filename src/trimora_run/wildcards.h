// Names of files on Windows: * and ?, which no shell puts the files for, and lists in the code page of the system.
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

/// A path in a list: what is not UTF-8 on Windows is in the code page of the system, as old editors there write it.
std::string in_utf8(std::string path);

}  // namespace trimora::rooms
