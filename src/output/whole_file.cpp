#include "output/whole_file.h"

#include <cerrno>
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
  if (type == fs::file_type::regular) check_writable();
  if (type != fs::file_type::regular && type != fs::file_type::not_found) begin();
  for (int number = 1; !out_; ++number) {
    written_ = place_ + ".part" + std::to_string(number);
    if (!fs::exists(fs::symlink_status(system_path(written_), unknown))) begin();
  }
}

void WholeFile::check_writable() const {
  errno = 0;
  std::FILE* old = std::fopen(place_.c_str(), "r+b");
  if (old == nullptr) {
    throw Failure{.kind = Failure::Kind::not_writable, .file = path_, .error = errno != 0 ? errno : EIO};
  }
  std::fclose(old);
}

void WholeFile::begin() {
  const bool direct = written_ == place_;
  if (!direct && unfinished_ != nullptr) unfinished_->add(written_.c_str());
  try {
    out_.emplace(written_, direct ? OutputFile::Old::emptied : OutputFile::Old::refused);
  } catch (Failure& failure) {
    forget();
    if (!direct && failure.error == EEXIST) return;  // another run has just begun it
    failure.file = path_;
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
