#include "tests/support/real_functions.h"

#include <dlfcn.h>
#include <unistd.h>

namespace test {

// The one of this name that comes after the executable's own.
template <typename Function>
static Function* next(const char* name, Function*) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

int realClockGettime(clockid_t clock, timespec* result) {
  static auto* const real = next("clock_gettime", &clock_gettime);
  return real(clock, result);
}

int realNanosleep(const timespec* duration, timespec* rest) {
  static auto* const real = next("nanosleep", &nanosleep);
  return real(duration, rest);
}

size_t realFwrite(const void* bytes, size_t size, size_t count, FILE* file) {
  static auto* const real = next("fwrite", &fwrite);
  return real(bytes, size, count, file);
}

int realLinkat(int from, const char* name, int to, const char* other, int flags) {
  static auto* const real = next("linkat", &linkat);
  return real(from, name, to, other, flags);
}

int realUnlinkat(int folder, const char* path, int flags) {
  static auto* const real = next("unlinkat", &unlinkat);
  return real(folder, path, flags);
}

}  // namespace test
