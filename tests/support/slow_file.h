#ifndef QUORVANE_TESTS_SUPPORT_SLOW_FILE_H
#define QUORVANE_TESTS_SUPPORT_SLOW_FILE_H

#include <cstdio>

#include "tests/support/fake_clock.h"

namespace test {

// A stream for writing, whose every write takes 40 milliseconds of `clock` and stores nothing. The
// caller closes it before the clock goes.
FILE* slowFile(FakeClock* clock);

}  // namespace test

#endif
