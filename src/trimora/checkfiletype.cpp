#include "trimora/checkfiletype.h"

#include <cerrno>
#include <cstdio>
#include <string>

#include "ground/failure.h"
#include "input/filetype.h"

namespace trimora::rooms {

void checkfiletype(InputState& run) {
  std::string line;
  {
    InputFile input(run.filename);
    if (!input) {
      std::fputs("\n* File not opened *\n", stdout);
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
    if (!pathsfile) throw Failure{.kind = Failure::Kind::not_readable, .file = run.filename, .error = errno};
    run.numal = countpaths(pathsfile, line);
  } else {
    checkformat(line, run);
    run.tog_sb = 0;
    run.numal = 1;
    run.fichero1 = run.filename;
  }
}

}  // namespace trimora::rooms
