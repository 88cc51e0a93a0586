// Who speaks, and where. Standard output and standard error belong to the process, and so does this.
#pragma once
#include <cstdio>

/// The name of the running program, with which each line on standard error begins; its entry sets it.
inline const char* speaker = "trimora";

/// Where what the program prints goes: standard output, unless an alignment is written there.
inline std::FILE* prints = stdout;
