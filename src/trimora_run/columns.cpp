#include "trimora_run/columns.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>

#include "output/file_names.h"
#include "output/output_file.h"

namespace {

char* puttext(char* to, std::string_view text) {
  return to + text.copy(to, text.size());
}

char* putnumber(char* to, long long number) {
  return std::to_chars(to, to + 20, number).ptr;
}

/// Whether the decimal number next to `decimal` is read as `score`, be it read as single precision or first as double.
bool readsback(double decimal, float score) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  return static_cast<float>(decimal) == score && static_cast<float>(std::nextafter(decimal, infinity)) == score &&
         static_cast<float>(std::nextafter(decimal, -infinity)) == score;
}

std::string_view classof(const PositionScores& scores, int p, const SelectionState& run) {
  if (scores.val[p] == 0) return "gap";
  if (!conserved(scores, p, run)) return "nonconserved";
  return scores.val[p] >= static_cast<float>(run.flankval) ? "flank" : "conserved";
}

}  // namespace

char* putscore(char* to, float score) {
  const auto whole = static_cast<long long>(score);
  if (static_cast<float>(whole) == score) return putnumber(to, whole);
  double scale = 1;
  long long digits = 0;
  int decimals = 0;
  do {  // a score that is not whole is below 2^23: the digits of every one of them fit
    scale *= 10;
    ++decimals;
    digits = std::llround(static_cast<double>(score) * scale);
  } while (!readsback(static_cast<double>(digits) / scale, score) && decimals < 9);
  char* point = putnumber(to, whole);
  char* end = point + 1 + decimals;
  *point = '.';
  for (char* digit = end - 1; digit > point; --digit, digits /= 10) *digit = static_cast<char>('0' + digits % 10);
  return end;
}

std::string columnsfile(const OutputState& run) {
  return seqfile(run) + ".columns.tsv";
}

void savecolumns(const std::string& path, const Alignment& ali, const PositionScores& scores,
                 const SelectedBlocks& blocks, const SelectionState& run) {
  OutputFile out(path, OutputFile::whole);
  out.put("column\tposition\tscore\tresidue\tclass\tblock\tnew\n");
  const long long columns = static_cast<long long>(ali.nupo) + totallength(ali.dropped);
  auto dropped = ali.dropped.begin();
  std::size_t block = 0;  // the one that holds p, or the next one
  int p = 0;
  int selected = 0;
  for (long long column = 1; column <= columns; ++column) {
    char* to = putnumber(out.room(128), column);
    if (dropped != ali.dropped.end() && column > dropped->last) ++dropped;
    if (dropped != ali.dropped.end() && column >= dropped->first) {
      out.filled(puttext(to, "\t\t\t\tdropped\t\t\n"));
      continue;
    }
    ++p;
    *to++ = '\t';
    to = putnumber(to, p);
    *to++ = '\t';
    to = putscore(to, scores.val[p]);
    *to++ = '\t';
    *to++ = scores.val_aa[p];
    *to++ = '\t';
    to = puttext(to, classof(scores, p, run));
    *to++ = '\t';
    while (block < blocks.newpos.size() && p > blocks.newpos[block].last) ++block;
    const bool inside = block < blocks.newpos.size() && p >= blocks.newpos[block].first;
    if (inside) to = putnumber(to, static_cast<long long>(block) + 1);
    *to++ = '\t';
    if (inside) to = putnumber(to, ++selected);
    *to++ = '\n';
    out.filled(to);
  }
}
