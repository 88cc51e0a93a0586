#include "ground/path.h"

namespace trimora::rooms {

SplitPath getpath(const std::string& path) {
  const std::size_t behind = path.find_last_of(separators) + 1;  // 0 when there is no separator
  return {path.substr(0, behind), path.substr(behind)};
}

}  // namespace trimora::rooms
