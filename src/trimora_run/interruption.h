// What happens to the files that are being written when a signal ends the run: they are removed. No file has its own name
// before it is whole.
#pragma once
#include <string>

#include "output/whole_file.h"

namespace trimora::rooms {

/// The names of the files that are being written.
Unfinished& unfinished();

/// Write the file `path` with `write(out)`.
template <typename Write>
void write_result(const std::string& path, Write write) {
  WholeFile file(path, &unfinished());
  write(file.out());
  file.commit();
}

/// From now on a signal that ends the program removes them first, and a limit on the size of files (ulimit -f) is a failure
/// to write like any other. Windows does not let an open file be removed: there it stays under its unfinished name.
void handle_interruptions();

}  // namespace trimora::rooms
