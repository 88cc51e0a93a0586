#include "batch/partitions.h"

#include "support.h"

namespace trimora::rooms {
namespace {

TEST(Partitions, NamesFromFileNames) {
  const std::string longest(300, 'x');
  const std::pair<std::string, std::string> cases[] = {
      {"genes/locus_0003.fas", "locus_0003"},
      {"locus_0003.aln.fas", "locus_0003_aln"},
      {"other/LOCUS_0003.pir", "LOCUS_0003_2"},
      {"12S", "p_12S"},
      {".hidden", "hidden"},
      {"a - b.fas", "a_b"},
      {"\xc3\xbc", "ue"},
      {"\xc3\xa9t\xc3\xa9.fas", "ete"},
      {"e\xcc\x80te\xcd\xaf.fas", "ete_2"},              // marks on the letters before
      {"\xce\xb1\xcf\x89-\xd0\xb6\xd1\x8f", "ao_zhya"},  // Greek, Cyrillic
      {"\xe5\x90\x8d", "p_"},
      {"end.fas", "end_2"},
      {"remainder.fas", "remainder_2"},
      {"EndBlock", "EndBlock_2"},
      {"All", "All_2"},
      {"locus_0003_2", "locus_0003_2_2"},
      {longest, longest.substr(0, 80)},
      {longest + ".fas", longest.substr(0, 80) + "_2"},
  };
  PartitionNames names;
  for (const auto& [path, name] : cases) EXPECT_EQ(names.take(path), name) << path;
}

// Three alignments, the second one without a position. Codon positions follow the columns of the alignment, not those of
// the concatenation: the last one lacks its column 4, as an alignment without gaps may.
TEST(Partitions, RangesOfWholeGenesAndOfCodonPositions) {
  Partitions all;
  all.add("one", {{1, 3}, {7, 9}});
  all.add("none", {{5, 4}});
  all.add("two", {{2, 3}, {5, 9}});
  const auto raxml = [](const Partitions& parts, std::string_view model, Division division) {
    return written_by([&](OutputFile& out) { parts.write_raxml(out, model, division); });
  };
  const auto nexus = [](const Partitions& parts, Division division) {
    return written_by([&](OutputFile& out) { parts.write_nexus(out, division); });
  };
  EXPECT_EQ(raxml(all, "GTR+G", Division::genes), "GTR+G, one = 1-6\nGTR+G, two = 7-13\n");
  EXPECT_EQ(nexus(all, Division::genes),
            "#NEXUS\nbegin sets;\n  charset one = 1-6;\n  charset two = 7-13;\nend;\n"
            "begin mrbayes;\n  charset one = 1-6;\n  charset two = 7-13;\n"
            "  partition genes = 2: one, two;\n  set partition = genes;\nend;\n");
  EXPECT_EQ(raxml(all, "DNA", Division::positions),
            "DNA, one_pos1 = 1-6\\3\nDNA, one_pos2 = 2-6\\3\nDNA, one_pos3 = 3-6\\3\n"
            "DNA, two_pos1 = 11\nDNA, two_pos2 = 7, 9-13\\3\nDNA, two_pos3 = 8, 10-13\\3\n");
  EXPECT_EQ(raxml(all, "DNA", Division::third),
            "DNA, one_pos12 = 1-6\\3, 2-6\\3\nDNA, one_pos3 = 3-6\\3\n"
            "DNA, two_pos12 = 11, 7, 9-13\\3\nDNA, two_pos3 = 8, 10-13\\3\n");
  EXPECT_NE(nexus(all, Division::positions).find("charset two_pos2 = 7 9-13\\3;"), std::string::npos);
  EXPECT_EQ(raxml(Partitions(), "DNA", Division::genes), "");
  EXPECT_EQ(nexus(Partitions(), Division::genes), "#NEXUS\nbegin sets;\nend;\n");
}

}  // namespace
}  // namespace trimora::rooms
