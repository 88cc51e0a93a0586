// The two programs but for their main(): a caller keeps its process.
#pragma once

/// `trimora [FILE [OPTION...]]`: menus when there is nothing but a file name, one run without a question when there are
/// options.
/// Returns  the exit status, which is 1 at every end, a good one included: scripts have come to rely on it.
int trimora(int argc, char* argv[]);

/// `trimora-run FILE [OPTION...]`: the same run for scripts. It never reads standard input, and it runs only when every
/// option is taken as it was written.
/// Returns  the exit status: 0 when everything was done, 1 when not, 2 when nothing was, for wrong usage.
int trimora_run(int argc, char* argv[]);
