// Paths between the program, where they are bytes (UTF-8 on Windows), and std::filesystem, which on Windows would take
// the letters beyond ASCII of a plain string for others.
#pragma once
#include <filesystem>
#include <string>

namespace trimora::rooms {

inline std::filesystem::path system_path(const std::string& path) {
  return reinterpret_cast<const char8_t*>(path.c_str());
}

inline std::string plain_path(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

}  // namespace trimora::rooms
