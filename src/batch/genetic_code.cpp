#include "batch/genetic_code.h"

#include <algorithm>
#include <cstddef>

#include "input/letters.h"

namespace trimora::rooms {

namespace {

constexpr std::string_view standard = "FFLLSSSSYY**CC*WLLLLPPPPHHQQRRRRIIIMTTTTNNKKSSRRVVVVAAAADDEEGGGG";

struct NumberedCode {
  int number;
  std::string_view changes;  // against the standard code: codon and residue, blank between; "+": the codon also stops
  std::string_view starts;
};

// clang-format off
constexpr NumberedCode codes[] = {
  { 1, "",                                          "TTG CTG ATG"},
  { 2, "AGA* AGG* ATAM TGAW",                       "ATT ATC ATA ATG GTG"},
  { 3, "ATAM CTTT CTCT CTAT CTGT TGAW",             "ATA ATG GTG"},
  { 4, "TGAW",                                      "TTA TTG CTG ATT ATC ATA ATG GTG"},
  { 5, "AGAS AGGS ATAM TGAW",                       "TTG ATT ATC ATA ATG GTG"},
  { 6, "TAAQ TAGQ",                                 "ATG"},
  { 9, "AAAN AGAS AGGS TGAW",                       "ATG GTG"},
  {10, "TGAC",                                      "ATG"},
  {11, "",                                          "TTG CTG ATT ATC ATA ATG GTG"},
  {12, "CTGS",                                      "CTG ATG"},
  {13, "AGAG AGGG ATAM TGAW",                       "TTG ATA ATG GTG"},
  {14, "AAAN AGAS AGGS TAAY TGAW",                  "ATG"},
  {15, "TAGQ",                                      "ATG"},
  {16, "TAGL",                                      "ATG"},
  {21, "TGAW ATAM AGAS AGGS AAAN",                  "ATG GTG"},
  {22, "TCA* TAGL",                                 "ATG"},
  {23, "TTA*",                                      "ATT ATG GTG"},
  {24, "AGAS AGGK TGAW",                            "TTG CTG ATG GTG"},
  {25, "TGAG",                                      "TTG ATG GTG"},
  {26, "CTGA",                                      "CTG ATG"},
  {27, "TAGQ TAAQ TGAW+",                           "ATG"},
  {28, "TAAQ+ TAGQ+ TGAW+",                         "ATG"},
  {29, "TAAY TAGY",                                 "ATG"},
  {30, "TAAE TAGE",                                 "ATG"},
  {31, "TGAW TAGE+ TAAE+",                          "ATG"},
  {32, "TAGW",                                      "TTG CTG ATT ATC ATA ATG GTG"},
  {33, "TAAY TGAW AGAS AGGK",                       "TTG CTG ATG GTG"},
};
// clang-format on

/// The nucleotides that a letter means, as bits of TCAG; 0: it is no nucleotide.
unsigned nucleotides(char c) {
  constexpr unsigned t = 1, cy = 2, a = 4, g = 8;
  switch (capital(c)) {
    case 'T':
    case 'U': return t;
    case 'C': return cy;
    case 'A': return a;
    case 'G': return g;
    case 'R': return a | g;
    case 'Y': return cy | t;
    case 'S': return cy | g;
    case 'W': return a | t;
    case 'K': return g | t;
    case 'M': return a | cy;
    case 'B': return cy | g | t;
    case 'D': return a | g | t;
    case 'H': return a | cy | t;
    case 'V': return a | cy | g;
    case 'N':
    case 'X':
    case '?': return t | cy | a | g;
    default: return 0;
  }
}

/// Call `visit(number)` for each codon, from 0, that `codon` can mean.
template <typename Visit>
void each_expansion(std::string_view codon, Visit visit) {
  for (std::size_t n = 0; n < 64; ++n) {
    const std::size_t letter[] = {n / 16, n / 4 % 4, n % 4};
    bool fits = codon.size() == 3;
    for (std::size_t k = 0; k < 3 && fits; ++k) fits = (nucleotides(codon[k]) >> letter[k] & 1U) != 0;
    if (fits) visit(n);
  }
}

/// The number of a codon without ambiguity; 64: it is none.
std::size_t number_of_codon(std::string_view codon) {
  std::size_t number = 0;
  for (const char c : codon.substr(0, 3)) {
    switch (c) {
      case 'T':
      case 't':
      case 'U':
      case 'u': number = number * 4; break;
      case 'C':
      case 'c': number = number * 4 + 1; break;
      case 'A':
      case 'a': number = number * 4 + 2; break;
      case 'G':
      case 'g': number = number * 4 + 3; break;
      default: return 64;
    }
  }
  return codon.size() == 3 ? number : 64;
}

bool is_residue(char encoded, char residue, std::string_view codon) {
  switch (residue) {
    case 'B': return encoded == 'D' || encoded == 'N';
    case 'Z': return encoded == 'E' || encoded == 'Q';
    case 'J': return encoded == 'I' || encoded == 'L';
    case 'U': return codon == "TGA";
    case 'O': return codon == "TAG";
    default: return encoded == residue;
  }
}

}  // namespace

std::optional<GeneticCode> GeneticCode::numbered(int number) {
  const auto* row =
      std::find_if(std::begin(codes), std::end(codes), [&](const NumberedCode& r) { return r.number == number; });
  if (row == std::end(codes)) return {};
  GeneticCode code;
  std::copy(standard.begin(), standard.end(), code.residues_.begin());
  for (std::string_view left = row->changes; left.size() >= 4;) {
    const std::size_t n = number_of_codon(left.substr(0, 3));
    code.residues_[n] = left[3];
    code.both_[n] = left.size() > 4 && left[4] == '+';
    left.remove_prefix(std::min(left.size(), left.find(' ') == left.npos ? left.size() : left.find(' ') + 1));
  }
  for (std::size_t at = 0; at < row->starts.size(); at += 4) {
    code.starts_[number_of_codon(row->starts.substr(at, 3))] = true;
  }
  return code;
}

bool GeneticCode::encodes(std::string_view codon, char residue) const {
  residue = capital(residue);
  if (!is_letter(residue) || residue == 'X') return true;
  constexpr std::string_view letters = "TCAG";
  if (const std::size_t n = number_of_codon(codon); n < 64 && residues_[n] == residue) return true;
  bool any = false;
  each_expansion(codon, [&](std::size_t n) {
    const char plain[] = {letters[n / 16], letters[n / 4 % 4], letters[n % 4]};
    any = any || is_residue(residues_[n], residue, {plain, 3});
  });
  return any;
}

bool GeneticCode::starts(std::string_view codon) const {
  bool any = false;
  each_expansion(codon, [&](std::size_t n) { any = any || starts_[n]; });
  return any;
}

bool GeneticCode::stops(std::string_view codon, bool at_end) const {
  if (const std::size_t n = number_of_codon(codon); n < 64) return residues_[n] == '*' || (at_end && both_[n]);
  bool any = false, all = true;
  each_expansion(codon, [&](std::size_t n) {
    any = true;
    all = all && (residues_[n] == '*' || (at_end && both_[n]));
  });
  return any && all;
}

std::vector<int> genetic_code_numbers() {
  std::vector<int> numbers;
  for (const NumberedCode& code : codes) numbers.push_back(code.number);
  return numbers;
}

}  // namespace trimora::rooms
