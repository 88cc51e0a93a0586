#include "batch/partitions.h"

#include <algorithm>
#include <initializer_list>

#include "batch/ascii.h"
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
  if (stem.ends_with(".gz")) stem.resize(stem.size() - 3);
  if (const std::size_t point = stem.rfind('.'); point != 0 && point != std::string::npos) stem.resize(point);
  std::string name;
  for (const char c : in_ascii(stem)) {
    if (name_character(c)) {
      name += c;
    } else if (!name.empty() && name.back() != '_') {
      name += '_';
    }
  }
  if (name.empty() || !is_letter(name[0])) name.insert(0, "p_");
  name.resize(std::min(name.size(), longest));
  const auto lowered = [](std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), lower);
    return text;
  };
  for (int& number = numbers_[lowered(name)];;) {  // where the last one of this name ended: each is tried once
    ++number;
    std::string candidate = number == 1 ? name : name + '_' + std::to_string(number);
    std::string small = lowered(candidate);
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

std::vector<Partitions::Line> Partitions::lines(Division division) const {
  std::vector<Line> all;
  const auto range = [](long long first, long long last) { return std::to_string(first) + '-' + std::to_string(last); };
  const auto add_position = [&](Line& line, const Part& part, int position) {
    for (const Frame& frame : part.frames) {
      const long long first = frame.first + (position - frame.position + 3) % 3;
      if (first > frame.last) continue;
      // MrBayes takes no step within a range of one column.
      line.ranges.push_back(first + 3 > frame.last ? std::to_string(first) : range(first, frame.last) + "\\3");
    }
  };
  for (const Part& part : parts_) {
    const auto add = [&](const char* ending, std::initializer_list<int> positions) {
      Line line{part.name + ending, {}};
      for (const int position : positions) add_position(line, part, position);
      if (!line.ranges.empty()) all.push_back(std::move(line));
    };
    switch (division) {
      case Division::genes:
        all.push_back({part.name, {range(part.frames.front().first, part.frames.back().last)}});
        break;
      case Division::positions:
        add("_pos1", {0});
        add("_pos2", {1});
        add("_pos3", {2});
        break;
      case Division::third:
        add("_pos12", {0, 1});
        add("_pos3", {2});
        break;
    }
  }
  return all;
}

void Partitions::write_raxml(OutputFile& out, std::string_view model, Division division) const {
  for (const Line& line : lines(division)) {
    out.put(std::string(model) + ", " + line.name + " = " + joined(line.ranges, ", ") + '\n');
  }
}

void Partitions::write_nexus(OutputFile& out, Division division) const {
  const std::vector<Line> all = lines(division);
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
