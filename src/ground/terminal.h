// Standard output and the terminal, the same on every system: lines end as everywhere, names are UTF-8. Only Windows has to
// be told.
#pragma once
#ifdef _WIN32
#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <cstdio>

/// For as long as the program runs; then the terminal is as it was.
class Terminal {
 public:
  Terminal() {
    SetConsoleCP(CP_UTF8);
    SetConsoleOutputCP(CP_UTF8);
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    std::setvbuf(stdout, nullptr, _IOFBF, 65536);  // a letter of several bytes is shown when it is written in one piece
    std::setvbuf(stderr, nullptr, _IOFBF, 4096);
  }
  ~Terminal() {
    std::fflush(stdout);
    SetConsoleCP(input_);
    SetConsoleOutputCP(output_);
  }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

 private:
  unsigned input_ = GetConsoleCP();
  unsigned output_ = GetConsoleOutputCP();
};
#else
struct Terminal {};
#endif
