// Alignments for the benchmark, the same bytes on every machine for the same seed.
// Usage     generate KIND SEQUENCES POSITIONS SEED [FILE]    KIND as in `kinds`; to standard output without FILE
//           generate genes DIRECTORY COUNT SEED
// Words     stretch: neighbouring columns of one make | residue: the letter that most sequences carry in a column
// Counting  positions and sequences count from 0 here, the names written count from 1
#include <sys/stat.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace {

/// xoshiro256++ seeded by splitmix64. The distributions of the standard library may differ between its makers, so every
/// draw below is a few bits or a multiply and shift of this generator's words.
class Random {
 public:
  explicit Random(std::uint64_t seed) {
    for (std::uint64_t& part : state_) {
      seed += 0x9E3779B97F4A7C15U;
      std::uint64_t z = seed;
      z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9U;
      z = (z ^ (z >> 27)) * 0x94D049BB133111EBU;
      part = z ^ (z >> 31);
    }
  }
  std::uint64_t word() {
    const std::uint64_t result = turn(state_[0] + state_[3], 23) + state_[0];
    const std::uint64_t shifted = state_[1] << 17;
    state_[2] ^= state_[0];
    state_[3] ^= state_[1];
    state_[1] ^= state_[2];
    state_[0] ^= state_[3];
    state_[2] ^= shifted;
    state_[3] = turn(state_[3], 45);
    return result;
  }
  /// A whole number from `low` to `high`, both included.
  int between(int low, int high) {
    const auto span = static_cast<std::uint64_t>(high - low) + 1;
    return low + static_cast<int>(((word() >> 32) * span) >> 32);
  }

 private:
  static std::uint64_t turn(std::uint64_t x, int k) { return (x << k) | (x >> (64 - k)); }
  std::uint64_t state_[4];
};

struct Kind {
  const char* name;
  char type;  // 'P' protein, 'D' DNA, 'C' codons
  bool pir;   // NBRF/PIR records instead of FASTA
};
constexpr Kind kinds[] = {
    {"protein-fasta", 'P', false}, {"protein-pir", 'P', true},   {"dna-fasta", 'D', false},
    {"dna-pir", 'D', true},        {"codons-fasta", 'C', false}, {"codons-pir", 'C', true},
};

/// What a column is made of; one per position.
struct Column {
  char residue;
  std::uint8_t share;  // chance, of 256, that a sequence carries the residue
  std::uint8_t turn;   // where the sequences that do not carry it begin to draw among the letters
};

/// A stretch in which some sequences have a gap; both ends belong to it.
struct Gap {
  std::size_t first, last;
  std::size_t always, never;  // a sequence that has the gap, so that the columns count as gapped, and one that has not,
                              //   so that no column is gaps alone
};

struct Plan {
  std::string letters;  // of the type of sequence
  std::vector<Column> columns;
  std::vector<Gap> gaps;
};

/// Lay out the columns. Every second stretch is conserved, so about half of the positions are selected at any size; the
/// others are variable and gappy in turn.
Plan layout(char type, std::size_t sequences, std::size_t positions, Random& random) {
  Plan plan;
  plan.letters = type == 'P' ? "ACDEFGHIKLMNPQRSTVWY" : "ACGT";
  plan.columns.reserve(positions);
  for (int stretch = random.between(0, 3); plan.columns.size() < positions; ++stretch) {
    int length = random.between(10, 120);
    if (type == 'C') length -= length % 3;  // whole codons, 9 to 120
    const std::size_t first = plan.columns.size();
    const std::size_t last = std::min(positions, first + static_cast<std::size_t>(length)) - 1;
    const bool conserved = stretch % 2 == 0;
    for (std::size_t p = first; p <= last; ++p) {
      int share = 0;
      if (conserved) {
        // Mostly above the 85 % that a flank needs, here and there only above the half that a conserved column needs.
        // The third position of a codon is freer than the other two.
        const bool freer = type == 'C' ? p % 3 == 2 : random.between(0, 7) == 0;
        share = freer ? random.between(160, 215) : random.between(232, 255);
      }
      const std::uint64_t bits = random.word();
      plan.columns.push_back({plan.letters[((bits & 0xFFFF) * plan.letters.size()) >> 16],
                              static_cast<std::uint8_t>(share), static_cast<std::uint8_t>(bits >> 16)});
    }
    if (stretch % 4 == 3) {
      const std::size_t always = plan.gaps.size() % sequences;
      plan.gaps.push_back({first, last, always, (always + 1) % sequences});
    }
  }
  return plan;
}

