#include "ground/errfunc.h"

#include <cstdarg>

namespace {

[[gnu::format(printf, 2, 0)]] ExecutionTerminated end(const Culprit& culprit, const char* format, va_list arguments) {
  ExecutionTerminated terminated;
  terminated.culprit = culprit;
  std::vsnprintf(terminated.message, sizeof terminated.message, format, arguments);
  return terminated;
}

}  // namespace

void errfunc(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const ExecutionTerminated terminated = end({}, format, arguments);
  va_end(arguments);
  throw ExecutionTerminated(terminated);
}

void errfunc(const Culprit& culprit, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const ExecutionTerminated terminated = end(culprit, format, arguments);
  va_end(arguments);
  throw ExecutionTerminated(terminated);
}
