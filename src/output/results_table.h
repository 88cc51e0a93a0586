// The table of the alignments of a run: what became of each.
#pragma once
#include <string>

#include "output/output_file.h"

namespace trimora::rooms {

/// One alignment. -1: not known.
struct Overviewed {
  std::string alignment;  // its path, as the user gave it
  int sequences = -1;
  long long columns = -1;  // in the file
  int positions = -1;      // without those that are gaps in every sequence
  int ungapped = -1;       // positions without a gap in any sequence
  int selected = -1;
  int percent = -1;  // of the positions
  int blocks = -1;
  int b1 = -1, b2 = -1;
  const char* status = "skipped";  // or ok, failed: what came behind a failure was not trimmed
  std::string message;             // why it failed, or the notes
};

/// The file of the table: tab-separated, a header and one line for each alignment; NA where a number is not known. It is
/// there, whole, when this ends.
class Overview {
 public:
  explicit Overview(const std::string& path);
  /// Add a line. Tabs and line ends in paths and messages become blanks.
  void add(const Overviewed& row);

 private:
  OutputFile out_;
};

}  // namespace trimora::rooms
