// Memory that runs out at every place in turn.
#include <algorithm>
#include <cstdlib>
#include <new>
#include <set>

#include "driver/entry.h"
#include "support.h"

namespace {
bool armed = false;
bool forgood = false;  // once memory has run out, it stays so
long left = 0;         // allocations until it runs out
}  // namespace

// Those for arrays call these.
void* operator new(std::size_t size) {
  if (armed && --left < 0) {
    armed = forgood;
    throw std::bad_alloc();
  }
  if (void* memory = std::malloc(std::max<std::size_t>(size, 1))) return memory;
  throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
  std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}

namespace {

using Allocation = FolderTest;

TEST_F(Allocation, EachFailureEndsTheRunWithTheNameOfItsBuffer) {
  // A gap in every sequence, a gap in one, and blocks; listed twice.
  const std::string letters = "ACDEF-GHIKLMNPQRSTVWY-ACDEFGHIKLMNPQRSTVW";
  write("a.fas", ">a\n" + letters + "A\n>b\n" + letters + "-\n>c\n" + letters + "C\n");
  write("all.txt", "a.fas\na.fas\n");
  std::set<std::string> buffers;
  for (const bool always : {false, true}) {
    for (long n = 0;; ++n) {
      testing::internal::CaptureStderr();  // names the file that is cut short
      const std::string printed = printedby([&] {
        left = n;
        forgood = always;
        armed = true;
        withwords("trimora all.txt -a=y -c=y -w=y -k=y -d=y -n=y -u=y", trimora);
        armed = false;
      });
      testing::internal::GetCapturedStderr();
      if (left >= 0) break;  // nothing failed any more
      const std::size_t message = printed.find("\nMemory allocation failure");
      ASSERT_NE(message, std::string::npos) << "allocation " << n << "\n" << printed;
      const std::string words = printed.substr(message);
      EXPECT_TRUE(words.ends_with("\n\nExecution terminated\n")) << words;
      buffers.insert(words.substr(26, words.find("\n\n") - 26));
    }
  }
  EXPECT_EQ(buffers,
            (std::set<std::string>{"", " in bb", " in let", " in let\n1", " in letall", " in letall_init",
                                   " in lettrimora", " in name", " in newlet", " in newletall", " in newname",
                                   " in newpos 1", " in newposseq 5", " in mask", " in pos", " in val", " in val_aa"}));
}

}  // namespace
