#include "tests/macos/run/supply/trace.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <set>
#include <string>

namespace macrun {

static const char* traceFile() {
  static const char* const file = getenv("MACRUN_TRACE");
  return file;
}

bool isTracing() {
  return traceFile() != nullptr && traceFile()[0] != 0;
}

void traceUse(const char* kind, const char* name) {
  if (!isTracing()) {
    return;
  }
  const int before = errno;
  char line[512];
  const int length = snprintf(line, sizeof line, "%s %s\n", kind, name);
  const int file = open(traceFile(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
  if (file >= 0) {
    [[maybe_unused]] const ssize_t written = write(file, line, static_cast<size_t>(length));
    close(file);
  }
  errno = before;
}

bool isInTrace(const char* kind, const char* name) {
  static const std::set<std::string> lines = [] {
    std::set<std::string> read;
    std::ifstream file(traceFile());
    for (std::string line; std::getline(file, line);) {
      read.insert(line);
    }
    return read;
  }();
  return lines.count(std::string(kind) + " " + name) != 0;
}

}  // namespace macrun
