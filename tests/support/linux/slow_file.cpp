#include "tests/support/slow_file.h"

namespace test {

FILE* slowFile(FakeClock* clock) {
  cookie_io_functions_t functions{};
  functions.write = [](void* cookie, const char*, size_t size) {
    static_cast<FakeClock*>(cookie)->advance(40);
    return static_cast<ssize_t>(size);
  };
  return fopencookie(clock, "w", functions);
}

}  // namespace test
