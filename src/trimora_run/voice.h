// What a run says, one line each, and what it has come to by that.
#pragma once
#include <cstdio>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "trimora_run/settings.h"

namespace trimora::rooms {

/// What the run says: the account on standard output, or on standard error where an alignment or a table takes its place;
/// notes and errors on standard error, one a line.
class Voice {
 public:
  explicit Voice(const Settings& settings)
      : account_(settings.quiet                               ? nullptr
                 : settings.filter() || settings.table == "-" ? stderr
                                                              : stdout) {}

  /// The line that comes before the others of the account, if there are any.
  void opening(std::string line) { opening_ = std::move(line); }
  void account(const std::string& line) {
    if (account_ == nullptr) return;
    if (!opening_.empty()) say(account_, std::exchange(opening_, {}));
    say(account_, line);
  }
  void note(const std::string& file, std::string_view words) {
    noted_ = true;
    message(file, words);
  }
  void error(const std::string& file, std::string_view words) {
    failed_ = true;
    message(file, words);
  }
  bool noted() const { return noted_; }
  bool failed() const { return failed_; }

 private:
  static void message(const std::string& file, std::string_view words) {
    std::string line = "trimora-run: " + file + ": ";
    say(stderr, line.append(words));
  }
  /// In one piece, since other processes may write there as well. A name may hold anything: it stays on its line.
  static void say(std::FILE* stream, std::string line) {
    for (char& c : line) c = static_cast<unsigned char>(c) < ' ' && c != '\t' ? ' ' : c;
    line += '\n';
    std::fputs(line.c_str(), stream);
    if (stream == stderr) std::fflush(stream);
  }

  std::string opening_;
  std::FILE* account_;
  bool noted_ = false;
  bool failed_ = false;
};

/// "1 alignment", "2 alignments", "2 species".
inline std::string number_of(long long number, const char* noun) {
  return std::to_string(number) + ' ' + noun + (number == 1 || std::string_view(noun) == "species" ? "" : "s");
}

inline std::string joined_by(const std::vector<std::string>& texts, std::string_view between) {
  std::string all;
  for (const std::string& text : texts) all.append(all.empty() ? "" : between).append(text);
  return all;
}

}  // namespace trimora::rooms
