// Paths and their parts.
#pragma once
#include <string>
#include <string_view>

namespace trimora::rooms {

/// Each of these separates directory and file name in a path. On Windows a drive ends at a colon.
#ifdef _WIN32
inline constexpr std::string_view separators = "/\\:";
#else
inline constexpr std::string_view separators = "/";
#endif

/// A path, split after its last separator.
struct SplitPath {
  std::string path_file;  // the directory with its final separator, or empty
  std::string name_file;  // the rest
};
SplitPath getpath(const std::string& path);

}  // namespace trimora::rooms
