#include "trimora_run/inputs.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include "ground/failure.h"
#include "ground/path.h"
#include "ground/system_path.h"
#include "input/read.h"
#include "input/words.h"
#include "trimora_run/voice.h"
#include "trimora_run/wildcards.h"

namespace trimora::rooms {

namespace fs = std::filesystem;

namespace {

bool exists(const std::string& path) {
  std::error_code unknown;
  return fs::exists(system_path(path), unknown);
}

bool is_regular(const std::string& path) {
  std::error_code unknown;
  return fs::is_regular_file(system_path(path), unknown);
}

bool is_folder(const std::string& path) {
  std::error_code unknown;
  return fs::is_directory(system_path(path), unknown);
}

/// The path in a line of a list: as it is, below the home folder, or counted from the folder of the list.
std::string listed_path(std::string_view line, const std::string& list, long long& from_list) {
  std::string path = in_utf8(std::string(trimmed(line)));
  if (path.starts_with("~/")) {
    const char* home = std::getenv("HOME");
    if (home == nullptr) home = std::getenv("USERPROFILE");  // on Windows
    if (home != nullptr) path.replace(0, 1, home);
  }
  if (exists(path)) return path;
  const std::string beside = in_folder(getpath(list).path_file, path);
  if (beside == path || !exists(beside)) return path;
  ++from_list;
  return beside;
}

bool is_comment(std::string_view line) {
  return line.empty() || line.starts_with('#');
}

/// Whether `path` looks like the name of a file that is missing: one word that ends like "gene.fas".
bool looks_like_a_file(std::string_view path) {
  const std::size_t dot = path.rfind('.');
  return dot != path.npos && dot > 0 && dot + 1 < path.size() && path.size() - dot <= 8 &&
         all_are(path, [](unsigned char c) { return c > ' '; }) && is_letter(path[dot + 1]) &&
         all_are(path.substr(dot + 1), [](char c) { return is_letter(c) || is_digit(c); });
}

/// The paths in a list: one a line; comments and empty lines do not count. Nothing when the file is no list: none of its
/// first lines names a file, nor does the first one look like it.
std::optional<Named> read_list(const std::string& list) {
  constexpr std::size_t looked_at = 100;  // lines, so that a large file of another kind is not read to its end
  Input input(list);
  if (input.format() != nullptr) return std::nullopt;
  Named named;
  long long from_list = 0;
  bool is_list = false;
  for (std::string_view line; input.line(line) && (is_list || named.paths.size() < looked_at);) {
    if (is_comment(trimmed(line))) continue;
    named.paths.push_back(listed_path(line, list, from_list));
    is_list =
        is_list || is_regular(named.paths.back()) || (named.paths.size() == 1 && looks_like_a_file(named.paths[0]));
  }
  if (!is_list) return std::nullopt;
  named.list = list;
  if (from_list > 0) named.decided.push_back(number_of(from_list, "path") + " counted from the folder of the list");
  return named;
}

/// The files in a folder, in bytewise order: no subfolders, no hidden files.
std::vector<std::string> files_in(const std::string& folder) {
  std::vector<std::string> names;
  std::error_code error;
  for (fs::directory_iterator entry(system_path(folder), error), end; !error && entry != end; entry.increment(error)) {
    std::error_code unknown;
    const std::string name = plain_path(entry->path().filename());
    if (entry->is_regular_file(unknown) && !name.starts_with('.')) names.push_back(name);
  }
  if (error) throw Failure{.kind = Failure::Kind::not_readable, .file = folder, .error = error.value()};
  std::sort(names.begin(), names.end());
  return names;
}

/// The files in a folder: alignments, and others.
void add_folder(const std::string& folder, Named& named) {
  for (const std::string& name : files_in(folder)) {
    const std::string path = in_folder(folder, name);
    bool alignment = false;
    try {
      const InputFormat* format = Input(path).format();
      alignment = format != nullptr && format->read != nullptr;
    } catch (const Failure&) {
    }
    (alignment ? named.paths : named.others).push_back(path);
  }
}

}  // namespace

bool is_file(const std::string& path) {
  std::error_code unknown;
  const fs::file_type type = fs::status(system_path(path), unknown).type();
  return type == fs::file_type::regular || type == fs::file_type::not_found || type == fs::file_type::none;
}

std::string in_folder(const std::string& folder, const std::string& name) {
  if (folder.empty()) return name;
  return folder + (getpath(folder).name_file.empty() ? "" : "/") + name;
}

Named named_files(const Settings& settings) {
  if (settings.files.size() == 1 && !is_folder(settings.files.front())) {
    const std::string& file = settings.files.front();
    if (file != "-" && is_file(file)) {
      if (auto list = read_list(file)) return *list;
    }
    Named one;
    one.paths = {file};
    return one;
  }
  Named named;
  named.several = true;
  for (const std::string& file : settings.files) {
    if (is_folder(file)) {
      add_folder(file, named);
    } else {
      named.paths.push_back(file);
    }
  }
  return named;
}

CodingFiles coding_files(const std::string& path) {
  if (is_folder(path)) {
    CodingFiles found;
    for (const std::string& name : files_in(path)) found.paths.push_back(in_folder(path, name));
    return found;
  }
  if (auto named = read_list(path)) return {std::move(named->paths), true};
  return {{path}, false};
}

}  // namespace trimora::rooms
