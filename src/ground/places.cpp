#include "ground/places.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#ifndef _WIN32
#include <sys/stat.h>
#endif

#include "ground/path.h"
#include "ground/system_path.h"

namespace trimora::rooms {

namespace fs = std::filesystem;

std::string link_target(const std::string& path) {
  constexpr int most = 40;  // links in a row: more are a circle
  fs::path target = system_path(path);
  std::error_code error;
  for (int k = 0; k < most && fs::is_symlink(target, error); ++k) {
    const fs::path next = fs::read_symlink(target, error);
    if (error) break;
    target = next.is_absolute() ? next : target.parent_path() / next;
  }
  return plain_path(target);
}

std::string file_number(const std::string& path) {
#ifdef _WIN32
  static_cast<void>(path);
#else
  struct stat file {};
  if (::stat(path.c_str(), &file) == 0 && S_ISREG(file.st_mode) && file.st_nlink > 1) {
    return std::to_string(file.st_dev) + ' ' + std::to_string(file.st_ino);
  }
#endif
  return {};
}

std::string Places::of(const std::string& path) {
  const SplitPath split = getpath(link_target(path));
  const auto [folder, fresh] = folders_.try_emplace(split.path_file);
  if (fresh) {
    std::error_code error;
    const fs::path whole = fs::absolute(system_path(split.path_file.empty() ? "." : split.path_file), error);
    folder->second = plain_path(fs::weakly_canonical(whole, error));
    if (folder->second.ends_with('/')) folder->second.pop_back();
  }
  std::string place = folder->second + '/' + split.name_file;
#ifdef _WIN32  // where capitals do not make another file, and either bar separates
  const auto lowered = [](char c) { return c == '\\' ? '/' : c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
  std::transform(place.begin(), place.end(), place.begin(), lowered);
#endif
  return place;
}

}  // namespace trimora::rooms
