// NBRF/PIR: ">P1;name", a line of description, then the letters up to '*'.
#include <algorithm>
#include <cstring>
#include <optional>
#include <utility>

#include "ground/failure.h"
#include "input/assembly.h"
#include "input/formats.h"
#include "input/words.h"

namespace trimora::rooms {
namespace {

struct PirCode {
  std::string_view code;  // '?': any character
  std::optional<Kind> kind;
};
constexpr PirCode pir_codes[] = {
    {"P?", Kind::protein}, {"F1", Kind::protein}, {"D?", Kind::dna}, {"RL", Kind::dna}, {"RC", Kind::dna},
    {"N1", Kind::dna},     {"N3", Kind::dna},     {"HL", Kind::dna}, {"HC", Kind::dna}, {"XX", std::nullopt},
};

const PirCode* pir_code(std::string_view line) {
  if (line.size() < 4 || line[0] != '>' || line[3] != ';') return nullptr;
  for (const PirCode& row : pir_codes) {
    if (capital(line[1]) == row.code[0] && (row.code[1] == '?' || capital(line[2]) == row.code[1])) return &row;
  }
  return nullptr;
}

struct PirRecord {
  std::string name = {};
  std::string description = {};
  std::string letters = {};    // blanks included, '*' not
  std::size_t first_line = 0;  // of the letters: its length; 0: the sequence ends in it
};

bool residues(std::string_view text) {
  if (text.ends_with('*')) text.remove_suffix(1);
  return !blank(text) && std::all_of(text.begin(), text.end(),
                                     [](char c) { return is_letter(c) || std::memchr("-.~?! \t", c, 7) != nullptr; });
}

/// The letters of a record with the line that was taken for its description, 0 when that is none.
std::size_t length_with_description(const PirRecord& record) {
  if (!residues(record.description)) return 0;
  return letters_in(record.description) - (record.description.ends_with('*') ? 1 : 0) + letters_in(record.letters);
}

/// Move lines that are not descriptions back to the letters: where only that makes the lengths equal, or where each is
/// as long as a line of sequence.
std::vector<Remark> add_descriptions(std::vector<PirRecord>& records) {
  if (records.empty()) return {};
  const auto fits = [&](std::size_t length) {
    return length > 0 && std::all_of(records.begin(), records.end(), [length](const PirRecord& record) {
             return letters_in(record.letters) == length || length_with_description(record) == length;
           });
  };
  const std::size_t plain = letters_in(records.front().letters);
  const std::size_t longer = length_with_description(records.front());
  const bool all_plain = plain > 0 && std::all_of(records.begin(), records.end(), [plain](const PirRecord& record) {
                           return letters_in(record.letters) == plain;
                         });
  constexpr std::size_t short_line = 20;  // that a description may have by chance
  const std::size_t width = records.front().description.size();
  const bool all_lines = std::all_of(records.begin(), records.end(), [width](const PirRecord& record) {
    const std::size_t length = record.description.size();
    if (length < short_line || !residues(record.description)) return false;
    if (length == record.first_line) return true;
    // Of two lines the second one ends the sequence, and may be shorter.
    return record.first_line == 0 && length == width && length >= record.letters.size() &&
           record.description.find(' ') == std::string::npos;
  });
  if (all_plain && !all_lines) return {};
  const std::size_t length = all_plain || fits(longer) ? longer : plain;
  if (!all_plain && !fits(length)) return {};
  Remark remark{.what = Remark::What::description_missing};
  for (std::size_t k = 0; k < records.size(); ++k) {
    PirRecord& record = records[k];
    if (letters_in(record.letters) == length) continue;
    if (record.description.ends_with('*')) record.description.pop_back();
    record.letters.insert(0, record.description);
    if (remark.number++ == 0) remark.sequence = static_cast<int>(k) + 1;
  }
  if (remark.number == 0) return {};
  return {std::move(remark)};
}

/// Whether a line may be between two records.
bool passed_over(std::string_view line) {
  return blank(line) || line.starts_with(' ') || line == "*" ||
         (line.size() > 1 && is_letter(line[0]) && line[1] == ';');
}

std::vector<PirRecord> pir_records(Lines& in, std::optional<Kind>& kind) {
  std::vector<PirRecord> records;
  enum class Due { name, description, letters } due = Due::name;
  bool one_kind = true;
  const auto unfinished = [&](Failure::Kind what) {
    return Failure{.kind = what,
                   .sequence = static_cast<int>(records.size()),
                   .name = records.back().name,
                   .detail = "'*' at its end",
                   .length = static_cast<long long>(letters_in(records.back().letters))};
  };
  const auto ended_in_description = [&] {
    return due == Due::letters && letters_in(records.back().letters) == 0 && residues(records.back().description) &&
           records.back().description.ends_with('*');
  };
  std::string_view line;
  Lines::Piece piece;
  while (due != Due::letters ? in.next(line) : in.next(piece)) {
    if (due == Due::letters) line = piece.text;
    const bool named = (due != Due::letters || piece.begins) && line.starts_with('>');
    if (named) {
      if (due == Due::description || (due == Due::letters && !ended_in_description())) {
        throw unfinished(Failure::Kind::unfinished_record);
      }
      std::string whole(line);
      while (due == Due::letters && !piece.ends && in.next(piece)) whole += piece.text;
      const PirCode* code = pir_code(whole);
      if (code == nullptr) {
        throw Failure{.kind = Failure::Kind::bad_record,
                      .sequence = static_cast<int>(records.size()) + 1,
                      .detail = excerpt(whole),
                      .length = in.number()};
      }
      if (records.empty()) kind = code->kind;
      one_kind = one_kind && kind == code->kind;
      records.push_back({.name = whole.substr(4)});
      due = Due::description;
    } else if (due == Due::description) {
      records.back().description = line;
      due = Due::letters;
    } else if (due == Due::name) {
      if (!passed_over(line)) {
        throw Failure{.kind = Failure::Kind::bad_record, .detail = excerpt(line), .length = in.number()};
      }
    } else {
      PirRecord& record = records.back();
      const std::size_t star = line.find('*');
      record.letters += line.substr(0, star);
      if (piece.ends && record.first_line == 0 && star == line.npos) record.first_line = record.letters.size();
      if (star == line.npos) continue;
      due = Due::name;
      std::string rest(line.substr(star + 1));
      while (!piece.ends && in.next(piece)) rest += piece.text;
      if (!blank(rest)) {
        throw Failure{.kind = Failure::Kind::bad_record,
                      .sequence = static_cast<int>(records.size()),
                      .name = record.name,
                      .detail = excerpt("*" + rest),
                      .length = in.number()};
      }
    }
  }
  if (due == Due::description || (due == Due::letters && !ended_in_description())) {
    throw unfinished(Failure::Kind::unfinished_record);
  }
  if (!one_kind) kind = std::nullopt;
  return records;
}

}  // namespace

bool begins_pir(std::string_view head) {
  return pir_code(first_line(head)) != nullptr;
}

Reading read_pir(Lines& in) {
  std::optional<Kind> kind;
  std::vector<PirRecord> records = pir_records(in, kind);
  std::vector<Remark> remarks = add_descriptions(records);
  Assembly rows;
  if (!records.empty()) rows.reserve(records.size(), letters_in(records.front().letters));
  for (PirRecord& record : records) rows.add(std::move(record.name), std::exchange(record.letters, {}));
  Reading reading = rows.finish({}, std::move(remarks));
  reading.kind = kind;
  return reading;
}

}  // namespace trimora::rooms
