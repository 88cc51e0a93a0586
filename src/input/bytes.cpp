#include "input/bytes.h"

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <optional>
#include <utility>

#include "ground/failure.h"
#include "input/offsets.h"

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif
#ifdef TRIMORA_ZLIB
#include <zlib.h>
#endif

namespace trimora::rooms {
namespace {

constexpr std::size_t bytesatatime = 65536;  // stays in the second cache while it is copied to its place

class FileBytes : public Bytes {
 public:
  explicit FileBytes(const std::string& path) : path_(path), file_(std::fopen(path.c_str(), "rb")) {
    if (!file_) fail();
    begin();
  }
  FileBytes() : file_(stdin) {
#ifdef _WIN32
    _setmode(_fileno(stdin), _O_BINARY);  // every byte counts, as in a file
#endif
    begin();
  }

  std::string_view next() override {
    errno = 0;
    const std::size_t bytes = std::fread(block_.get(), 1, bytesatatime, file_.get());
    if (std::ferror(file_.get()) != 0) fail();  // half an alignment must not pass for a whole one
    // Cut off, or still being written: what was read may be neither the old file nor the new one. Of the standard input,
    // which may be a pipe, Windows says anything.
    if (bytes == 0 && !path_.empty() && end_ && end().value_or(*end_) != *end_) {
      throw Failure{.kind = Failure::Kind::changed, .file = path_};
    }
    return {block_.get(), bytes};
  }

  std::size_t size() const override {
    return end_.value_or(0);
  }

 private:
  void begin() {
    std::setvbuf(file_.get(), nullptr, _IONBF, 0);  // the block is the buffer
    end_ = end();
  }

  /// Where the file ends now; nothing where that is not known, as of a pipe.
  std::optional<std::size_t> end() const {
    const auto here = tell_offset(file_.get());
    if (here < 0 || seek_offset(file_.get(), 0, SEEK_END) != 0) return std::nullopt;
    const auto bytes = tell_offset(file_.get());
    if (seek_offset(file_.get(), here, SEEK_SET) != 0) fail();
    return bytes < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(bytes));
  }

  [[noreturn]] void fail() const {
    const int error = errno;
    const bool missing = error == ENOENT || error == ENOTDIR;
    throw Failure{.kind = missing ? Failure::Kind::not_found : Failure::Kind::not_readable,
                  .file = path_,
                  .error = error == 0 ? EIO : error};
  }

  struct Closer {
    void operator()(std::FILE* open) const {
      if (open != stdin) std::fclose(open);
    }
  };
  std::string path_;
  std::unique_ptr<std::FILE, Closer> file_;
  std::unique_ptr<char[]> block_{new char[bytesatatime]};  // not filled: it is overwritten
  std::optional<std::size_t> end_;                         // of the file as it was opened
};

class MemoryBytes : public Bytes {
 public:
  explicit MemoryBytes(std::string_view text) : text_(text), size_(text.size()) {}
  std::string_view next() override { return std::exchange(text_, {}); }
  std::size_t size() const override { return size_; }

 private:
  std::string_view text_;
  std::size_t size_;
};

/// Bytes whose first block has already been looked at; that block is returned again.
class ResumedBytes : public Bytes {
 public:
  ResumedBytes(std::string_view looked, BytesPointer rest) : looked_(looked), rest_(std::move(rest)) {}
  std::string_view next() override {
    const std::string_view looked = std::exchange(looked_, {});
    return looked.empty() ? rest_->next() : looked;
  }
  std::size_t size() const override { return rest_->size(); }

 private:
  std::string_view looked_;
  BytesPointer rest_;
};

#ifdef TRIMORA_ZLIB
class InflatedBytes : public Bytes {
 public:
  explicit InflatedBytes(BytesPointer packed) : packed_(std::move(packed)) {
    if (inflateInit2(&state_, 16 + MAX_WBITS) != Z_OK) throw std::bad_alloc();
  }
  ~InflatedBytes() override { inflateEnd(&state_); }

  std::string_view next() override {
    state_.next_out = reinterpret_cast<Bytef*>(block_.get());
    state_.avail_out = static_cast<uInt>(bytesatatime);
    while (state_.avail_out > 0) {
      if (left_.empty() && (left_ = packed_->next()).empty()) {
        if (inside_) throw Failure{.kind = Failure::Kind::damaged, .detail = "its gzip data are cut off"};
        break;
      }
      if (!inside_ && inflateReset(&state_) != Z_OK) throw std::bad_alloc();
      inside_ = true;
      constexpr std::size_t most = 1U << 30;  // of memory at once: zlib counts in 32 bits
      const std::string_view part = left_.substr(0, most);
      state_.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(part.data()));
      state_.avail_in = static_cast<uInt>(part.size());
      const int result = inflate(&state_, Z_NO_FLUSH);
      left_.remove_prefix(part.size() - state_.avail_in);
      if (result == Z_MEM_ERROR) throw std::bad_alloc();
      if (result == Z_STREAM_END) {
        inside_ = false;  // what follows has to be another member
        first_ = false;
      } else if (result != Z_OK && result != Z_BUF_ERROR) {
        const char* cause =
            first_ || state_.total_out > 0 ? "its gzip data are wrong" : "something else follows its gzip data";
        throw Failure{.kind = Failure::Kind::damaged, .detail = cause};
      }
    }
    return {block_.get(), bytesatatime - state_.avail_out};
  }

