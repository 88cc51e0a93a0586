// The terminal of trimora-run: progress of a long batch, and streams that are open.
#pragma once
#include <chrono>
#include <cstddef>
#include <cstdio>

#ifdef _WIN32
#include <io.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

namespace trimora::rooms {

inline bool is_terminal(std::FILE* stream) {
#ifdef _WIN32
  return _isatty(_fileno(stream)) != 0;
#else
  return isatty(fileno(stream)) != 0;
#endif
}

/// Opens the standard streams that are closed, so that no file that is opened later takes the place of one.
inline void open_standard_streams() {
#ifndef _WIN32
  for (int stream = 0; stream <= 2; ++stream) {
    if (fcntl(stream, F_GETFD) == -1 && open("/dev/null", stream == 0 ? O_RDONLY : O_WRONLY) < 0) return;
  }
#endif
}

/// Shows how far a batch is: only on a terminal, only after a second, and only if the account goes elsewhere.
class Progress {
 public:
  explicit Progress(std::size_t jobs) : jobs_(jobs), shown_(jobs > 1 && is_terminal(stderr) && !is_terminal(stdout)) {}
  void step() {
    ++done_;
    const auto now = Clock::now();
    if (!shown_ || now - last_ < std::chrono::seconds(1)) return;
    last_ = now;
    std::fprintf(stderr, "\r%zu of %zu", done_, jobs_);
    drawn_ = true;
  }
  void end() const {
    if (drawn_) std::fprintf(stderr, "\r                              \r");
  }

 private:
  using Clock = std::chrono::steady_clock;
  std::size_t jobs_;
  std::size_t done_ = 0;
  bool shown_;
  bool drawn_ = false;
  Clock::time_point last_ = Clock::now();
};

}  // namespace trimora::rooms
