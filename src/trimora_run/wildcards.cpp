#include "trimora_run/wildcards.h"

#include <algorithm>
#include <cstddef>

#include "ground/path.h"
#include "ground/system_path.h"
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
namespace {

/// What is no character becomes the replacement character.
std::string utf8_of(std::wstring_view wide) {
  const auto size = static_cast<int>(wide.size());
  std::string text(3 * wide.size(), '\0');
  const auto room = static_cast<int>(text.size());
  text.resize(static_cast<std::size_t>(
      WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, text.data(), room, nullptr, nullptr)));
  return text;
}

}  // namespace

// The system's own patterns are not used: there *.fas finds x.fasta as well, by its short name.
std::vector<std::string> expand_wildcards(const std::string& word) {
  const SplitPath parts = getpath(word);
  if (parts.name_file.find_first_of("*?") == parts.name_file.npos) return {word};
  WIN32_FIND_DATAW entry;  // the functions for bytes know no path of more than 260
  const HANDLE search = FindFirstFileW(system_path(parts.path_file + "*").c_str(), &entry);
  if (search == INVALID_HANDLE_VALUE) return {word};
  std::vector<std::string> found;
  do {
    const bool file = (entry.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_HIDDEN)) == 0;
    const std::string name = utf8_of(entry.cFileName);
    if (file && fits(parts.name_file, name)) found.push_back(parts.path_file + name);
  } while (FindNextFileW(search, &entry));
  FindClose(search);
  std::sort(found.begin(), found.end());
  return found.empty() ? std::vector{word} : found;
}

std::string in_utf8(std::string path) {
  const auto size = static_cast<int>(path.size());
  if (size == 0 || MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, path.data(), size, nullptr, 0) > 0) return path;
  DWORD page = 0;  // that of the process is UTF-8
  GetLocaleInfoW(LOCALE_SYSTEM_DEFAULT, LOCALE_IDEFAULTANSICODEPAGE | LOCALE_RETURN_NUMBER,
                 reinterpret_cast<wchar_t*>(&page), sizeof page / sizeof(wchar_t));
  std::wstring wide(path.size(), L'\0');
  const int length = MultiByteToWideChar(page, 0, path.data(), size, wide.data(), size);
  wide.resize(static_cast<std::size_t>(length));
  return length == 0 ? path : utf8_of(wide);
}
#else
std::vector<std::string> expand_wildcards(const std::string& word) {
  return {word};
}

std::string in_utf8(std::string path) {
  return path;
}
#endif

}  // namespace trimora::rooms
