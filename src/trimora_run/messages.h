// What a run says on standard error, one line each: "trimora-run: FILE: what happened, what follows, what to do".
#pragma once
#include <initializer_list>
#include <string>
#include <string_view>

namespace trimora::rooms {

class Messages {
 public:
  /// Something that is easily overlooked; the run goes on.
  void note(std::string_view file, std::string_view words);
  /// Something that has failed.
  void error(std::string_view file, std::string_view words);
  /// Memory has run out: said without asking for any.
  static void outofmemory(const char* file);

  /// Whether a note, or an error, was said so far.
  bool noted() const { return noted_; }
  bool failed() const { return failed_; }

  /// What was said since this was asked last, without the files, joined by "; ".
  std::string since();

 private:
  void say(std::string_view file, std::string_view words);
  bool noted_ = false;
  bool failed_ = false;
  std::string since_;
};

/// `words` with its places, as "{name}", taken by `values` from left to right.
/// Needs  as many values as places.
std::string filled(std::string_view words, std::initializer_list<std::string_view> values);

}  // namespace trimora::rooms
