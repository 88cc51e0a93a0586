// Print the reliable columns of an alignment as FASTA: reliable FILE
#include <trimora/trimora.h>

#include <cstdio>

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: reliable FILE\n", stderr);
    return 2;
  }
  try {
    const trimora::Alignment ali = trimora::read(argv[1]);
    trimora::Parameters p;
    p.gaps = trimora::Gaps::half;
    p.b4 = 5;
    const trimora::Selection s = trimora::select(ali, p);
    std::fprintf(stderr, "%zu of %zu columns in %zu blocks\n", s.columns.size(), ali.width(), s.blocks.size());
    for (const auto& [first, end] : s.blocks) std::fprintf(stderr, "  %d to %d\n", first + 1, end);
    std::fputs(trimora::write(trimora::trim(ali, s), trimora::Form::fasta).c_str(), stdout);
  } catch (const trimora::Error& error) {
    std::fprintf(stderr, "reliable: %s\n", error.what());
    return 1;
  }
}
