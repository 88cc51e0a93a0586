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
    input.read_nonempty(line);
  }

  const std::string first_path = path_of(line);
  if (InputFile first(first_path); first) {
    run.tog_sb = 1;
    run.fichero1 = first_path;
    line.clear();
    first.read_nonempty(line);
    checkformat(line, run);
    InputFile paths_file(run.filename);
    if (!paths_file) throw Failure{.kind = Failure::Kind::not_readable, .file = run.filename, .error = errno};
    run.numal = count_paths(paths_file, line);
  } else {
    checkformat(line, run);
    run.tog_sb = 0;
    run.numal = 1;
    run.fichero1 = run.filename;
  }
}

}  // namespace trimora::rooms
