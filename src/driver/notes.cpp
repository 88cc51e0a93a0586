#include "driver/notes.h"

#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

#include "selection/scores.h"

namespace {

constexpr int telling = 20;  // letters: a protein of that length is not made of nucleotides' letters alone

bool anywhere(char letter, const Alignment& ali) {
  for (int i = 1; i <= ali.numseq; ++i) {
    if (std::memchr(ali.let[i].from(1), letter, static_cast<std::size_t>(ali.nupo)) != nullptr) return true;
  }
  return false;
}

bool seemsnucleotides(const Alignment& ali) {
  int letters = 0;
  for (int p = 1; p <= ali.nupo; ++p) {
    const char c = capital(ali.let[1][p]);
    if (c == '-' || c == '?') continue;
    if (std::string_view("ACGTUN").find(c) == std::string_view::npos) return false;
    ++letters;
  }
  return letters >= telling;
}

}  // namespace

void notes(const Alignment& ali, const RunState& run) {
  const auto note = [&](const std::string& words) {
    std::fprintf(stderr, "trimora-run: %s: %s\n", run.fichero1.c_str(), words.c_str());
  };
  if (!ali.dropped.empty()) {
    std::string columns;
    for (const Stretch& s : ali.dropped) {
      columns += " " + std::to_string(s.first) + (s.length() > 1 ? "-" + std::to_string(s.last) : "");
    }
    note("dropped as gaps in every sequence, so that positions are counted without them: columns" + columns);
  }
  if (anywhere('\r', ali)) note("carriage returns count as positions");
  if (run.seq_type == 'P' && seemsnucleotides(ali)) note("taken as protein; -t=D makes it DNA, -t=C codons");
}
