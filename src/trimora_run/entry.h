// The program trimora-run but for its main(): a caller keeps its process.
#pragma once

namespace trimora::rooms {

/// `trimora-run FILE ... [OPTION ...]`: one run without a question.
/// Returns  the exit status: 0 done, 1 failed or something is incomplete, 2 wrong usage.
int trimora_run_main(int argc, char* argv[]);

}  // namespace trimora::rooms
