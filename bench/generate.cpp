// Alignments for the benchmark, the same bytes on every machine for the same seed.
// Usage     generate TYPE SEQUENCES POSITIONS SEED FILE...   TYPE P or D; the same letters in each FILE, in the format
//                                                            that its name ends with: fas, crlf, pir, phy, aln, sto,
//                                                            nex, msf, tens (PHYLIP, sequential, in groups of ten) or
//                                                            blocks (PHYLIP, interleaved, in groups of ten)
//           generate genes COUNT SEED DIRECTORY              DIRECTORY/gene1.fas, ... and DIRECTORY/paths.txt
//           generate folders COUNT SEED DIRECTORY            DIRECTORY/1/gene.fas, ... and DIRECTORY/paths.txt
// Words     stretch: neighbouring columns of one make | residue: the letter that most sequences carry in a column
// Counting  positions and sequences count from 0 here, the names written count from 1
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
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
    const std::size_t first = plan.columns.size();
    const std::size_t last = std::min(positions, first + static_cast<std::size_t>(random.between(10, 120))) - 1;
    const bool conserved = stretch % 2 == 0;
    for (std::size_t p = first; p <= last; ++p) {
      int share = 0;
      if (conserved) {
        // Mostly above the 85 % that a flank needs, here and there only above the half that a conserved column needs.
        share = random.between(0, 7) == 0 ? random.between(160, 215) : random.between(232, 255);
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

[[noreturn]] void stop(const std::string& message) {
  std::fprintf(stderr, "generate: %s\n", message.c_str());
  std::exit(2);
}

/// The 60 letters of `row` from `p` on, also in groups of ten.
std::string line_of(const std::string& row, std::size_t p, bool grouped) {
  std::string line = row.substr(p, 60);
  for (std::size_t end = 10; grouped && end < line.size(); end += 11) line.insert(end, 1, ' ');
  return line;
}

/// Write `rows` to the file at `path`, 60 letters a line, in the format that its name ends with.
void write(const std::vector<std::string>& rows, char type, const std::string& path) {
  const std::string format = path.substr(path.rfind('.') + 1);
  const std::string size = std::to_string(rows.size()), width = std::to_string(rows.front().size());
  const bool pir = format == "pir", grouped = format == "tens" || format == "blocks";
  const bool phylip = format == "phy" || grouped;
  const bool interleaved =
      format == "aln" || format == "sto" || format == "nex" || format == "msf" || format == "blocks";
  const std::string end_of_line = format == "crlf" ? "\r\n" : "\n";
  const auto name = [](std::size_t i) { return "sequence_" + std::to_string(i + 1); };
  const auto padded = [&](std::size_t i) { return name(i) + std::string(18 - name(i).size(), ' '); };
  std::ofstream out(path, std::ios::binary);
  if (phylip) out << size << ' ' << width << '\n';
  if (format == "aln") out << "CLUSTAL W (1.83) multiple sequence alignment\n\n";
  if (format == "sto") out << "# STOCKHOLM 1.0\n\n";
  if (format == "nex") {
    out << "#NEXUS\nbegin data;\ndimensions ntax=" << size << " nchar=" << width
        << ";\nformat datatype=" << (type == 'P' ? "protein" : "dna") << " gap=- interleave;\nmatrix\n";
  }
  if (format == "msf") {
    out << "!!AA_MULTIPLE_ALIGNMENT 1.0\n\n  generated MSF: " << width << " Type: " << type << " Check: 0 ..\n\n";
    for (std::size_t i = 0; i < rows.size(); ++i) out << " Name: " << padded(i) << " Len: " << width << " Check: 0\n";
    out << "\n//\n\n";
  }
  for (std::size_t p = 0; interleaved && p < rows.front().size(); p += 60) {
    for (std::size_t i = 0; i < rows.size(); ++i) {
      const bool named = format != "blocks" || p == 0;
      out << (named ? padded(i) : "") << line_of(rows[i], p, grouped || format == "msf") << '\n';
    }
    out << '\n';
  }
  for (std::size_t i = 0; !interleaved && i < rows.size(); ++i) {
    std::string record = phylip ? padded(i) : pir ? type == 'P' ? ">P1;" : ">DL;" : ">";
    if (!phylip) record += name(i) + end_of_line;
    if (pir) record += "generated\n";
    for (std::size_t p = 0; p < rows[i].size(); p += 60) record += line_of(rows[i], p, grouped) + end_of_line;
    if (pir) record += "*\n";
    out << record;
  }
  if (format == "sto") out << "//\n";
  if (format == "nex") out << ";\nend;\n";
  if (!out.flush()) stop("cannot write " + path);
}

std::vector<std::string> alignment(char type, std::size_t sequences, std::size_t positions, Random& random) {
  const Plan plan = layout(type, sequences, positions, random);
  std::vector<std::string> rows(sequences, std::string(positions, '-'));
  for (std::size_t i = 0; i < sequences; ++i) draw(plan, i, random, rows[i].data());
  return rows;
}

/// Protein alignments of 40 sequences, in folders of their own if `folders`, and paths.txt, which lists them one a line.
void write_genes(const std::string& directory, std::uint64_t count, bool folders, Random& random) {
  std::filesystem::create_directory(directory);
  std::ofstream paths(directory + "/paths.txt");
  for (std::uint64_t k = 1; k <= count; ++k) {
    const std::string number = std::to_string(k);
    std::string path = directory;
    path.append(folders ? "/" : "/gene").append(number);
    if (folders) std::filesystem::create_directory(path);
    path.append(folders ? "/gene.fas" : ".fas");
    write(alignment('P', 40, static_cast<std::size_t>(random.between(300, 1500)), random), 'P', path);
    paths << path << '\n';
  }
  if (!paths.flush()) stop("cannot write " + directory + "/paths.txt");
}

std::uint64_t number(const char* text) {
  char* end = nullptr;
  const std::uint64_t value = std::strtoull(text, &end, 10);
  if (end == text || *end != '\0' || value < 2) stop(std::string("not a number above 1: ") + text);
  return value;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string_view what = argc > 1 ? argv[1] : "";
  if ((what == "genes" || what == "folders") && argc == 5) {
    Random random(number(argv[3]));
    write_genes(argv[4], number(argv[2]), what == "folders", random);
  } else if ((what == "P" || what == "D") && argc > 5) {
    Random random(number(argv[4]));
    const std::vector<std::string> rows = alignment(what.front(), number(argv[2]), number(argv[3]), random);
    for (int k = 5; k < argc; ++k) write(rows, what.front(), argv[k]);
  } else {
    stop("usage: generate P|D SEQUENCES POSITIONS SEED FILE... | generate genes|folders COUNT SEED DIRECTORY");
  }
  return 0;
}
