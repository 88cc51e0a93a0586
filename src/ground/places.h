// Where files really are: two paths of one file have one place, also when no file is there yet.
#pragma once
#include <string>
#include <unordered_map>

namespace trimora::rooms {

/// The path that `path` leads to in the end: links are followed, whether or not a file is at their end.
std::string link_target(const std::string& path);

/// Looks places up. Most files of a batch share their folder, which is looked up once.
class Places {
 public:
  std::string of(const std::string& path);

 private:
  std::unordered_map<std::string, std::string> folders_;
};

}  // namespace trimora::rooms
