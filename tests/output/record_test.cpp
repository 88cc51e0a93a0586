#include "output/record.h"

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
  InputState run;
  run.fileformat = fasta;
  for (const std::string& body : {std::string(), std::string("123456789"), std::string("1234567890 1"), fifty, sixty,
                                  sixty + "1", sixty + sixty + fifty + "123456789"}) {
    std::string letters = body;
    std::erase_if(letters, [](char c) { return c == ' ' || c == '\n'; });
    const Alignment ali = alignment({letters});
    std::string records;
    auto out = std::make_unique<OutputFile>("records");
    for (int cut = 0; cut <= ali.nupo; ++cut) {
      const std::vector<Stretch> stretches = {{1, cut}, {cut + 1, ali.nupo}};
      write_record(*out, run, "s\n", [&](Body& b) { add_stretches(b, ali.let[1], stretches); });
      records += ">s\n" + body + "\n";
    }
    out.reset();
    EXPECT_EQ(read("records"), records);
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

// A file is incomplete when the run ends while it is written, and not when it is written while the run ends.
TEST_F(Output, FileIsNamedWhenTheRunEndsInIt) {
  struct AtTheEnd {
    ~AtTheEnd() { OutputFile("whole").put("x"); }
  };
  testing::internal::CaptureStderr();
  printedby([] {
    const AtTheEnd atheend;
    const OutputFile cut("cut");
    errfunc("\nended\n");
  });
  const std::string said = testing::internal::GetCapturedStderr();
  EXPECT_EQ(said.substr(said.find(':')), ": cut could not be written completely: the run ended early\n");
}

}  // namespace