/// Draw the letters of one sequence into `row`: 16 bits of a random word for each. A sequence that does not carry the
/// residue draws from a quarter of the letters, another one than its neighbours do: five sequences of four nucleotides
/// would agree by chance too often for a variable stretch.
void draw(const Plan& plan, std::size_t sequence, Random& random, char* row) {
  char any[256];  // a letter for each random byte
  for (std::size_t k = 0; k < 256; ++k) any[k] = plan.letters[(k * plan.letters.size()) >> 8];
  const std::size_t positions = plan.columns.size();
  for (std::size_t p = 0; p < positions;) {
    std::uint64_t bits = random.word();
    for (const std::size_t end = std::min(positions, p + 4); p < end; ++p, bits >>= 16) {
      const Column column = plan.columns[p];
      const std::size_t other = ((bits >> 8) & 63) + column.turn + 64 * sequence;
      row[p] = (bits & 0xFF) < column.share ? column.residue : any[other & 0xFF];
    }
  }
  for (const Gap& gap : plan.gaps) {
    const std::uint64_t bits = random.word();
    const bool gapped = sequence == gap.always || (sequence != gap.never && (bits & 0xFF) < 102);  // 40 %
    if (gapped) {  // the ends differ by up to 3 columns between sequences; the last stretch may be too short for that
      const std::size_t first = gap.first + ((bits >> 8) & 3);
      const std::size_t last = gap.last - ((bits >> 10) & 3);
      if (first <= last && last <= gap.last) std::memset(row + first, '-', last - first + 1);
    }
  }
}

struct Closer {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

[[noreturn]] void stop(const std::string& message) {
  std::fprintf(stderr, "generate: %s\n", message.c_str());
  std::exit(2);
}

/// Write one alignment, 60 letters a line, to the file at `path`; "" is the standard output.
void write(const Kind& kind, std::size_t sequences, std::size_t positions, Random& random, const std::string& path) {
  std::unique_ptr<std::FILE, Closer> out(path.empty() ? stdout : std::fopen(path.c_str(), "wb"));
  if (!out) stop("cannot write " + path);
  const Plan plan = layout(kind.type, sequences, positions, random);
  std::string row(positions, '-');
  std::string record;
  for (std::size_t i = 0; i < sequences; ++i) {
    draw(plan, i, random, row.data());
    record.clear();
    if (kind.pir) record += kind.type == 'P' ? ">P1;" : ">DL;";
    if (!kind.pir) record += '>';
    record += "sequence_" + std::to_string(i + 1) + '\n';
    if (kind.pir) record += "generated\n";
    for (std::size_t p = 0; p < positions; p += 60) record.append(row, p, 60).append(1, '\n');
    if (kind.pir) record += "*\n";
    if (std::fwrite(record.data(), 1, record.size(), out.get()) != record.size()) stop("cannot write " + path);
  }
  if (std::fflush(out.get()) != 0) stop("cannot write " + path);
}

/// COUNT protein alignments of 40 sequences in `directory`, and paths.txt, which lists them one a line. The number of
/// sequences is the same in all of them, since concatenating demands it.
void writegenes(const std::string& directory, int count, std::uint64_t seed) {
  ::mkdir(directory.c_str(), 0777);  // may exist; a folder that is missing shows at the first file
  std::unique_ptr<std::FILE, Closer> paths(std::fopen((directory + "/paths.txt").c_str(), "wb"));
  if (!paths) stop("cannot write " + directory + "/paths.txt");
  Random random(seed);
  for (int k = 1; k <= count; ++k) {
    const std::string path = directory + "/gene" + std::to_string(k) + ".fas";
    write(kinds[0], 40, static_cast<std::size_t>(random.between(300, 1500)), random, path);
    std::fprintf(paths.get(), "%s\n", path.c_str());
  }
}

std::uint64_t number(const char* text) {
  char* end = nullptr;
  const std::uint64_t value = std::strtoull(text, &end, 10);
  if (end == text || *end != '\0') stop(std::string("not a number: ") + text);
  return value;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 5 && std::string_view(argv[1]) == "genes") {
    writegenes(argv[2], static_cast<int>(number(argv[3])), number(argv[4]));
    return 0;
  }
  for (const Kind& kind : kinds) {
    if ((argc != 5 && argc != 6) || std::string_view(argv[1]) != kind.name) continue;
    const std::uint64_t sequences = number(argv[2]);
    const std::uint64_t positions = number(argv[3]);
    if (sequences < 2 || positions < 2) stop("an alignment has two sequences and two positions at least");
    Random random(number(argv[4]));
    write(kind, sequences, positions, random, argc == 6 ? argv[5] : "");
    return 0;
  }
  std::fprintf(
      stderr,
      "usage: generate KIND SEQUENCES POSITIONS SEED [FILE]\n       generate genes DIRECTORY COUNT SEED\nKIND:");
  for (const Kind& kind : kinds) std::fprintf(stderr, " %s", kind.name);
  std::fprintf(stderr, "\n");
  return 2;
}
