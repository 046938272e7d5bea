#include "tests/support/slow_file.h"

namespace test {

static int writeSlowly(void* cookie, const char*, int size) {
  static_cast<FakeClock*>(cookie)->advance(40);
  return size;
}

FILE* slowFile(FakeClock* clock) {
  return fwopen(clock, writeSlowly);
}

}  // namespace test
