#include "output/whole_file.h"

#include <cstdio>
#include <filesystem>
#include <system_error>

#include "ground/failure.h"
#include "ground/places.h"
#include "ground/system_path.h"

namespace trimora::rooms {

namespace fs = std::filesystem;

WholeFile::WholeFile(const std::string& path, Unfinished* unfinished)
    : path_(path),
      place_(path.starts_with("/dev/") ? path : link_target(path)),
      written_(place_),
      unfinished_(unfinished) {
  std::error_code unknown;
  const fs::file_type type = fs::status(system_path(place_), unknown).type();
  if (type == fs::file_type::regular || type == fs::file_type::not_found) {
    for (int number = 1; written_ == place_ || fs::exists(fs::symlink_status(system_path(written_), unknown));
         ++number) {
      written_ = place_ + ".part" + std::to_string(number);
    }
  }
  if (written_ != place_ && unfinished_ != nullptr) unfinished_->add(written_.c_str());
  try {
    out_.emplace(written_);
  } catch (Failure& failure) {
    forget();
    failure.file = path_;
    written_ = place_;  // nothing to remove
    throw;
  } catch (...) {
    forget();
    throw;
  }
}

void WholeFile::forget() {
  if (written_ != place_ && unfinished_ != nullptr) unfinished_->drop(written_.c_str());
}

WholeFile::~WholeFile() {
  if (written_ == place_) return;
  out_.reset();
  std::remove(written_.c_str());  // which needs no memory: that may be what has run out
  forget();
}

void WholeFile::commit() {
  if (const int error = out_->close(); error != 0) {
    throw Failure{.kind = Failure::Kind::not_writable, .file = path_, .error = error};
  }
  if (written_ == place_) return;
  std::error_code refusal;
  const fs::file_status old = fs::status(system_path(place_), refusal);
  if (fs::is_regular_file(old)) fs::permissions(system_path(written_), old.permissions(), refusal);
  refusal.clear();
  fs::rename(system_path(written_), system_path(place_), refusal);
  if (refusal) throw Failure{.kind = Failure::Kind::not_writable, .file = path_, .error = refusal.value()};
  forget();
  written_ = place_;
}

}  // namespace trimora::rooms
