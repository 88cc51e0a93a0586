#include "batch/codons.h"

#include <algorithm>
#include <optional>
#include <unordered_map>
#include <utility>

#include "ground/failure.h"
#include "input/letters.h"
#include "input/read.h"
#include "output/forms.h"

namespace trimora::rooms {

namespace {

bool is_nucleotide(char c) {
  return is_letter(c) || c == '?' || c == '*';
}

/// Why a coding sequence does not fit from one nucleotide on; empty: it does.
struct Fit {
  Backtranslated made;
  std::string why;
};

Fit fit(std::string_view row, std::string_view coding, std::size_t begins, const GeneticCode& code) {
  Fit found;
  found.made.begins = static_cast<int>(begins) + 1;
  std::size_t at = begins;
  int residue = 0;
  std::string& codons = found.made.codons;
  codons.reserve(row.size() * 3);
  for (const char c : row) {
    if (c == '-') {
      codons += "---";
      continue;
    }
    ++residue;
    const std::string place = "residue " + std::to_string(residue) + ", " + c;
    if (at + 3 > coding.size()) {
      found.why = place + ", has no codon: its coding sequence ends before it, after " + std::to_string(coding.size()) +
                  " nucleotides";
      return found;
    }
    const std::string_view codon = coding.substr(at, 3);
    if (!code.encodes(codon, c) && !(residue == 1 && capital(c) == 'M' && code.starts(codon))) {
      found.why =
          place + ", is not encoded by its codon, " + std::string(codon) + ", at nucleotide " + std::to_string(at + 1);
      return found;
    }
    const bool stop = code.stops(codon);
    found.made.stops += stop ? 1 : 0;
    codons += stop ? "NNN" : codon;
    at += 3;
  }
  if (at + 3 <= coding.size() && code.stops(coding.substr(at, 3), true)) {
    found.made.final_stop = true;
    at += 3;
  }
  if (coding.size() - at > 2) {
    found.why = "its " + std::to_string(residue) + " residues leave " + std::to_string(coding.size() - at) +
                " nucleotides of its coding sequence, from nucleotide " + std::to_string(at + 1) + " on";
  }
  found.made.left_over = static_cast<int>(coding.size() - at);
  return found;
}

}  // namespace

std::string nucleotides_of(std::string_view sequence) {
  std::string all;
  all.reserve(sequence.size());
  for (const char c : sequence) {
    if (is_nucleotide(c)) all += c == 'U' ? 'T' : c == 'u' ? 't' : c == '*' ? '?' : c;
  }
  return all;
}

CodingSequences read_coding_sequences(const std::string& path) {
  CodingSequences found;
  Input input(path);
  const InputFormat* format = input.format();
  if (format != nullptr && std::string_view(format->name) != "FASTA") {
    Reading reading = input.read();
    found.names = std::move(reading.names);
    for (int i = 1; i <= static_cast<int>(found.names.size()); ++i) {
      found.sequences.push_back(nucleotides_of({reading.row(i), static_cast<std::size_t>(reading.nupo)}));
    }
  } else {
    for (std::string_view line; input.line(line);) {
      if (line.starts_with('>')) {
        found.names.emplace_back(plain_name(line.substr(1)));
        found.sequences.emplace_back();
      } else if (!found.sequences.empty()) {
        found.sequences.back() += nucleotides_of(line);
      }
    }
  }
  if (found.names.empty()) throw Failure{.kind = Failure::Kind::too_few_sequences, .file = path};
  return found;
}

Backtranslated backtranslate(std::string_view row, std::string_view coding, const GeneticCode& code) {
  Fit first = fit(row, coding, 0, code);
  if (first.why.empty()) return std::move(first.made);
  std::optional<Backtranslated> shifted;
  int fits = 0;
  for (const std::size_t begins : {1U, 2U}) {
    if (coding.size() < begins) continue;
    Fit other = fit(row, coding, begins, code);
    if (!other.why.empty()) continue;
    ++fits;
    shifted = std::move(other.made);
  }
  if (fits == 1) return *std::move(shifted);
  throw Failure{.kind = Failure::Kind::contrary_type, .detail = first.why};
}

std::vector<int> match_by_name(const std::vector<std::string>& rows, const std::vector<std::string>& row_keys,
                               const std::vector<std::string>& names, const std::vector<std::string>& name_keys) {
  const auto numbers = [](const std::vector<std::string>& texts) {
    std::unordered_map<std::string_view, int> found;  // -1: several have it
    for (std::size_t k = 0; k < texts.size(); ++k) {
      const auto [entry, fresh] = found.try_emplace(texts[k], static_cast<int>(k));
      if (!fresh) entry->second = -1;
    }
    return found;
  };
  const auto whole = numbers(names), keys = numbers(name_keys);
  std::vector<int> matched;
  for (std::size_t k = 0; k < rows.size(); ++k) {
    const auto by_name = whole.find(rows[k]);
    const auto by_key = keys.find(row_keys[k]);
    matched.push_back(by_name != whole.end() && by_name->second >= 0 ? by_name->second
                      : by_key != keys.end()                         ? by_key->second
                                                                     : -1);
  }
  return matched;
}

}  // namespace trimora::rooms
