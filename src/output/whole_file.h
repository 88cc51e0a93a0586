// A file that is there whole or not at all: it is written beside its place and renamed in the end.
#pragma once
#include <memory>
#include <optional>
#include <string>

#include "output/output_file.h"

namespace trimora::rooms {

class WholeFile {
 public:
  /// Begin the file that is to be at `path`. Links are followed; what is there and is no file, such as a terminal, is
  /// written to directly. Fails with not_writable.
  explicit WholeFile(const std::string& path);
  /// What was not committed is removed.
  ~WholeFile();
  WholeFile(const WholeFile&) = delete;
  WholeFile& operator=(const WholeFile&) = delete;

  OutputFile& out() { return *out_; }
  /// Write what is left and give the file its name. Fails with not_writable, and nothing of it stays.
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