 private:
  BytesPointer packed_;
  std::string_view left_;  // of the packed bytes at hand
  z_stream state_{};
  bool inside_ = true;  // of a member
  bool first_ = true;
  std::unique_ptr<char[]> block_{new char[bytesatatime]};
};
#endif

BytesPointer inflated([[maybe_unused]] BytesPointer packed) {
#ifdef TRIMORA_ZLIB
  return std::make_unique<InflatedBytes>(std::move(packed));
#else
  throw Failure{.kind = Failure::Kind::refused_format, .detail = "gzip (this program was built without gzip)"};
#endif
}

/// UTF-16 without its mark as UTF-8. What is no character becomes the replacement character.
class DecodedBytes : public Bytes {
 public:
  DecodedBytes(BytesPointer coded, bool big) : coded_(std::move(coded)), big_(big) {}

  std::string_view next() override {
    text_.clear();
    while (text_.empty() && !ended_) {
      const std::string_view bytes = coded_->next();
      for (const char byte : bytes) take(static_cast<unsigned char>(byte));
      ended_ = bytes.empty();
      if (ended_ && half_ >= 0) throw Failure{.kind = Failure::Kind::damaged, .detail = "its UTF-16 text is cut off"};
      if (ended_ && lead_ != 0) put(replacement);
    }
    return text_;
  }

 private:
  static constexpr unsigned replacement = 0xFFFD;

  void take(unsigned byte) {
    if (half_ < 0) {
      half_ = static_cast<int>(byte);
      return;
    }
    const auto first = static_cast<unsigned>(std::exchange(half_, -1));
    const unsigned unit = big_ ? first << 8 | byte : byte << 8 | first;
    const bool trailing = unit >= 0xDC00 && unit < 0xE000;
    const unsigned lead = std::exchange(lead_, 0);
    if (lead != 0 && trailing) return put(0x10000 + ((lead - 0xD800) << 10) + (unit - 0xDC00));
    if (lead != 0) put(replacement);
    if (unit >= 0xD800 && unit < 0xDC00) {
      lead_ = unit;
    } else {
      put(trailing ? replacement : unit);
    }
  }

  void put(unsigned code) {
    const auto tail = [&](int shift) { text_ += static_cast<char>(0x80 | (code >> shift & 0x3F)); };
    if (code < 0x80) {
      text_ += static_cast<char>(code);
    } else if (code < 0x800) {
      text_ += static_cast<char>(0xC0 | code >> 6);
      tail(0);
    } else if (code < 0x10000) {
      text_ += static_cast<char>(0xE0 | code >> 12);
      tail(6), tail(0);
    } else {
      text_ += static_cast<char>(0xF0 | code >> 18);
      tail(12), tail(6), tail(0);
    }
  }

  BytesPointer coded_;
  bool big_;           // the high byte of a unit comes first
  int half_ = -1;      // the first byte of a unit whose second one has not come
  unsigned lead_ = 0;  // the first unit of a pair whose second one has not come
  bool ended_ = false;
  std::string text_;
};

BytesPointer decoded(BytesPointer bytes) {
  std::string_view looked = bytes->next();
  if (looked.starts_with("\xEF\xBB\xBF")) looked.remove_prefix(3);
  const bool big = looked.starts_with("\xFE\xFF");
  const bool coded = big || looked.starts_with("\xFF\xFE");
  if (coded) looked.remove_prefix(2);
  auto resumed = std::make_unique<ResumedBytes>(looked, std::move(bytes));
  if (!coded) return resumed;
  return std::make_unique<DecodedBytes>(std::move(resumed), big);
}

}  // namespace

BytesPointer bytes_of_file(const std::string& path) {
  return std::make_unique<FileBytes>(path);
}

BytesPointer bytes_of_standard_input() {
  return std::make_unique<FileBytes>();
}

BytesPointer bytes_of_memory(std::string_view text) {
  return std::make_unique<MemoryBytes>(text);
}

BytesPointer text_in(BytesPointer bytes) {
  const std::string_view looked = bytes->next();
  const bool packed = looked.starts_with("\x1F\x8B");
  auto resumed = std::make_unique<ResumedBytes>(looked, std::move(bytes));
  return decoded(packed ? inflated(std::move(resumed)) : std::move(resumed));
}

}  // namespace trimora::rooms
