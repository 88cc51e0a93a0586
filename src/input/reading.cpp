#include "input/reading.h"

#include <algorithm>
#include <utility>

namespace trimora::rooms {
namespace {

/// "1 column", "12 columns".
std::string counted(long long number, const std::string& one, const std::string& many) {
  return std::to_string(number) + " " + (number == 1 ? one : many);
}

}  // namespace

std::string words(const Remark& remark) {
  const long long number = remark.number;
  switch (remark.what) {
    case Remark::What::layout: return "read as " + remark.detail;
    case Remark::What::more_alignments: return "only the first alignment of the file is read";
    case Remark::What::description_missing:
      return counted(number, "record has", "records have") + " no description line (the first: sequence " +
             std::to_string(remark.sequence) + "): the line after the name is read as sequence";
    case Remark::What::dots_are_gaps: return counted(number, "dot is read as a gap", "dots are read as gaps");
    case Remark::What::dots_resolved:
      return counted(number, "'" + remark.detail + "' is", "'" + remark.detail + "' are") +
             " replaced by the letter of the first sequence";
    case Remark::What::hyphens_unknown:
      return counted(number, "'-' is missing data", "'-' are missing data") + ", as the file says: read as '?'";
    case Remark::What::sets_of_letters:
      return counted(number, "set of letters such as {AC} is read as one ambiguous letter",
                     "sets of letters such as {AC} are read as one ambiguous letter each");
    case Remark::What::insert_columns:
      return counted(number, "column is an insert", "columns are inserts") + " and not aligned, as " + remark.detail +
             " says: never selected";
    case Remark::What::last_column_of_stars: return "the last column holds only '*' and gaps: dropped";
    case Remark::What::stars_at_ends:
      return counted(number, "'*' at the end of a sequence is read as a gap",
                     "'*' at the ends of sequences are read as gaps");
    case Remark::What::stars_inside:
      return counted(number, "'*' inside a sequence is an unknown residue",
                     "'*' inside sequences are unknown residues");
    case Remark::What::exclamation_marks:
      return counted(number, "'!' is an unknown residue", "'!' are unknown residues");
    case Remark::What::u_read_as_t: return counted(number, "U is", "U are") + " read as T, which occurs as well";
    case Remark::What::charsets_void: return "the character sets in the file no longer hold after trimming";
  }
  return {};
}

void settle_stars(Reading& reading) {
  if (std::find(reading.letters.begin(), reading.letters.end(), '*') == reading.letters.end()) return;
  long long ends = 0, last = 0;
  bool residue_in_last = false;
  for (int i = 1; i <= reading.numseq(); ++i) {
    char* row = reading.row(i);
    int p = reading.nupo;
    for (; p > 0 && (row[p - 1] == '*' || row[p - 1] == '-'); --p) {
      if (row[p - 1] == '*') ++(p == reading.nupo ? last : ends);
      row[p - 1] = '-';
    }
    residue_in_last |= p == reading.nupo;
  }
  if (residue_in_last) ends += std::exchange(last, 0);
  const auto inside = std::count(reading.letters.begin(), reading.letters.end(), '*');
  if (last > 0) reading.remarks.push_back({.what = Remark::What::last_column_of_stars, .number = last});
  if (ends > 0) reading.remarks.push_back({.what = Remark::What::stars_at_ends, .number = ends});
  if (inside > 0) reading.remarks.push_back({.what = Remark::What::stars_inside, .number = inside});
}

}  // namespace trimora::rooms
