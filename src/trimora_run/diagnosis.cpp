#include "trimora_run/diagnosis.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "ground/path.h"
#include "ground/system_path.h"
#include "input/input_file.h"
#include "input/letters.h"
#include "trimora_run/messages.h"
#include "trimora_run/words.h"

namespace trimora::rooms {

namespace fs = std::filesystem;

namespace {

/// The folder in which relative paths are looked for.
std::string here() {
  std::error_code ignored;
  return plainpath(fs::current_path(ignored));
}

/// The first bytes of a file, enough to know its kind by.
std::string beginning(const std::string& path) {
  const InputFile file(path);
  return std::string(file ? file.unread() : "");
}

/// What another program wrote at the start of its file, and the names under which it is known.
struct Signature {
  std::string_view begins;
  std::string_view format;  // as people call it; for a compressed file the program that unpacks it
  std::string_view name;    // as seqret calls it; none: a compressed file
};

constexpr Signature signatures[] = {
    {"CLUSTAL", "CLUSTAL", "clustal"},
    {"MUSCLE", "CLUSTAL", "clustal"},
    {"KALIGN", "CLUSTAL", "clustal"},
    {"PROBCONS", "CLUSTAL", "clustal"},
    {"#NEXUS", "NEXUS", "nexus"},
    {"#MEGA", "MEGA", "mega"},
    {"# STOCKHOLM", "Stockholm", "stockholm"},
    {"!!AA_MULTIPLE_ALIGNMENT", "MSF", "msf"},
    {"!!NA_MULTIPLE_ALIGNMENT", "MSF", "msf"},
    {"PILEUP", "MSF", "msf"},
    {"BZh", "bunzip2", ""},
    {"\xfd"
     "7zXZ",
     "unxz", ""},
    {"PK\x03\x04", "unzip", ""},
};

/// Whether a line holds two whole numbers and nothing else, as the first one of PHYLIP does.
bool twonumbers(std::string_view line) {
  int numbers = 0;
  bool digit = false;
  for (const char c : line) {
    const bool isdigit = c >= '0' && c <= '9';
    if (!isdigit && !whitespace(c)) return false;
    if (isdigit && !digit) ++numbers;
    digit = isdigit;
  }
  return numbers == 2;
}

std::string shown(std::string_view line) {
  std::string text = "'";
  for (const char c : line.substr(0, 60)) text += static_cast<unsigned char>(c) < ' ' ? '?' : c;
  return text + (line.size() > 60 ? "...'" : "'");
}

/// Whether carriage returns stand in a line, not only at its end.
bool hasreturns(std::string_view line) {
  return line.substr(0, line.empty() ? 0 : line.size() - 1).find('\r') != std::string_view::npos;
}

bool opens(const std::string& path) {
  return static_cast<bool>(InputFile(path));
}

}  // namespace

std::string typed(const std::string& path) {
  const bool plain = std::all_of(path.begin(), path.end(), [](char c) {
    return isletter(c) || (c >= '0' && c <= '9') || std::strchr("/._-+,:@%", c) != nullptr || (c & 0x80) != 0;
  });
  if (path == "-") return "/dev/stdin";
  if (plain && !path.starts_with('-')) return path;
  std::string text = path.starts_with('-') ? "./'" : "'";
  for (const char c : path) text += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return text + "'";
}

std::string whynopath(const std::string& line, const std::string& list) {
  std::string trimmed = line;
  if (trimmed.ends_with('\r')) trimmed.pop_back();
  if (trimmed != line && opens(trimmed)) return filled(words::listwindows, {shown(trimmed), typed(list)});
  const std::size_t first = trimmed.find_first_not_of(" \t");
  if (first == std::string::npos) return "";
  const std::string inner = trimmed.substr(first, trimmed.find_last_not_of(" \t") + 1 - first);
  if (inner != trimmed && opens(inner)) return filled(words::listblanks, {shown(line), typed(list)});
  if (inner.starts_with('#')) return filled(words::listcomment, {shown(inner), typed(list)});
  if (inner.starts_with("~/")) return filled(words::listhome, {shown(inner), typed(list)});
  return "";
}

std::string whatitis(std::string_view bytes, const std::string& path) {
  const std::size_t begin = bytes.find_first_not_of('\n');
  if (bytes.find_first_not_of(" \t\r\n") == std::string::npos) return std::string(words::emptyfile);
  if (bytes.starts_with("\x1f\x8b")) return filled(words::compressed, {typed(path)});
  if (bytes.starts_with("\xef\xbb\xbf")) return filled(words::byteordermark, {typed(path)});
  if (bytes.starts_with("\xff\xfe") || bytes.starts_with("\xfe\xff")) return filled(words::wide, {typed(path)});

  const std::string text(bytes.substr(begin));
  std::string capitals = text;
  std::transform(capitals.begin(), capitals.end(), capitals.begin(), capital);
  for (const Signature& known : signatures) {
    if (!text.starts_with(known.begins) && !(known.name.empty() ? false : capitals.starts_with(known.begins))) continue;
    if (known.name.empty()) return filled(words::compressedotherwise, {known.format});
    return filled(words::otherformat, {known.format, known.name, typed(path)});
  }
  const std::string line = text.substr(0, text.find('\n'));
  if (twonumbers(line)) return filled(words::otherformat, {"PHYLIP", "phylip", typed(path)});
  if (text.find(" MSF: ") != std::string::npos) return filled(words::otherformat, {"MSF", "msf", typed(path)});
  if (line.starts_with('>')) return filled(words::pircode, {shown(line)});
  if (opens(line)) return std::string(words::listinside);
  if (hasreturns(line)) return filled(words::oldlineends, {typed(path)});
  if (std::string why = whynopath(line, path); !why.empty()) return why;
  if (whitespace(line[0])) return std::string(words::emptyfirstline);
  return filled(words::unknownfile, {shown(line), here()});
}

std::string unfit(const std::string& path) {
  std::error_code error;
  const fs::file_status status = fs::status(systempath(path), error);
  if (!fs::exists(status) || fs::is_regular_file(status)) return "";
  if (fs::is_directory(status)) return filled(words::isfolder, {typed(path)});
  return std::string(words::ispipe);
}

std::string whynotopened(const std::string& path) {
  if (std::string why = unfit(path); !why.empty()) return why;
  std::error_code error;
  if (!fs::exists(systempath(path), error)) {
    return systempath(path).is_absolute() ? std::string(words::nosuchfile) : filled(words::nosuchpath, {here()});
  }
  errno = 0;
  std::FILE* file = std::fopen(path.c_str(), "rb");
  const int reason = errno;
  if (file != nullptr) std::fclose(file);
  return filled(words::notreadable, {std::strerror(file == nullptr && reason != 0 ? reason : EIO)});
}

std::string diagnose(const ExecutionTerminated& end, const std::string& path, const std::string& first) {
  const Culprit& culprit = end.culprit;
  const std::string_view message = std::string_view(end.message).substr(1);
  std::string_view name = culprit.name;
  if (name.starts_with('>')) name.remove_prefix(name.size() > 3 && name[3] == ';' ? 4 : 1);  // of a whole name line
  const std::string number = std::to_string(culprit.sequence);
  const std::string length = std::to_string(culprit.length);
  const std::string other = std::to_string(culprit.other);

  if (culprit.told) return "";
  if (culprit.error != 0) return filled(words::readerror, {std::strerror(culprit.error)});
  if (message.starts_with("File not opened")) return whynotopened(path);
  if (message.starts_with("Sequence not in NBRF/PIR or") || message.starts_with("Sequence not in correct")) {
    return whatitis(beginning(path), path);
  }
  if (message.starts_with("Sequence name too long")) {
    if (hasreturns(name)) return filled(words::oldlineends, {typed(path)});
    const bool blank = std::string_view(culprit.name).find(' ') < static_cast<std::size_t>(culprit.other);
    return filled(blank ? words::nametoolong : words::wordtoolong, {number, name, length, other, typed(path)});
  }
  if (message.starts_with("Sequences with different")) {
    return filled(words::differentlengths, {number, name, length, other});
  }
  if (message.starts_with("Sequence not in NBRF/PIR")) {
    if (culprit.sequence == 1) return whatitis(beginning(path), path);
    return filled(words::pirname, {shown(culprit.name), number});
  }
  if (message.starts_with("File not in NBRF/PIR format\n")) return filled(words::nostar, {number, name});
  if (message.starts_with("File not in NBRF/PIR format or")) {
    const std::string text = beginning(path);
    if (hasreturns(text.substr(0, text.find('\n')))) return filled(words::oldlineends, {typed(path)});
    return std::string(culprit.length == 1 ? words::onesequence : words::nosequence);
  }
  if (message.starts_with("Too few positions")) return filled(words::toofewpositions, {length});
  if (message.starts_with("Alignments with different")) return filled(words::othercount, {length, first, other});
  if (culprit.length > 0) return filled(words::toolong, {number, name, other});
  return std::string(words::outofmemory);
}

}  // namespace trimora::rooms
