// A file that appears complete or not at all: it is written under another name beside its place, then renamed.
#pragma once
#include <array>
#include <atomic>
#include <memory>
#include <optional>
#include <string>

#include "output/output_file.h"

namespace trimora::rooms {

/// The names of files that are not whole yet, of one face. Whatever interrupts the program may look at them at any time.
class Unfinished {
 public:
  /// Keep a name for as long as it is not dropped; it is not copied. Of very many at once, some are not kept.
  void add(const char* path) { replace(nullptr, path); }
  void drop(const char* path) { replace(path, nullptr); }

  template <typename Visit>
  void each(Visit visit) const {
    for (const auto& place : paths_) {
      if (const char* path = place.load(); path != nullptr) visit(path);
    }
  }

 private:
  void replace(const char* from, const char* to) {
    for (auto& place : paths_) {
      const char* expected = from;
      if (place.compare_exchange_strong(expected, to)) return;
    }
  }
  static_assert(std::atomic<const char*>::is_always_lock_free);
  std::array<std::atomic<const char*>, 16> paths_ = {};
};

class WholeFile {
 public:
  /// Begin the file `path`. Links are followed; if something other than a file is there, such as a terminal, it is
  /// written to directly. `unfinished` keeps the name that it has until it is whole. Fails with not_writable, also where
  /// an older file is write-protected.
  explicit WholeFile(const std::string& path, Unfinished* unfinished = nullptr);
  /// Removes the file if it was not committed.
  ~WholeFile();
  WholeFile(const WholeFile&) = delete;
  WholeFile& operator=(const WholeFile&) = delete;

  OutputFile& out() { return *out_; }
  /// Write the rest and give the file its name. Fails with not_writable, and then leaves nothing.
  void commit();

 private:
  void check_writable() const;  // the older file
  void begin();                 // unless `written_` is there already
  void forget();                // the unfinished name

  std::string path_;     // as the user gave it
  std::string place_;    // where it is to be: links are followed
  std::string written_;  // where it is until then; `place_` itself when that is no file
  Unfinished* unfinished_;
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
