// Times whole processes against each other, in turn: A B C A B C ..., so that a slow spell of the machine meets all.
// Usage     measure RUNS DIRECTORY LABEL COMMAND [ARGUMENT...] [-- LABEL COMMAND [ARGUMENT...]]...
// Prints    one line a command: LABEL, the median, fastest and slowest wall time in milliseconds, the largest peak of
//           resident memory in KiB, the number of files that the last run left and their bytes together
// Fresh     what a run leaves in DIRECTORY and below is removed before the next, outside the timed span: overwriting a
//           file that exists costs extra and would be another measurement
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <exception>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

struct Job {
  const char* label;
  char** command;              // ends with a null pointer, as exec wants it
  std::vector<double> time{};  // wall milliseconds, one per run
  long peak = 0;               // KiB
  int files = 0;               // left by the last run
  std::uintmax_t bytes = 0;    //   and their sizes together
};

[[noreturn]] void stop(const char* what, const char* about) {
  std::fprintf(stderr, "measure: %s: %s\n", what, about);
  std::exit(2);
}

/// The files of `directory` and of the folders in it.
std::set<fs::path> list(const fs::path& directory) {
  std::set<fs::path> files;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(directory)) {
    if (!entry.is_directory()) files.insert(entry.path());
  }
  return files;
}

/// Remove the files of `directory` that are not among `old`, and count them for `job`.
void clear(const fs::path& directory, const std::set<fs::path>& old, Job& job) {
  job.files = 0;
  job.bytes = 0;
  for (const fs::path& file : list(directory)) {
    if (old.count(file) != 0) continue;
    ++job.files;
    job.bytes += fs::file_size(file);
    fs::remove(file);
  }
}

double milliseconds() {
  timespec now{};
  ::clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

/// Run `job` once, without a shell in between and with its output thrown away. Its exit status is no concern here: the
/// trimmer ends with 1 when all went well.
void run(Job& job) {
  posix_spawn_file_actions_t actions;
  ::posix_spawn_file_actions_init(&actions);
  ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t child = 0;
  int status = 0;
  rusage usage{};
  const double start = milliseconds();
  const int error = ::posix_spawnp(&child, job.command[0], &actions, nullptr, job.command, environ);
  if (error != 0) stop(job.command[0], std::strerror(error));
  if (::wait4(child, &status, 0, &usage) != child) stop("cannot wait for", job.command[0]);
  job.time.push_back(milliseconds() - start);
  ::posix_spawn_file_actions_destroy(&actions);
  if (!WIFEXITED(status)) stop(job.command[0], "ended by a signal");
  job.peak = std::max(job.peak, usage.ru_maxrss);
}

}  // namespace

int main(int argc, char** argv) try {
  if (argc < 5 || std::atoi(argv[1]) < 1) {
    std::fprintf(stderr, "usage: measure RUNS DIRECTORY LABEL COMMAND [ARGUMENT...] [-- LABEL COMMAND ...]...\n");
    return 2;
  }
  const int runs = std::atoi(argv[1]);
  const fs::path directory = argv[2];
  std::vector<Job> jobs;
  for (int k = 3; k < argc; ++k) {
    if (k + 1 >= argc) stop("no command for", argv[k]);
    jobs.push_back({argv[k], argv + k + 1});
    while (k < argc && std::strcmp(argv[k], "--") != 0) ++k;
    if (k < argc) argv[k] = nullptr;
  }
  const std::set<fs::path> old = list(directory);
  for (int r = 0; r <= runs; ++r) {
    for (Job& job : jobs) {
      run(job);
      if (r == 0) job.time.clear();  // the first round only warms the caches
      clear(directory, old, job);
    }
  }
  for (Job& job : jobs) {
    std::sort(job.time.begin(), job.time.end());
    const std::size_t half = job.time.size() / 2;
    const double median = job.time.size() % 2 == 1 ? job.time[half] : (job.time[half - 1] + job.time[half]) / 2;
    std::printf("%s %.3f %.3f %.3f %ld %d %ju\n", job.label, median, job.time.front(), job.time.back(), job.peak,
                job.files, job.bytes);
  }
  return 0;
} catch (const std::exception& error) {
  stop("failed", error.what());
}
