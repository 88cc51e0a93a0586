// The program trimora-run but for its main(): a caller keeps its process.
#pragma once

namespace trimora::rooms {

/// `trimora-run FILE [OPTION...]`: the run of trimora for scripts. It asks nothing, reads standard input only as the file
/// "-", and runs only when every option is taken as it was written.
/// Returns  the exit status: 0 when everything was done, 1 when not, 2 when nothing was, for wrong usage.
int trimora_run(int argc, char* argv[]);

}  // namespace trimora::rooms
