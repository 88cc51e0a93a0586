// Any bytes as an alignment in any format. What is read is rectangular and clean, the same with other line ends, and the
// same once more when it is written as FASTA.
#include "input/read.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "ground/failure.h"
#include "input/assembly.h"
#include "input/kind.h"

using namespace trimora::rooms;

namespace {

void must(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "\nBROKEN: %s\n", what);
  std::abort();
}

/// What reading gives: FASTA with names that look like nothing else, or the kind of failure.
std::string outcome(std::string_view text) {
  try {
    Reading reading = read_text(text);
    const auto nupo = static_cast<std::size_t>(reading.nupo);
    must(reading.numseq() >= 2 && nupo >= 1, "there are sequences and positions");
    must(reading.letters.size() == reading.names.size() * nupo, "the rows are equally long");
    for (const char c : {'.', '~', ' ', '\t', '\0'}) {
      must(std::string_view(reading.letters.data(), reading.letters.size()).find(c) == std::string_view::npos,
           "every gap is '-'");
    }
    must(only_letters({reading.letters.data(), reading.letters.size()}), "the letters are letters");
    int behind = 0;
    for (const Stretch& columns : reading.inserts) {
      must(columns.first > behind && columns.last >= columns.first, "insert columns go from left to right");
      behind = columns.last;
    }
    must(behind <= reading.nupo, "insert columns are columns");
    std::string fasta;
    for (int i = 1; i <= reading.numseq(); ++i) {
      const std::string& name = reading.names[static_cast<std::size_t>(i) - 1];
      must(name.find_first_of("\r\n") == name.npos, "a name is one line");
      fasta += (name.starts_with("n:") ? ">" : ">n:") + name + "\n";
      fasta.append(reading.row(i), nupo) += '\n';
    }
    for (const Remark& remark : reading.remarks) must(!words(remark).empty(), "a remark has words");
    const KindByLetters kind = kind_by_letters(reading);
    must(kind.kind.has_value() == (kind.why == KindByLetters::Undecided::no), "a type or a reason");
    read_u_as_t(reading);
    return fasta;
  } catch (const Failure& failure) {
    return "failure " + std::to_string(static_cast<int>(failure.kind));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const std::string first = outcome(text);
  if (first.starts_with('>')) must(outcome(first) == first, "the same again");

  const bool coded = text.starts_with("\x1F\x8B") || text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF");
  if (coded || text.find('\r') != text.npos) return 0;
  for (const char* end : {"\r\n", "\r"}) {
    std::string ended;
    for (const char c : text) c == '\n' ? ended += end : ended += c;
    must(outcome(ended) == first, "the same with other line ends");
  }
  return 0;
}
