#include "trimora_run/columns.h"

#include <cmath>
#include <cstdlib>
#include <random>

#include "support.h"

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

// b1 is 3, b2 is 4. Columns 1, 4 and 9 of the file were dropped; the second block is empty, as codons can make it.
using ColumnsFile = FolderTest;
TEST_F(ColumnsFile, ClassesAndBlocks) {
  SelectionState run;
  run.negval = 3;
  run.flankval = 4;
  Alignment ali = alignment({"ACDEFG", "ACDEFG"});
  ali.dropped = {{1, 1}, {4, 4}, {9, 9}};
  PositionScores scores;
  for (const float value : {4.0F, 3.5F, 2.0F, 0.0F, 3.0F, 5.0F}) scores.val.append(value);
  for (const char residue : {'A', 'C', 'D', '?', 'F', 'G'}) scores.val_aa.append(residue);
  SelectedBlocks blocks;
  blocks.newpos = {{1, 2}, {4, 3}, {5, 6}};
  savecolumns("table", ali, scores, blocks, run);
  EXPECT_EQ(textof("table"),
            "column\tposition\tscore\tresidue\tclass\tblock\tnew\n"
            "1\t\t\t\tdropped\t\t\n"
            "2\t1\t4\tA\tflank\t1\t1\n"
            "3\t2\t3.5\tC\tconserved\t1\t2\n"
            "4\t\t\t\tdropped\t\t\n"
            "5\t3\t2\tD\tnonconserved\t\t\n"
            "6\t4\t0\t?\tgap\t\t\n"
            "7\t5\t3\tF\tconserved\t3\t3\n"
            "8\t6\t5\tG\tflank\t3\t4\n"
            "9\t\t\t\tdropped\t\t\n");
  EXPECT_FALSE(std::filesystem::exists("table.part1"));
}

}  // namespace
