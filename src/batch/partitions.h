// Which columns of a concatenation come from which alignment, as tree programs read it.
// Words     partition: the columns of one alignment, or those of its first, second or third codon positions
#pragma once
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "input/alignment.h"
#include "output/output_file.h"

namespace trimora::rooms {

/// The files of the partitions of the concatenation in `path`: as RAxML reads them, and NEXUS.
std::string raxml_file(const std::string& path);
std::string nexus_file(const std::string& path);

/// How an alignment is divided.
enum class Division {
  genes,      // not at all
  positions,  // first, second and third codon positions
  third,      // first and second together, third
};

/// Names for partitions: ASCII letters, digits and underscores that begin with a letter, unique whatever their case.
class PartitionNames {
 public:
  /// The name for the alignment in the file `path`, made of its name without folder and ending.
  std::string take(const std::string& path);

 private:
  std::unordered_set<std::string> taken_;         // in small letters
  std::unordered_map<std::string, int> numbers_;  // the last one that was tried for a name
};

/// The partitions of one concatenation.
class Partitions {
 public:
  /// The next alignment adds its positions `stretches` to the concatenation; without any it gets no partition.
  void add(const std::string& name, const std::vector<Stretch>& stretches);

  /// Write them as RAxML reads them, each line with `model` in front.
  void write_raxml(OutputFile& out, std::string_view model, Division division) const;
  /// Write them as NEXUS, with a SETS block and a MrBayes block.
  void write_nexus(OutputFile& out, Division division) const;

 private:
  /// Columns of the concatenation that follow each other in frame.
  struct Frame {
    long long first, last;
    int position;  // codon position of the first: 0, 1 or 2
  };
  struct Part {
    std::string name;
    std::vector<Frame> frames;
  };
  struct Line {
    std::string name;
    std::vector<std::string> ranges;
  };
  std::vector<Line> lines(Division division) const;

  std::vector<Part> parts_;
  long long columns_ = 0;
};

}  // namespace trimora::rooms
