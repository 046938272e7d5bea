#include "tests/support/real_functions.h"

#include <sys/syscall.h>
#include <unistd.h>

namespace test {

int realClockGettime(clockid_t clock, timespec* result) {
  return static_cast<int>(syscall(SYS_clock_gettime, clock, result));
}

int realNanosleep(const timespec* duration, timespec* rest) {
  return static_cast<int>(syscall(SYS_nanosleep, duration, rest));
}

size_t realFwrite(const void* bytes, size_t size, size_t count, FILE* file) {
  flockfile(file);
  const size_t written = fwrite_unlocked(bytes, size, count, file);
  funlockfile(file);
  return written;
}

int realLinkat(int from, const char* name, int to, const char* other, int flags) {
  return static_cast<int>(syscall(SYS_linkat, from, name, to, other, flags));
}

int realUnlinkat(int folder, const char* path, int flags) {
  return static_cast<int>(syscall(SYS_unlinkat, folder, path, flags));
}

}  // namespace test
