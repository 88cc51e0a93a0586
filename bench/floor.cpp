// The floor of the trimming benchmark: what touching the bytes costs, and nothing more. Used for nothing else.
// Usage  floor INPUT OUTPUT
// Does   reads FASTA in large blocks, strips the line ends, counts 22 letters per column with vector code, and writes
//        back the longer runs of columns that one residue fills by half. It checks nothing.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

// Two instruction sets from one source, chosen when the program starts; elsewhere the plain loops have to do.
#if defined(__x86_64__) && defined(__GLIBC__) && defined(__GNUC__) && !defined(__clang__)
#define VECTOR_CLONES [[gnu::target_clones("avx2", "default")]]
#else
#define VECTOR_CLONES
#endif

constexpr char alphabet[] = "UACGTDEFHIKLMNPQRSVWY-";
constexpr std::size_t letters = sizeof alphabet - 1;
constexpr std::size_t block = 64 << 10;  // bytes read or written at once: few calls, and still in cache when used
constexpr std::size_t tile = 512;  // columns counted together: counters and a pass of rows stay in the first level
constexpr std::size_t pass = 8;    // rows counted together: a counter is loaded and stored once for all of them
constexpr std::size_t line = 60, shortest = 10;  // letters written on a line, columns of a run worth writing
constexpr std::size_t slack = 64;  // bytes behind the letters: a piece of a line is copied as 64, without a call

struct Alignment {
  std::vector<std::string> name;
  std::unique_ptr<char[]> let;  // row after row of nupo letters
  std::size_t nupo = 0;
};
using Runs = std::vector<std::pair<std::size_t, std::size_t>>;  // first column and length of each

static Alignment read(std::FILE* in) {
  Alignment ali;
  std::fseek(in, 0, SEEK_END);
  ali.let.reset(new char[static_cast<std::size_t>(std::ftell(in)) + slack]);  // not cleared: pages are touched once
  std::rewind(in);
  static char text[block + slack];  // with a line end behind the last letter, where the search stops
  char* free = ali.let.get();
  bool naming = false;  // inside a name line, which may go on in the next block
  for (std::size_t got; (got = std::fread(text, 1, block, in)) > 0;) {
    char* const end = text + got;
    *end = '\n';
    for (const char *p = text, *stop; p < end; p = stop + 1) {
      stop = static_cast<const char*>(std::memchr(p, '\n', block + 1));
      const auto n = static_cast<std::size_t>(stop - p);
      if (*p == '>' && !naming) ali.name.emplace_back();
      if (*p == '>' || naming) {
        ali.name.back().append(p, n);
        naming = stop == end;
      } else {
        free = static_cast<char*>(n <= slack ? std::memcpy(free, p, slack) : std::memcpy(free, p, n)) + n;
      }
    }
  }
  ali.nupo = static_cast<std::size_t>(free - ali.let.get()) / std::max<std::size_t>(ali.name.size(), 1);
  return ali;
}

/// Tell for the columns of the tile that begins at `first` whether one residue fills them by half.
VECTOR_CLONES static void tally(const Alignment& ali, std::size_t first, std::size_t columns, bool* keep) {
  static const char none[tile] = {};  // stands in for the rows missing from the last pass
  static std::uint8_t counters[letters][tile];
  static std::uint32_t sums[letters][tile];
  const std::size_t numseq = ali.name.size();
  const std::size_t batch = 255 / pass * pass;  // rows, in whole passes, that cannot overflow a counter
  const bool wide = numseq > batch;
  std::memset(sums, 0, wide ? sizeof sums : 0);
  for (std::size_t i = 0; i < numseq;) {
    std::memset(counters, 0, sizeof counters);
    for (const std::size_t full = std::min(numseq, i + batch); i < full; i += pass) {
      const char* row[pass];
      for (std::size_t k = 0; k < pass; ++k) row[k] = i + k < numseq ? &ali.let[(i + k) * ali.nupo + first] : none;
      for (std::size_t q = 0; q < columns; q += 32) {  // so few that the rows wait in registers while the letters go by
        char piece[pass][32];
        for (std::size_t k = 0; k < pass; ++k) std::memcpy(piece[k], row[k] + q, 32);
        for (std::size_t a = 0; a < letters; ++a) {
          for (std::size_t p = 0; p < 32; ++p) {
            std::uint8_t found = counters[a][q + p];
            for (std::size_t k = 0; k < pass; ++k) {
              found = static_cast<std::uint8_t>(found + (piece[k][p] == alphabet[a]));
            }
            counters[a][q + p] = found;
          }
        }
      }
    }
    for (std::size_t a = 0; a < letters && wide; ++a) {
      for (std::size_t p = 0; p < tile; ++p) sums[a][p] += counters[a][p];
    }
  }
  std::uint8_t low[tile] = {};  // the best counts: bytes while they suffice, a quarter of the vectors
  std::uint32_t high[tile] = {};
  for (std::size_t a = 0; a + 1 < letters; ++a) {  // a gap is no residue
    for (std::size_t p = 0; p < tile; ++p) low[p] = std::max(low[p], counters[a][p]);
    for (std::size_t p = 0; p < tile && wide; ++p) high[p] = std::max(high[p], sums[a][p]);
  }
  const std::size_t half = (numseq + 1) / 2;
  for (std::size_t p = 0; p < columns; ++p) keep[p] = (wide ? high[p] : low[p]) >= half;
}

static Runs choose(const Alignment& ali) {
  const std::unique_ptr<bool[]> keep(new bool[ali.nupo]);
  for (std::size_t p = 0; p < ali.nupo; p += tile) tally(ali, p, std::min(tile, ali.nupo - p), &keep[p]);
  Runs runs;
  for (std::size_t start = 0; start + shortest <= ali.nupo;) {
    std::size_t p = start + shortest;
    while (p > start && keep[p - 1]) --p;  // backwards: the last column that fails rules out every start before it
    if (p == start) {
      p += shortest;
      while (p < ali.nupo && keep[p]) ++p;
      runs.push_back({start, p - start});
    }
    start = p;
  }
  return runs;
}

static void write(const Alignment& ali, const Runs& runs, std::FILE* out) {
  std::setvbuf(out, nullptr, _IONBF, 0);  // the blocks are large already
  static char text[3 * block];  // written when a block of it is filled; the rest is room for a name and a line
  std::size_t filled = 0;
  for (std::size_t i = 0; i < ali.name.size(); ++i) {
    std::size_t room = 0;  // left on the line
    if (filled >= block) filled -= std::fwrite(text, 1, filled, out);
    filled += ali.name[i].copy(text + filled, block);
    for (const auto& [first, length] : runs) {
      const char* from = &ali.let[i * ali.nupo + first];
      for (std::size_t n, left = length; left > 0; from += n, filled += n, left -= n, room -= n) {
        if (room == 0) {
          if (filled >= block) filled -= std::fwrite(text, 1, filled, out);
          text[filled++] = '\n';
          room = line;
        }
        n = std::min(room, left);
        std::memcpy(text + filled, from, slack);  // n letters, and some that the next ones replace
      }
    }
    text[filled++] = '\n';
  }
  std::fwrite(text, 1, filled, out);
}

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  const Alignment ali = read(std::fopen(argv[1], "rb"));
  write(ali, choose(ali), std::fopen(argv[2], "wb"));
}
