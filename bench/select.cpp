// The library's part of the benchmark: select FILE OUTPUT reads an alignment and writes what is selected.
#include <trimora/trimora.h>

#include <cstdio>

int main(int argc, char** argv) try {
  if (argc != 3) return 2;
  const trimora::Alignment ali = trimora::read(argv[1]);
  trimora::write(trimora::trim(ali, trimora::select(ali)), trimora::Form::fasta, argv[2]);
  return 0;
} catch (const trimora::Error& error) {
  std::fprintf(stderr, "select: %s\n", error.what());
  return 1;
}
