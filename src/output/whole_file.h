// A file that appears complete or not at all: it is written under another name beside its place, then renamed.
#pragma once
#include <memory>
#include <optional>
#include <string>

#include "output/output_file.h"

namespace trimora::rooms {

class WholeFile {
 public:
  /// Begin the file `path`. Links are followed; if something other than a file is there, such as a terminal, it is
  /// written to directly. Fails with not_writable.
  explicit WholeFile(const std::string& path);
  /// Removes the file if it was not committed.
  ~WholeFile();
  WholeFile(const WholeFile&) = delete;
  WholeFile& operator=(const WholeFile&) = delete;

  OutputFile& out() { return *out_; }
  /// Write the rest and give the file its name. Fails with not_writable, and then leaves nothing.
  void commit();

 private:
  std::string path_;     // as the user gave it
  std::string place_;    // where it is to be: links are followed
  std::string written_;  // where it is until then; `place_` itself when that is no file
  std::optional<OutputFile> out_;
};

/// Write the file `path` with `write(out)`.
template <typename Write>
void write_whole(const std::string& path, Write write) {
  WholeFile file(path);
  write(file.out());
  file.commit();
}

}  // namespace trimora::rooms
