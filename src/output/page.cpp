#include "output/page.h"

#include <cstddef>
#include <filesystem>
#include <system_error>

#include "ground/path.h"
#include "ground/system_path.h"
#include "input/letters.h"
#include "output/overview_page.h"

namespace trimora::rooms {

namespace fs = std::filesystem;

namespace {

/// How many bytes a character of UTF-8 takes at the beginning of `text`; 0: it is none.
std::size_t character(std::string_view text) {
  const auto byte = [&](std::size_t k) { return k < text.size() ? static_cast<unsigned char>(text[k]) : 0U; };
  const unsigned first = byte(0);
  const std::size_t length = first < 0x80U                      ? 1
                             : first >= 0xC2U && first < 0xE0U  ? 2
                             : first >= 0xE0U && first < 0xF0U  ? 3
                             : first >= 0xF0U && first <= 0xF4U ? 4
                                                                : 0;
  for (std::size_t k = 1; k < length; ++k) {
    if ((byte(k) & 0xC0U) != 0x80U) return 0;
  }
  const bool too_long = (first == 0xE0U && byte(1) < 0xA0U) || (first == 0xF0U && byte(1) < 0x90U);
  const bool no_character = (first == 0xEDU && byte(1) >= 0xA0U) || (first == 0xF4U && byte(1) >= 0x90U);
  return too_long || no_character ? 0 : length;
}

/// `text` as a part of an address, in which '/' alone keeps a meaning.
std::string in_address(std::string_view text) {
  constexpr char digits[] = "0123456789ABCDEF";
  std::string address;
  for (const char c : text) {
    if (is_letter(c) || is_digit(c) || std::string_view("-_.~/").find(c) != std::string_view::npos) {
      address += c;
    } else {
      const auto byte = static_cast<unsigned char>(c);
      address += {'%', digits[byte / 16], digits[byte % 16]};
    }
  }
  return address;
}

std::string whole_folder(const std::string& folder) {
  std::error_code unknown;
  const fs::path whole = fs::absolute(folder.empty() ? fs::path(".") : system_path(folder), unknown);
  return plain_path(whole.lexically_normal() / "");
}

}  // namespace

void begin_page(OutputFile& out) {
  out.put(page_before_data);
}

void end_page(OutputFile& out) {
  out.put(page_after_data);
}

void put_json(OutputFile& out, std::string_view text) {
  out.put('"');
  while (!text.empty()) {
    const std::size_t length = character(text);
    const char c = text.front();
    if (length == 0) {
      out.put("\\ufffd");
    } else if (c == '"' || c == '\\') {
      out.put('\\');
      out.put(c);
    } else if (static_cast<unsigned char>(c) < ' ' || c == '<' || c == '>' || c == '&' || c == '\x7f') {
      out.print("\\u%04x", static_cast<unsigned>(c));
    } else {
      out.put(text.substr(0, length));
    }
    text.remove_prefix(length == 0 ? 1 : length);
  }
  out.put('"');
}

Addresses::Addresses(const std::string& page) : from_(whole_folder(getpath(page).path_file)) {}

std::string Addresses::of(const std::string& path) {
  const SplitPath parts = getpath(path);
  if (!known_ || parts.path_file != folder_) {
    const std::string folder = whole_folder(parts.path_file);
    const fs::path to = system_path(folder);
    const fs::path relative = to.lexically_relative(system_path(from_));
    const std::u8string text = (relative.empty() ? to : relative / "").generic_u8string();
    const std::string address = in_address(std::string(text.begin(), text.end()));
    folder_ = parts.path_file;
    address_ = relative.empty() ? "file:///" + address : address;  // on another drive
    if (address_ == "./") address_.clear();
    known_ = true;
  }
  return address_ + in_address(parts.name_file);
}

}  // namespace trimora::rooms
