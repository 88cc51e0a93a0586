// FASTA: a name line that begins with '>', then the letters.
#include "input/assembly.h"
#include "input/formats.h"

namespace trimora::rooms {

bool begins_fasta(std::string_view head) {
  return head.starts_with('>');
}

Reading read_fasta(Lines& in) {
  Assembly rows(in.bytes());
  rows.may_be_a3m = rows.may_be_a2m = true;
  std::string name;
  bool in_name = false;
  Lines::Piece piece;
  while (in.next(piece)) {
    if (piece.begins) {
      in_name = piece.text.starts_with('>');
      if (in_name) {
        if (!rows.empty()) rows.end();
        name.clear();
        piece.text.remove_prefix(1);
      }
    }
    if (!in_name) {
      rows.append(piece.text);
    } else {
      name += piece.text;
      if (piece.ends) rows.begin(name);
    }
  }
  if (!rows.empty()) rows.end();
  return rows.finish();
}

}  // namespace trimora::rooms
