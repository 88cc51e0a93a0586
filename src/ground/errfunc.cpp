#include "ground/errfunc.h"

#include <cstdarg>

namespace {

[[noreturn, gnu::format(printf, 2, 0)]] void end(const Culprit& culprit, const char* format, va_list arguments) {
  ExecutionTerminated terminated;
  terminated.culprit = culprit;
  std::vsnprintf(terminated.message, sizeof terminated.message, format, arguments);
  va_end(arguments);
  throw ExecutionTerminated(terminated);
}

}  // namespace

void errfunc(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  end({}, format, arguments);
}

void errfunc(const Culprit& culprit, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  end(culprit, format, arguments);
}
