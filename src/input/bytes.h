// The bytes of an input in large blocks: of a file, of the standard input, of memory; inflated and in UTF-8.
// Fails     with Failure: not_found, not_readable (errno), changed (while it was read), damaged; refused_format for gzip without zlib at build time
#pragma once
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace trimora::rooms {

class Bytes {
 public:
  Bytes() = default;
  Bytes(const Bytes&) = delete;
  Bytes& operator=(const Bytes&) = delete;
  virtual ~Bytes() = default;
  /// The bytes that follow, which live until the next call; none at the end and after it.
  virtual std::string_view next() = 0;
  /// How many there are in all, as far as that is known; else 0.
  virtual std::size_t size() const { return 0; }
};

using BytesPointer = std::unique_ptr<Bytes>;

/// The bytes as they are. Memory is not copied and has to outlive the result.
BytesPointer bytes_of_file(const std::string& path);
BytesPointer bytes_of_standard_input();
BytesPointer bytes_of_memory(std::string_view text);

/// The text in `bytes`: inflated when they begin as gzip does, all members of it; UTF-16 with a byte order mark as UTF-8;
/// without the byte order mark.
BytesPointer text_in(BytesPointer bytes);

}  // namespace trimora::rooms
