#include "batch/partitions.h"

#include <algorithm>

#include "ground/path.h"
#include "input/letters.h"

namespace trimora::rooms {

namespace {

constexpr std::size_t longest = 80;  // MrBayes reads 99 characters; a number and the codon position follow

bool name_character(char c) {
  return is_letter(c) || (c >= '0' && c <= '9') || c == '_';
}

std::string joined(const std::vector<std::string>& texts, std::string_view between) {
  std::string all;
  for (const std::string& text : texts) all.append(all.empty() ? "" : between).append(text);
  return all;
}

}  // namespace

std::string raxml_file(const std::string& path) {
  return path + ".partitions";
}

std::string nexus_file(const std::string& path) {
  return path + ".nex";
}

std::string PartitionNames::take(const std::string& path) {
  std::string stem = getpath(path).name_file;
  if (const std::size_t point = stem.rfind('.'); point != 0 && point != std::string::npos) stem.resize(point);
  std::string name;
  for (const char c : stem) {
    if (name_character(c)) {
      name += c;
    } else if (!name.empty() && name.back() != '_') {
      name += '_';
    }
  }
  if (name.empty() || !is_letter(name[0])) name.insert(0, "p_");
  name.resize(std::min(name.size(), longest));
  for (int number = 1;; ++number) {
    std::string candidate = number == 1 ? name : name + '_' + std::to_string(number);
    std::string small = candidate;
    std::transform(small.begin(), small.end(), small.begin(), lower);
    // Words and sets that NEXUS has by itself.
    const bool reserved = small == "all" || small == "remainder" || small == "end" || small == "endblock";
    if (!reserved && taken_.insert(std::move(small)).second) return candidate;
  }
}

void Partitions::add(const std::string& name, const std::vector<Stretch>& stretches) {
  Part part{name, {}};
  for (const Stretch& stretch : stretches) {
    if (stretch.length() == 0) continue;
    const int position = (stretch.first - 1) % 3;
    const long long first = columns_ + 1;
    columns_ += stretch.length();
    if (!part.frames.empty()) {
      Frame& before = part.frames.back();
      if ((before.position + (first - before.first)) % 3 == position) {
        before.last = columns_;
        continue;
      }
    }
    part.frames.push_back({first, columns_, position});
  }
  if (!part.frames.empty()) parts_.push_back(std::move(part));
}

std::vector<Partitions::Line> Partitions::lines(bool codons) const {
  std::vector<Line> all;
  const auto range = [](long long first, long long last) { return std::to_string(first) + '-' + std::to_string(last); };
  for (const Part& part : parts_) {
    if (!codons) {
      all.push_back({part.name, {range(part.frames.front().first, part.frames.back().last)}});
      continue;
    }
    for (int position = 0; position < 3; ++position) {
      Line line{part.name + "_pos" + std::to_string(position + 1), {}};
      for (const Frame& frame : part.frames) {
        const long long first = frame.first + (position - frame.position + 3) % 3;
        if (first > frame.last) continue;
        // MrBayes takes no step within a range of one column.
        line.ranges.push_back(first + 3 > frame.last ? std::to_string(first) : range(first, frame.last) + "\\3");
      }
      if (!line.ranges.empty()) all.push_back(std::move(line));
    }
  }
  return all;
}

void Partitions::write_raxml(OutputFile& out, std::string_view model, bool codons) const {
  for (const Line& line : lines(codons)) {
    out.put(std::string(model) + ", " + line.name + " = " + joined(line.ranges, ", ") + '\n');
  }
}

void Partitions::write_nexus(OutputFile& out, bool codons) const {
  const std::vector<Line> all = lines(codons);
  const auto charsets = [&] {
    for (const Line& line : all) out.put("  charset " + line.name + " = " + joined(line.ranges, " ") + ";\n");
  };
  out.put("#NEXUS\nbegin sets;\n");
  charsets();
  out.put("end;\n");
  if (all.empty()) return;
  std::vector<std::string> names;
  names.reserve(all.size());
  for (const Line& line : all) names.push_back(line.name);
  out.put("begin mrbayes;\n");  // which reads no sets block
  charsets();
  out.put("  partition genes = " + std::to_string(all.size()) + ": " + joined(names, ", ") + ";\n");
  out.put("  set partition = genes;\nend;\n");
}

}  // namespace trimora::rooms
