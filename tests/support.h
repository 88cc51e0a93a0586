// What the tests share: alignments drawn as rows, arguments on a line, a folder of their own, and what a step prints.
#pragma once
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "input/alignment.h"
#include "output/output_file.h"
#include "trimora/errfunc.h"

namespace trimora::rooms {

/// The alignment with these rows.
inline Alignment alignment(const std::vector<std::string>& rows) {
  Alignment ali;
  std::vector<char> letters;
  for (const std::string& row : rows) letters.insert(letters.end(), row.begin(), row.end());
  ali.numseq = static_cast<int>(rows.size());
  ali.nupo = static_cast<int>(rows.front().size());
  ali.let = Rows(std::move(letters), ali.nupo);
  return ali;
}

/// What `write` puts out.
template <typename Write>
std::string written_by(Write write) {
  std::string text;
  OutputFile out(&text);
  write(out);
  EXPECT_EQ(out.close(), 0);
  return text;
}

/// Names as an alignment stores them, without their line ends unless they are given.
inline Table<std::string> names(const std::vector<std::string>& list) {
  Table<std::string> name;
  for (const std::string& text : list) name.append(text);
  return name;
}

/// The bytes of a file.
inline std::string text_of(const std::string& path) {
  return (std::ostringstream() << std::ifstream(path, std::ios::binary).rdbuf()).str();
}

/// Stretches as "first..last ", one after the other.
inline std::string listed(const std::vector<Stretch>& stretches) {
  std::string list;
  for (const Stretch& s : stretches) list += std::to_string(s.first) + ".." + std::to_string(s.last) + " ";
  return list;
}

/// Call `function` with the words of a line as argc and argv, and with what else it takes.
template <typename Function, typename... More>
auto with_words(const std::string& line, Function function, More&&... more) {
  std::istringstream text(line);
  std::vector<std::string> words = {std::istream_iterator<std::string>(text), {}};
  std::vector<char*> argv;
  for (std::string& word : words) argv.push_back(word.data());
  return function(static_cast<int>(argv.size()), argv.data(), more...);
}

/// What `step` prints, the message of a fatal error included.
template <typename Step>
std::string printed_by(Step step) {
  testing::internal::CaptureStdout();
  go_through(step);
  return testing::internal::GetCapturedStdout();
}

/// A test that works in a fresh folder.
class FolderTest : public testing::Test {
 protected:
  FolderTest() { std::filesystem::current_path(mkdtemp(folder_.data())); }
  ~FolderTest() override {
    std::filesystem::current_path("/");
    std::filesystem::remove_all(folder_);
  }
  static void write(const std::string& path, const std::string& text) { std::ofstream(path) << text; }

 private:
  std::string folder_ = (std::filesystem::temp_directory_path() / "trimora-XXXXXX").string();
};

}  // namespace trimora::rooms
