// Who speaks on standard error, which belongs to the process: each line there begins with the program's name.
#pragma once

/// The name of the running program; its entry sets it.
inline const char* speaker = "trimora";
