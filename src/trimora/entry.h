// The program trimora but for its main(): a caller keeps its process.
#pragma once

namespace trimora::rooms {

/// `trimora [FILE [OPTION...]]`: menus when there is nothing but a file name, one run without a question when there are
/// options.
/// Returns  the exit status, which is 1 at every end, a good one included: scripts have come to rely on it.
int trimora_main(int argc, char* argv[]);

}  // namespace trimora::rooms
