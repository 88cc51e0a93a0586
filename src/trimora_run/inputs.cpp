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

/// The paths in a list: one a line; comments and empty lines do not count. Nothing when the file is no list: its first
/// line names no file.
std::optional<Named> read_list(const std::string& list) {
  Input input(list);
  if (input.format() != nullptr) return std::nullopt;
  Named named;
  long long from_list = 0;
  for (std::string_view line; input.line(line);) {
    if (is_comment(trimmed(line))) continue;
    named.paths.push_back(listed_path(line, list, from_list));
    if (named.paths.size() == 1 && !exists(named.paths.front())) return std::nullopt;
  }
  if (named.paths.empty()) return std::nullopt;
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

/// The alignments in a folder.
void add_folder(const std::string& folder, Named& named) {
  std::vector<std::string> skipped;
  for (const std::string& name : files_in(folder)) {
    const std::string path = in_folder(folder, name);
    bool alignment = false;
    try {
      const InputFormat* format = Input(path).format();
      alignment = format != nullptr && format->read != nullptr;
    } catch (const Failure&) {
    }
    if (alignment) {
      named.paths.push_back(path);
    } else {
      skipped.push_back(name);
    }
  }
  if (skipped.empty()) return;
  named.decided.push_back(folder + ": " + number_of(std::ssize(skipped), "file") +
                          " skipped as no alignment, the first is " + skipped.front());
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
