#include "ground/errfunc.h"

#include <cstdarg>
#include <cstdio>

void errfunc(const char* format, ...) {
  ExecutionTerminated end;
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(end.message, sizeof end.message, format, arguments);
  va_end(arguments);
  std::printf("%s\nExecution terminated\n", end.message);
  throw ExecutionTerminated(end);
}
