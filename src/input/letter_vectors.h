// Many letters at once. What compilers make of plain loops over letters with many conditions is a chain of branches.
#pragma once
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

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

/// Whether a comparison holds in any place.
inline bool any(LetterVector places) {
  std::uint64_t halves[2];
  std::memcpy(halves, &places, sizeof halves);
  return (halves[0] | halves[1]) != 0;
}

/// Hand `text` to `use`, with gaps after its last letter.
template <typename Use>
[[gnu::always_inline]] inline void for_letters(std::string_view text, Use use) {
  LetterVector letters;
  for (; text.size() >= sizeof letters; text.remove_prefix(sizeof letters)) {
    std::memcpy(&letters, text.data(), sizeof letters);
    use(letters);
  }
  if (text.empty()) return;
  std::memset(&letters, '-', sizeof letters);
  std::memcpy(&letters, text.data(), text.size());
  use(letters);
}

/// How many characters of `text` are of each kind: functions that say where a LetterVector is of that kind, which no gap
/// is.
template <typename... Kinds>
[[gnu::always_inline]] inline std::array<long long, sizeof...(Kinds)> count_letters(std::string_view text,
                                                                                    Kinds... kinds) {
  constexpr std::size_t at_once = 255 * sizeof(LetterVector);  // each place counts up to 255
  std::array<long long, sizeof...(Kinds)> counts{};
  for (; !text.empty(); text.remove_prefix(std::min(text.size(), at_once))) {
    LetterVector found[sizeof...(Kinds)] = {};
    for_letters(text.substr(0, at_once), [&](LetterVector letters) {
      std::size_t kind = 0;
      ((found[kind++] -= kinds(letters)), ...);  // 255 is -1
    });
    for (std::size_t kind = 0; kind < counts.size(); ++kind) {
      if (!any(found[kind])) continue;
      for (std::size_t k = 0; k < sizeof(LetterVector); ++k) counts[kind] += found[kind][k];
    }
  }
  return counts;
}

}  // namespace trimora::rooms
