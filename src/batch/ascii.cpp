#include "batch/ascii.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace trimora::rooms {

namespace {

using W = std::string_view;

// clang-format off
constexpr W latin[] = {  // from U+00C0
  "A","A","A","A","Ae","A","AE","C","E","E","E","E","I","I","I","I","D","N","O","O","O","O","Oe","_","O","U","U","U","Ue","Y","Th","ss",
  "a","a","a","a","ae","a","ae","c","e","e","e","e","i","i","i","i","d","n","o","o","o","o","oe","_","o","u","u","u","ue","y","th","y",
  "A","a","A","a","A","a","C","c","C","c","C","c","C","c","D","d","D","d","E","e","E","e","E","e","E","e","E","e","G","g","G","g",
  "G","g","G","g","H","h","H","h","I","i","I","i","I","i","I","i","I","i","IJ","ij","J","j","K","k","k","L","l","L","l","L","l","L",
  "l","L","l","N","n","N","n","N","n","n","N","n","O","o","O","o","O","o","OE","oe","R","r","R","r","R","r","S","s","S","s","S","s",
  "S","s","T","t","T","t","T","t","U","u","U","u","U","u","U","u","U","u","U","u","W","w","Y","y","Y","Z","z","Z","z","Z","z","s"};
constexpr W greek[] = {  // from U+0391
  "A","B","G","D","E","Z","E","Th","I","K","L","M","N","X","O","P","R","_","S","T","Y","Ph","Ch","Ps","O","I","Y","a","e","e","i","y",
  "a","b","g","d","e","z","e","th","i","k","l","m","n","x","o","p","r","s","s","t","y","ph","ch","ps","o","i","y","o","y","o"};
constexpr W cyrillic[] = {  // from U+0410
  "A","B","V","G","D","E","Zh","Z","I","J","K","L","M","N","O","P","R","S","T","U","F","Kh","Ts","Ch","Sh","Shch","","Y","","E","Yu","Ya",
  "a","b","v","g","d","e","zh","z","i","j","k","l","m","n","o","p","r","s","t","u","f","kh","ts","ch","sh","shch","","y","","e","yu","ya"};
// clang-format on

struct Script {
  std::uint32_t first;
  std::span<const W> letters;
};
constexpr Script scripts[] = {{0xC0, latin}, {0x391, greek}, {0x410, cyrillic}};

W letters_for(std::uint32_t code) {
  if (code >= 0x300 && code < 0x370) return "";  // marks on the letter before
  for (const Script& script : scripts) {
    if (code >= script.first && code < script.first + script.letters.size()) return script.letters[code - script.first];
  }
  return "?";
}

}  // namespace

std::string in_ascii(std::string_view text) {
  std::string ascii;
  for (std::size_t at = 0; at < text.size();) {
    const auto byte = static_cast<std::uint8_t>(text[at]);
    if (byte < 0x80) {
      ascii += text[at++];
      continue;
    }
    const std::size_t length = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : byte >= 0xC0 ? 2 : 1;
    std::uint32_t code = length == 1 ? 0xFFFD : byte & (0xFFU >> (length + 1));
    for (std::size_t k = 1; k < length; ++k) {
      const auto next = at + k < text.size() ? static_cast<std::uint8_t>(text[at + k]) : std::uint8_t{0};
      code = (next & 0xC0U) == 0x80U ? code << 6U | (next & 0x3FU) : 0xFFFD;
    }
    ascii += letters_for(code);
    at += length;
  }
  return ascii;
}

}  // namespace trimora::rooms
