// What fails at every place in turn: memory, and each call of the system for files. The linker puts the functions named
// __wrap_ in the place of the library's own, which are __real_ then.
#include <fcntl.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <new>
#include <set>
#include <sstream>

#include "support.h"
#include "trimora/entry.h"
#include "trimora_run/entry.h"

namespace {

enum Fault { none, memory, opening, reading, writing, closing, seeking, renaming, every_fault };
Fault armed = none;
bool for_good = false;        // once something has failed, it stays so
long left = 0;                // calls until it fails
std::FILE* broken = nullptr;  // the file whose reading has failed

/// Whether this call of that kind fails.
bool fails(Fault kind) {
  if (armed != kind || --left >= 0) return false;
  if (!for_good) armed = none;
  errno = EIO;
  return true;
}

void* allocate(std::size_t size) {
  if (fails(memory)) throw std::bad_alloc();
  void* place = std::malloc(size == 0 ? 1 : size);
  if (place == nullptr) throw std::bad_alloc();
  return place;
}

}  // namespace

void* operator new(std::size_t size) {
  return allocate(size);
}
void* operator new[](std::size_t size) {
  return allocate(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {  // for std::stable_sort(), which does without
  return fails(memory) ? nullptr : std::malloc(size == 0 ? 1 : size);
}
void operator delete(void* place) noexcept {
  std::free(place);
}
void operator delete[](void* place) noexcept {
  std::free(place);
}
void operator delete(void* place, std::size_t) noexcept {
  std::free(place);
}
void operator delete[](void* place, std::size_t) noexcept {
  std::free(place);
}

extern "C" {
std::FILE* __real_fopen(const char* path, const char* mode);
std::FILE* __wrap_fopen(const char* path, const char* mode) {
  return fails(opening) ? nullptr : __real_fopen(path, mode);
}
std::size_t __real_fread(void* to, std::size_t size, std::size_t count, std::FILE* file);
std::size_t __wrap_fread(void* to, std::size_t size, std::size_t count, std::FILE* file) {
  if (!fails(reading)) return __real_fread(to, size, count, file);
  broken = file;
  return 0;
}
int __real_ferror(std::FILE* file);
int __wrap_ferror(std::FILE* file) {
  return file == broken ? 1 : __real_ferror(file);
}
std::size_t __real_fwrite(const void* from, std::size_t size, std::size_t count, std::FILE* file);
std::size_t __wrap_fwrite(const void* from, std::size_t size, std::size_t count, std::FILE* file) {
  return fails(writing) ? __real_fwrite(from, size, count / 2, file) : __real_fwrite(from, size, count, file);
}
int __real_fclose(std::FILE* file);
int __wrap_fclose(std::FILE* file) {
  if (file == broken) broken = nullptr;
  const int result = __real_fclose(file);
  return fails(closing) ? EOF : result;
}
int __real_fseek(std::FILE* file, long offset, int origin);
int __wrap_fseek(std::FILE* file, long offset, int origin) {
  return fails(seeking) ? -1 : __real_fseek(file, offset, origin);
}
/// Called by std::filesystem, which is linked dynamically here: this name takes the place of the library's own.
int rename(const char* from, const char* to) {
  return fails(renaming) ? -1 : renameat(AT_FDCWD, from, AT_FDCWD, to);
}
}

namespace trimora::rooms {
namespace {

namespace fs = std::filesystem;

class Faults : public FolderTest {
 protected:
  /// A gap in every sequence, a gap in one, and blocks; twice.
  static void write_inputs() {
    const std::string letters = "ACDEF-GHIKLMNPQRSTVWY-ACDEFGHIKLMNPQRSTVW";
    write("a.fas", ">a\n" + letters + "A\n>b\n" + letters + "-\n>c\n" + letters + "C\n");
    write("b.fas", ">a\n" + letters + "A\n>b\n" + letters + "-\n>c\n" + letters + "C\n");
    write("all.txt", "a.fas\nb.fas\n");
  }
  static std::map<std::string, std::string> files() {
    std::map<std::string, std::string> found;
    for (const auto& entry : fs::recursive_directory_iterator(".")) {
      if (!entry.is_regular_file()) continue;
      found[entry.path()] = text_of(entry.path());
    }
    return found;
  }
  /// Run a command line in which call `n` of that kind fails. Returns what it prints, and what it says in `said`.
  std::string run(const std::string& line, int (*program)(int, char*[]), Fault kind, long n, bool always) {
    EXPECT_NE(std::freopen("a.fas", "r", stdin), nullptr);
    testing::internal::CaptureStderr();
    const std::string printed = printed_by([&] {
      with_words(line, [&](int argc, char* argv[]) {
        left = n;
        for_good = always;
        armed = kind;
        status = program(argc, argv);
        armed = none;
        return status;
      });
    });
    said = testing::internal::GetCapturedStderr();
    return printed;
  }
  int status = -1;
  std::string said;
};

TEST_F(Faults, MemoryRunsOutWithTheNameOfItsBuffer) {
  write_inputs();
  std::set<std::string> buffers;
  for (const bool always : {false, true}) {
    for (long n = 0;; ++n) {
      const std::string printed =
          run("trimora all.txt -a=y -c=y -w=y -k=y -d=y -n=y -u=y", trimora_main, memory, n, always);
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

// Whatever fails: either all is as it would be, or the status and a line on standard error tell.
TEST_F(Faults, NothingIncompletePassesForDone) {
  const char* const lines[] = {
      "trimora-run all.txt -t=P -a=y -c=y -w=y -k=y -d=y -n=y -u=y",
      "trimora-run all.txt -t=P -a=y -p=n --match=name --partitions --columns --table=t --occupancy=o --overview=p --format=phylip --into=x --keep-going",
      "trimora-run - -t=P",
  };
  const auto clear = [] {
    for (const auto& entry : fs::directory_iterator(".")) fs::remove_all(entry);
  };
  for (const char* line : lines) {
    clear();
    write_inputs();
    const std::string printed = run(line, trimora_run_main, none, 0, false);
    ASSERT_EQ(status, 0) << said;
    const auto whole = files();
    for (int kind = memory; kind < every_fault; ++kind) {
      for (const bool always : {false, true}) {
        for (long n = 0;; ++n) {
          clear();
          write_inputs();
          const std::string now = run(line, trimora_run_main, static_cast<Fault>(kind), n, always);
          if (left >= 0) break;
          const std::string where =
              std::string(line) + ", fault " + std::to_string(kind) + ", call " + std::to_string(n);
          const auto found = files();
          if (status == 0) {
            EXPECT_TRUE(found == whole && (whole.size() > 3 || now == printed)) << where;
          } else {
            EXPECT_NE(said.find("trimora-run: "), std::string::npos) << where;
          }
          for (const auto& [path, bytes] : found) {  // the table and the concatenations tell of what has failed
            EXPECT_TRUE(whole.contains(path)) << path << " is left: " << where;
            const bool of_all = path.find("all.txt") != path.npos || path.size() == 3;  // ./t
            EXPECT_TRUE(of_all || !whole.contains(path) || bytes == whole.at(path)) << path << " is cut: " << where;
          }
        }
      }
    }
  }
}

}  // namespace
}  // namespace trimora::rooms
