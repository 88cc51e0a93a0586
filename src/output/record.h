// The alignment record: the layout of every alignment file of the program. Name line, body, end; the
// body in groups of ten letters, sixty letters a line. A blank follows each of the first five groups of a line,
// also where the body ends; the line end follows the sixth. Programs that read these files rely on it.
#pragma once
#include <cstddef>
#include <string>
#include <vector>

#include "input/alignment.h"
#include "input/input_state.h"
#include "output/output_file.h"

namespace trimora::rooms {

/// The start of a NBRF/PIR name line, by the type of sequence.
const char* pir_prefix(const InputState& run);

/// A record body, written stretch by stretch: groups and lines run on from one to the next.
class Body {
 public:
  explicit Body(OutputFile& out) : out_(out) {}
  /// Append `count` letters from `text` on.
  void add(const char* text, std::ptrdiff_t count);
  /// Write the last line, which may be shorter than the others.
  void end();

 private:
  static constexpr int line_length = 60;
  void put_line(const char* text);

  OutputFile& out_;
  int column_ = 0;          // letters already on the line, 0 to 59
  char line_[line_length];  // those letters: a line is laid out when it is whole
};

/// Append the letters of `row` at the positions of `stretches`.
void add_stretches(Body& body, const Row& row, const std::vector<Stretch>& stretches);

/// Write one record in the format of the input. `addbody` is called with the Body to fill.
template <typename AddBody>
void write_record(OutputFile& out, const InputState& run, const std::string& name, AddBody addbody) {
  out.put(run.fileformat == pir ? pir_prefix(run) : ">");
  out.put(name);
  if (run.fileformat == pir) out.put(" \n");  // in place of the description line
  Body body(out);
  addbody(body);
  body.end();
  out.put(run.fileformat == pir ? "*\n\n" : "\n");
}

}  // namespace trimora::rooms
