#include "tests/macos/run/stop.h"

#include <unistd.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>

namespace macrun {

// One write, so that the lines of several processes do not mix.
static void print(const char* format, va_list arguments) {
  char line[1024] = "macrun: ";
  const size_t lead = 8;
  const int length = vsnprintf(line + lead, sizeof line - lead - 1, format, arguments);
  const size_t end = std::min(lead + std::max(length, 0), sizeof line - 2);
  line[end] = '\n';
  [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, line, end + 1);
}

void refuse(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  print(format, arguments);
  va_end(arguments);
  _exit(126);
}

void giveUp(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  print(format, arguments);
  va_end(arguments);
  abort();
}

}  // namespace macrun
