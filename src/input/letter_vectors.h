// Many letters at once. What compilers make of plain loops over letters with many conditions is a chain of branches.
#pragma once
#include <cstddef>
#include <cstring>

namespace trimora::rooms {

/// A letter in each place; of a comparison, 255 where it holds and 0 where not.
using LetterVector [[gnu::vector_size(16)]] = unsigned char;

/// Where `letters` is `wanted`.
inline LetterVector where(LetterVector letters, char wanted) {
  return reinterpret_cast<LetterVector>(letters == static_cast<unsigned char>(wanted));
}

/// Where `letters` is between `first` and `last`, both included.
inline LetterVector between(LetterVector letters, char first, char last) {
  const auto span = static_cast<unsigned char>(last - first);
  return reinterpret_cast<LetterVector>(letters - static_cast<unsigned char>(first) <= span);
}

/// Hand `text` to `use`, the last letters with NULs after them.
template <typename Use>
[[gnu::always_inline]] inline void for_letters(const char* text, std::size_t length, Use use) {
  LetterVector letters;
  for (; length >= sizeof letters; text += sizeof letters, length -= sizeof letters) {
    std::memcpy(&letters, text, sizeof letters);
    use(letters);
  }
  if (length == 0) return;
  letters = LetterVector{};
  std::memcpy(&letters, text, length);
  use(letters);
}

}  // namespace trimora::rooms
