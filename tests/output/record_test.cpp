#include "output/record.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "ground/failure.h"
#include "output/whole_file.h"
#include "support.h"

namespace trimora::rooms {
namespace {

using Files = FolderTest;

// The body is written in two stretches, cut anywhere: groups and lines run on.
TEST(Record, InGroupsAndLines) {
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
    const std::string written = written_by([&](OutputFile& out) {
      for (int cut = 0; cut <= ali.nupo; ++cut) {
        const std::vector<Stretch> stretches = {{1, cut}, {cut + 1, ali.nupo}};
        write_record(out, run, "s\n", [&](Body& b) { add_stretches(b, ali.let[1], stretches); });
        records += ">s\n" + body + "\n";
      }
    });
    EXPECT_EQ(written, records);
  }
}

// Pieces longer than any buffer, in every way in which a writer adds them.
TEST_F(Files, HoldPiecesOfAnyLength) {
  const std::string piece(70'001, 'x');
  {
    OutputFile out("long");
    out.put(piece);
    out.print("%s|%i", piece.c_str(), 7);
    for (const char c : piece) out.put(c);
  }
  EXPECT_TRUE(text_of("long") == piece + piece + "|7" + piece);
}

// A file that is written again keeps its permissions, and a link its target.
TEST_F(Files, StayAsTheyWereButForTheirContent) {
  using std::filesystem::perms;
  std::filesystem::create_directory("sub");
  write("sub/file", "old");
  std::filesystem::permissions("sub/file", perms::owner_read | perms::owner_write);
  std::filesystem::create_symlink("file", "sub/link");
  write_whole("sub/link", [](OutputFile& out) { out.put("new"); });
  EXPECT_EQ(text_of("sub/file"), "new");
  EXPECT_EQ(std::filesystem::status("sub/file").permissions(), perms::owner_read | perms::owner_write);
  EXPECT_TRUE(std::filesystem::is_symlink("sub/link"));
  write("other.part1", "of somebody else");
  write_whole("other", [](OutputFile& out) { out.put("new"); });
  EXPECT_EQ(text_of("other.part1"), "of somebody else");

  std::filesystem::permissions(".", perms::all);
  std::filesystem::permissions("other", perms::owner_read);
  const bool root = seteuid(65534) == 0;  // for whom nothing is protected
  EXPECT_THROW(write_whole("other", [](OutputFile& out) { out.put("newer"); }), Failure);
  EXPECT_TRUE(!root || seteuid(0) == 0);
  EXPECT_EQ(text_of("other"), "new");
  EXPECT_THROW(OutputFile("other", OutputFile::Old::refused), Failure);
}

// What a stream keeps until the end may fail there alone.
TEST(Streams, TellThatTheirEndIsNotWritten) {
  std::FILE* full = std::fopen("/dev/full", "wb");
  OutputFile out(full);
  out.put("few bytes");
  EXPECT_EQ(out.close(), ENOSPC);
  std::fclose(full);
}

}  // namespace
}  // namespace trimora::rooms
