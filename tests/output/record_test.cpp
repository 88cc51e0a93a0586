#include "output/record.h"

#include <sstream>

#include "support.h"

namespace {

using Output = FolderTest;

std::string read(const std::string& path) {
  return (std::ostringstream() << std::ifstream(path).rdbuf()).str();
}

// The body is written in two stretches, cut anywhere: groups and lines run on.
TEST_F(Output, RecordInGroupsAndLines) {
  const std::string fifty = "1234567890 1234567890 1234567890 1234567890 1234567890 ";
  const std::string sixty = fifty + "1234567890\n";
  // clang-format off
  const std::string bodies[] = {
    "", "123456789", "1234567890 ", "1234567890 1", fifty, fifty + "123456789", sixty, sixty + "1", sixty + sixty,
    sixty + sixty + "1234567890 1"};
  // clang-format on
  for (const std::string& body : bodies) {
    std::string letters = body;
    std::erase_if(letters, [](char c) { return std::isdigit(c) == 0; });
    const Alignment ali = alignment({letters});
    InputState run;
    run.fileformat = fasta;
    for (int cut = 0; cut <= ali.nupo; ++cut) {
      {
        OutputFile out("record");
        writerecord(out, run, "s\n", [&](Body& b) { addstretches(b, ali.let[1], {{1, cut}, {cut + 1, ali.nupo}}); });
      }
      EXPECT_EQ(read("record"), ">s\n" + body + "\n") << "cut behind " << cut;
    }
  }
}

// Pieces longer than any buffer, in every way in which a writer adds them.
TEST_F(Output, FileHoldsPiecesOfAnyLength) {
  const std::string piece(70'001, 'x');
  {
    OutputFile out("long");
    out.put(piece);
    out.print("%s|%i", piece.c_str(), 7);
    for (const char c : piece) out.put(c);
  }
  EXPECT_TRUE(read("long") == piece + piece + "|7" + piece);
}

}  // namespace
