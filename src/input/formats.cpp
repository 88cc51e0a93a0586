#include "input/formats.h"

#include "input/words.h"

namespace trimora::rooms {
namespace {

using Head = std::string_view;

// PIR before FASTA, which it resembles.
constexpr InputFormat known_formats[] = {
    {"NBRF/PIR", begins_pir, read_pir},
    {"FASTA", begins_fasta, read_fasta},
    {"CLUSTAL", begins_clustal, read_clustal},
    {"PHYLIP", begins_phylip, read_phylip},
    {"NEXUS", begins_nexus, read_nexus},
    {"Stockholm", begins_stockholm, read_stockholm},
    {"MSF", begins_msf, read_msf},
    {"MEGA", [](Head head) { return begins_like(head, "#MEGA"); }, nullptr},
    {"MAF", [](Head head) { return head.starts_with("##maf"); }, nullptr},
    {"SELEX", [](Head head) { return head.starts_with("#="); }, nullptr},
    {"FASTQ or SAM", [](Head head) { return head.starts_with('@'); }, nullptr},
    {"VCF", [](Head head) { return head.starts_with("##fileformat=VCF"); }, nullptr},
    {"GFF", [](Head head) { return head.starts_with("##gff-version"); }, nullptr},
    {"GenBank", [](Head head) { return head.starts_with("LOCUS  "); }, nullptr},
    {"EMBL", [](Head head) { return head.starts_with("ID   "); }, nullptr},
    {"Hennig86", [](Head head) { return begins_like(head, "XREAD"); }, nullptr},
    {"XML", [](Head head) { return begins_like(head, "<?XML"); }, nullptr},
    {"HTML", [](Head head) { return begins_like(head, "<!DOCTYPE HTML") || begins_like(head, "<HTML"); }, nullptr},
    {"rich text", [](Head head) { return head.starts_with("{\\rtf"); }, nullptr},
    {"PDF", [](Head head) { return head.starts_with("%PDF-"); }, nullptr},
    {"bzip2", [](Head head) { return head.starts_with("BZh"); }, nullptr},
    {"xz", [](Head head) { return head.starts_with("\xFD\x37zXZ"); }, nullptr},
    {"zip", [](Head head) { return head.starts_with("PK\x03\x04"); }, nullptr},
    {"zstd", [](Head head) { return head.starts_with("\x28\xB5\x2F\xFD"); }, nullptr},
    {"compress (.Z)", [](Head head) { return head.starts_with("\x1F\x9D"); }, nullptr},
    {"7-Zip", [](Head head) { return head.starts_with("7z\xBC\xAF"); }, nullptr},
    {"Word or Excel", [](Head head) { return head.starts_with("\xD0\xCF\x11\xE0"); }, nullptr},
};

}  // namespace

std::span<const InputFormat> formats() {
  return known_formats;
}

const InputFormat* format_of(std::string_view head) {
  for (const InputFormat& row : known_formats) {
    if (row.begins(head)) return &row;
  }
  return nullptr;
}

}  // namespace trimora::rooms
