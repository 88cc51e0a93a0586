#include "driver/errfunc.h"

#include <cstdarg>
#include <cstdio>

void errfunc(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  std::vprintf(format, arguments);
  va_end(arguments);
  std::puts("\nExecution terminated");
  throw ExecutionTerminated{};
}
