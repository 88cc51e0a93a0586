// Paths and their parts.
#pragma once
#include <string>

/// Separates directory and file name in a path.
inline constexpr char separator = '/';

/// A path, split behind its last separator.
struct SplitPath {
  std::string path_file;  // the directory with its final separator, or empty
  std::string name_file;  // the rest
};
SplitPath getpath(const std::string& path);
