#include "input/filetype.h"

#include "ground/failure.h"

namespace trimora::rooms {

std::string path_of(const std::string& line) {
  std::string path = without_newline(line);
#ifdef _WIN32  // where lists have line ends of two characters, and no name ends with the first of them
  if (path.ends_with('\r')) path.pop_back();
#endif
  return path;
}

// A read at the end of the file leaves the line as it is, so that the last one is counted twice when it ends with a line
// end.
int count_paths(InputFile& paths_file, std::string line) {
  int numal = 0;
  while (!paths_file.ended()) {
    paths_file.read_line(line);
    if (!is_empty_line(line)) ++numal;
  }
  return numal - 1;
}

void checkformat(const std::string& line, InputState& run) {
  if (!line.starts_with('>')) throw Failure{.kind = Failure::Kind::unknown_format, .detail = line};
  if (line.size() < 4 || line[3] != ';') {
    run.fileformat = fasta;
    run.seq_type = 'P';
    return;
  }
  run.fileformat = pir;
  if (line[1] != 'P' && line[1] != 'D') {
    throw Failure{.kind = Failure::Kind::undecided_type, .detail = line};
  }
  run.seq_type = line[1];
}

bool read_path(InputFile& paths_file, std::string& path) {
  std::string line = "\n";
  paths_file.read_nonempty(line);
  if (is_empty_line(line)) return false;
  path = path_of(line);
  return true;
}

}  // namespace trimora::rooms
