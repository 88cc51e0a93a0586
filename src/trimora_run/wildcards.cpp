#include "trimora_run/wildcards.h"

#include <algorithm>
#include <cstddef>

#include "ground/path.h"
#include "input/letters.h"

#ifdef _WIN32
#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#endif

namespace trimora::rooms {

bool fits(std::string_view pattern, std::string_view name) {
  const auto inside = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; };  // a letter of UTF-8
  std::size_t p = 0, n = 0, star = pattern.npos, after = 0;  // the last * and where in the name to try after it
  while (n < name.size()) {
    if (p < pattern.size() && pattern[p] == '*') {
      star = p++;
      after = n;
    } else if (p < pattern.size() && (pattern[p] == '?' || lower(pattern[p]) == lower(name[n]))) {
      ++n;
      while (pattern[p] == '?' && n < name.size() && inside(name[n])) ++n;
      ++p;
    } else if (star != pattern.npos) {
      p = star + 1;
      n = ++after;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*', p) == pattern.npos;
}

#ifdef _WIN32
// The system's own patterns are not used: there *.fas finds x.fasta as well, by its short name.
std::vector<std::string> expand_wildcards(const std::string& word) {
  const SplitPath parts = getpath(word);
  if (parts.name_file.find_first_of("*?") == parts.name_file.npos) return {word};
  WIN32_FIND_DATAA entry;
  const HANDLE search = FindFirstFileA((parts.path_file + "*").c_str(), &entry);
  if (search == INVALID_HANDLE_VALUE) return {word};
  std::vector<std::string> found;
  do {
    const bool file = (entry.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_HIDDEN)) == 0;
    if (file && fits(parts.name_file, entry.cFileName)) found.push_back(parts.path_file + entry.cFileName);
  } while (FindNextFileA(search, &entry));
  FindClose(search);
  std::sort(found.begin(), found.end());
  return found.empty() ? std::vector{word} : found;
}
#else
std::vector<std::string> expand_wildcards(const std::string& word) {
  return {word};
}
#endif

}  // namespace trimora::rooms
