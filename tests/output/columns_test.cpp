#include "output/columns.h"

#include <cmath>
#include <cstdlib>
#include <random>

#include "support.h"

namespace trimora::rooms {
namespace {

std::string score(float value) {
  char text[32];
  return {text, put_score(text, value)};
}

TEST(Columns, ScoresAreShortAndReadBack) {
  const std::pair<float, const char*> cases[] = {
      {0, "0"},
      {12, "12"},
      {12.5F, "12.5"},
      {3.0339F, "3.0339"},
      {0.1F, "0.1"},
      {100.05F, "100.05"},
      {2147418112.0F, "2147418112"},
      {16777217.0F, "16777216"},
      {5.0625F, "5.0625"},
      {std::nextafter(8.0F, 0.0F), "7.9999995"},
      {std::nextafter(4194304.0F, 0.0F), "4194303.8"},
  };
  for (const auto& [value, text] : cases) EXPECT_EQ(score(value), text);
  std::mt19937 random(12);
  for (int k = 0; k < 20'000; ++k) {
    float value = 0;
    for (int letter = 0; letter < 5; ++letter)
      value += static_cast<float>(random() % 10'000) * 1e-4F * static_cast<float>(random() % 99);
    const std::string text = score(value);
    EXPECT_EQ(std::strtof(text.c_str(), nullptr), value) << text;
    EXPECT_EQ(static_cast<float>(std::strtod(text.c_str(), nullptr)), value) << text;
    const std::size_t point = text.find('.');
    if (point == text.npos) continue;
    char shorter[32];
    std::snprintf(shorter, sizeof shorter, "%.*f", static_cast<int>(text.size() - point) - 2,
                  static_cast<double>(value));
    EXPECT_NE(std::strtof(shorter, nullptr), value) << text;
  }
}

// b1 is 3, b2 is 4, b3 is 0, b4 is 2. Columns 1, 4 and 9 of the file were dropped, the last one as an insert.
TEST(Columns, ClassesBlocksAndReasons) {
  SelectionState run;
  run.numseq = 5;
  run.negval = 3;
  run.flankval = 4;
  run.negblen = 0;
  run.posblen = run.posblen2 = 2;
  Alignment ali = alignment({"ACDEFGG", "ACD-FGG"});
  ali.dropped = {{1, 1}, {4, 4}, {9, 9}};
  ali.inserts = {{9, 9}};
  Selection found;
  for (const float value : {4.0F, 5.0F, 2.0F, 0.0F, 4.0F, 3.5F, 3.0F}) found.scores.val.append(value);
  for (const char residue : {'A', 'C', 'D', '?', 'F', 'G', 'G'}) found.scores.val_aa.append(residue);
  found.blocks = getpos(found.scores, ali, run);
  EXPECT_EQ(written_by([&](OutputFile& out) { write_columns(out, ali, found, run); }),
            "column\tposition\tscore\tresidue\tclass\tblock\tnew\treason\tinitial\n"
            "1\t\t\t\tdropped\t\t\tall gap, dropped\t\n"
            "2\t1\t4\tA\tflank\t1\t1\tselected\t1\n"
            "3\t2\t5\tC\tflank\t1\t2\tselected\t1\n"
            "4\t\t\t\tdropped\t\t\tall gap, dropped\t\n"
            "5\t3\t2\tD\tnonconserved\t\t\tin a run of more than b3 nonconserved positions\t\n"
            "6\t4\t0\t?\tgap\t\t\ttoo many gaps (1 of 5, b5 allows 0)\t\n"
            "7\t5\t4\tF\tflank\t\t\tinitial block shorter than b0 (1 position)\t\n"
            "8\t6\t3.5\tG\tconserved\t\t\tafter the last flank\t\n"
            "9\t\t\t\tdropped\t\t\tinsert column\t\n"
            "10\t7\t3\tG\tconserved\t\t\tafter the last flank\t\n");
}

}  // namespace
}  // namespace trimora::rooms
