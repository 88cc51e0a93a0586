#include "output/columns.h"

#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string_view>
#include <vector>

#include "output/file_names.h"
#include "output/output_file.h"

namespace trimora::rooms {

namespace {

/// A number that is counted up from 1, as text.
class Counter {
 public:
  /// Write the number, and count on: only the next time its text is needed again, which the processor likes.
  char* put(char* to) {
    std::memcpy(to, first_, most);  // of known length: a few moves, no call
    to += last_ - first_ + 1;
    char* digit = last_;
    while (digit >= first_ && *digit == '9') *digit-- = '0';
    if (digit < first_) {
      first_ = digit;
      *digit = '0';
    }
    ++*digit;
    return to;
  }

 private:
  static constexpr std::ptrdiff_t most = 12;
  char digits_[2 * most] = "00000000001";  // the number ends at the last of them; what stands behind is not used
  char* last_ = digits_ + most - 2;
  char* first_ = last_;
};

/// A short text, written by copying all of it and keeping `length` bytes: the same for all, and no branch.
struct Word {
  char text[16];
  std::ptrdiff_t length;
  char* put(char* to) const {
    std::memcpy(to, text, sizeof text);
    return to + length;
  }
};

constexpr Word classes[] = {{"gap\t", 4}, {"nonconserved\t", 13}, {"conserved\t", 10}, {"flank\t", 6}};

const Word& classof(float score, const SelectionState& run) {
  const int above = (score != 0 ? 1 : 0) + (score >= static_cast<float>(run.negval) ? 1 : 0) +
                    (score >= static_cast<float>(run.flankval) ? 1 : 0);
  return classes[above];
}

/// The texts of scores, most of which come again and again in one alignment.
class ScoreTexts {
 public:
  ScoreTexts() : entries_(size) {}
  const Word& of(float score) {
    std::uint32_t bits = 0;
    std::memcpy(&bits, &score, sizeof bits);  // std::bit_cast is missing from the library of Debian's Emscripten
    Entry& entry = entries_[(bits * 2654435761U) >> 22];  // a number near 2^32 over the golden ratio spreads them
    if (entry.bits != bits) {
      entry.bits = bits;
      entry.word.length = putscore(entry.word.text, score) - entry.word.text;
    }
    return entry.word;
  }

 private:
  static constexpr std::size_t size = 1024;
  struct Entry {
    std::uint32_t bits = 0;  // of the score 0, to begin with
    Word word = {"0", 1};
  };
  std::vector<Entry> entries_;
};

char* puttext(char* to, std::string_view text) {
  return to + text.copy(to, text.size());
}

char* putnumber(char* to, int number) {
  return std::to_chars(to, to + 12, number).ptr;
}

}  // namespace

char* putscore(char* to, float score) {
  const auto whole = static_cast<int>(score);
  if (static_cast<float>(whole) == score) return putnumber(to, whole);
  static constexpr double scales[] = {1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9};
  const auto value = static_cast<double>(score);
  const float next = std::nextafter(score, std::numeric_limits<float>::infinity());
  const double ulp = static_cast<double>(next) - value;
  int decimals = 1;
  while (decimals < 9 && scales[decimals] * ulp <= 1) ++decimals;  // so many are always enough
  // Fewer are enough as long as the nearest such number lies inside what is read as this score: by half of an ulp, less
  // a little for those who read it as double precision first. The products are exact, and so are the differences.
  const auto nearest = [&](int k) { return std::llround(value * scales[k]); };
  const auto enough = [&](int k) {
    return std::abs(static_cast<double>(nearest(k)) - value * scales[k]) < 0.4999999 * ulp * scales[k];
  };
  while (decimals > 1 && enough(decimals - 1)) --decimals;
  auto digits = static_cast<std::uint64_t>(nearest(decimals));
  to = putnumber(to, whole);
  *to = '.';
  for (int k = decimals; k > 0; --k, digits /= 10) to[k] = static_cast<char>('0' + digits % 10);
  return to + decimals + 1;
}

std::string columnsfile(const OutputState& run) {
  return seqfile(run) + ".columns.tsv";
}

void savecolumns(const std::string& path, const Alignment& ali, const PositionScores& scores,
                 const SelectedBlocks& blocks, const SelectionState& run) {
  OutputFile out(path);
  out.put("column\tposition\tscore\tresidue\tclass\tblock\tnew\n");
  const long long columns = static_cast<long long>(ali.nupo) + totallength(ali.dropped);
  auto dropped = ali.dropped.begin();
  std::size_t block = 0;  // the one that holds p, or the next one
  int p = 0;
  Counter columntext, positiontext, newtext;
  ScoreTexts texts;
  for (long long column = 1; column <= columns; ++column) {
    char* to = columntext.put(out.room(128));
    if (dropped != ali.dropped.end() && column > dropped->last) ++dropped;
    if (dropped != ali.dropped.end() && column >= dropped->first) {
      out.filled(puttext(to, "\t\t\t\tdropped\t\t\n"));
      continue;
    }
    ++p;
    *to++ = '\t';
    to = positiontext.put(to);
    *to++ = '\t';
    to = texts.of(scores.val[p]).put(to);
    *to++ = '\t';
    *to++ = scores.val_aa[p];
    *to++ = '\t';
    to = classof(scores.val[p], run).put(to);
    while (block < blocks.newpos.size() && p > blocks.newpos[block].last) ++block;
    if (block < blocks.newpos.size() && p >= blocks.newpos[block].first) {
      to = putnumber(to, static_cast<int>(block) + 1);
      *to++ = '\t';
      to = newtext.put(to);
    } else {
      *to++ = '\t';
    }
    *to++ = '\n';
    out.filled(to);
  }
}

}  // namespace trimora::rooms
