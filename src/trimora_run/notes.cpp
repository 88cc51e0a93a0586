#include "trimora_run/notes.h"

#include <algorithm>
#include <bitset>
#include <cstdio>
#include <string>
#include <string_view>

#include "input/letters.h"

namespace {

constexpr std::size_t telling = 20;  // letters: a protein of that length is not made of nucleotides' letters alone

/// Neither a letter nor a gap nor the sign of an unknown residue.
constexpr bool odd(char c) {
  return !isletter(c) && c != '-' && c != '?';
}

/// The odd characters of the alignment, each once, with a blank in front.
std::string oddcharacters(const Alignment& ali) {
  std::bitset<256> found;
  for (int i = 1; i <= ali.numseq; ++i) {
    const char* first = ali.let[i].from(1);
    int count = 0;  // first without a branch, as vector code: odd characters are rare
    for (int p = 0; p < ali.nupo; ++p) count += odd(first[p]) ? 1 : 0;
    if (count == 0) continue;
    std::for_each(first, first + ali.nupo, [&](char c) { found[static_cast<unsigned char>(c)] = true; });
  }
  std::string list;
  for (int c = 0; c < 256; ++c) {
    if (!found[static_cast<std::size_t>(c)] || !odd(static_cast<char>(c))) continue;
    char code[8];
    std::snprintf(code, sizeof code, c > ' ' && c < 127 ? " %c" : " \\x%02x", static_cast<unsigned>(c));
    list += code;
  }
  return list;
}

std::string columns(const std::vector<Stretch>& stretches) {
  std::string list = totallength(stretches) == 1 ? "column" : "columns";
  for (const Stretch& s : stretches) {
    list += " " + std::to_string(s.first) + (s.length() > 1 ? "-" + std::to_string(s.last) : "");
  }
  return list;
}

/// The letters of the first sequence, as capitals.
std::string firstletters(const Alignment& ali) {
  std::string letters;
  for (int p = 1; p <= ali.nupo; ++p) {
    const char c = capital(ali.let[1][p]);
    if (isletter(c)) letters += c;
  }
  return letters;
}

}  // namespace

void Notes::operator()(const Alignment& ali, const BatchState& run) {
  const auto note = [&](const std::string& words) {
    std::fprintf(stderr, "trimora-run: %s: %s\n", run.fichero1.c_str(), words.c_str());
  };
  if (!ali.dropped.empty()) {
    note("dropped as gaps in every sequence, so that positions are counted without them: " + columns(ali.dropped));
  }
  if (const std::string list = oddcharacters(ali); !list.empty()) {
    note("these characters count as positions that agree with nothing:" + list);
  }
  if (run.fileformat == fasta && ali.name[1].size() > 2 && ali.name[1][2] == ';') {
    note("read as FASTA, as is the first alignment, but looks like NBRF/PIR");
  }

  const std::string letters = firstletters(ali);
  if (run.seq_type == 'P' && letters.size() >= telling && letters.find_first_not_of("ACGTUN") == std::string::npos) {
    note("read as protein, but looks like nucleotides: -t=D makes it DNA, -t=C codons");
  }
  if (run.seq_type != 'P' && letters.find_first_of("EFILPQ") != std::string::npos) {
    note("read as nucleotides, but looks like protein: -t=P");
  }

  if (firstnames_.size() == 0) firstnames_ = ali.name;
  const bool concatenated = run.tog_allfile == 1 || run.tog_allfile_init == 1 || run.tog_allungfile == 1;
  for (int i = 1; concatenated && i <= std::min(ali.numseq, firstnames_.size()); ++i) {
    if (ali.name[i] == firstnames_[i]) continue;
    note("sequence " + std::to_string(i) + " is concatenated with that of another name, " +
         withoutlineend(ali.name[i]) + " with " + withoutlineend(firstnames_[i]));
    break;
  }
}
