#include "input/filetype.h"

#include <cstdio>

#include "ground/errfunc.h"
#include "ground/speaker.h"

namespace {

/// The path in a line of a paths file.
std::string pathof(const std::string& line) {
  std::string path = withoutnewline(line);
#ifdef _WIN32  // where lists have line ends of two characters, and no name ends with the first of them
  if (path.ends_with('\r')) path.pop_back();
#endif
  return path;
}

}  // namespace

// A read at the end of the file leaves the line as it is, so that the last one is counted twice when it ends with a line
// end.
int countpaths(InputFile& pathsfile, std::string line) {
  int numal = 0;
  while (!pathsfile.ended()) {
    pathsfile.readline(line);
    if (!emptyline(line)) ++numal;
  }
  return numal - 1;
}

void checkfiletype(InputState& run) {
  std::string line;
  {
    InputFile input(run.filename);
    if (!input) {
      std::fputs("\n* File not opened *\n", prints);
      run.filename.clear();
      return;
    }
    input.readnonempty(line);
  }

  const std::string firstpath = pathof(line);
  if (InputFile first(firstpath); first) {
    run.tog_sb = 1;
    run.fichero1 = firstpath;
    line.clear();
    first.readnonempty(line);
    checkformat(line, run);
    InputFile pathsfile(run.filename);
    if (!pathsfile) errfunc("\nFile not opened\n");
    run.numal = countpaths(pathsfile, line);
  } else {
    checkformat(line, run);
    run.tog_sb = 0;
    run.numal = 1;
    run.fichero1 = run.filename;
  }
}

void checkformat(const std::string& line, InputState& run) {
  if (!line.starts_with('>')) errfunc("\nSequence not in NBRF/PIR or FASTA format\n");
  if (line.size() < 4 || line[3] != ';') {
    run.fileformat = fasta;
    run.seq_type = 'P';
    return;
  }
  run.fileformat = pir;
  if (line[1] != 'P' && line[1] != 'D') {
    errfunc(
        "\nSequence not in correct NBRF/PIR format: a D (for DNA or rRNA sequences) or a P (for protein sequences) is missing after the symbol > in the name line\n");
  }
  run.seq_type = line[1];
}

bool readpath(InputFile& pathsfile, std::string& path) {
  std::string line = "\n";
  pathsfile.readnonempty(line);
  if (emptyline(line)) return false;
  path = pathof(line);
  return true;
}

std::optional<std::vector<std::string>> listedpaths(const std::string& filename) {
  InputFile pathsfile(filename);
  if (!pathsfile) return std::nullopt;
  std::vector<std::string> listed;
  std::string path;
  while (readpath(pathsfile, path)) listed.push_back(path);
  return listed;
}
