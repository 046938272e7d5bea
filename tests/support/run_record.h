#ifndef QUORVANE_TESTS_SUPPORT_RUN_RECORD_H
#define QUORVANE_TESTS_SUPPORT_RUN_RECORD_H

#include "tests/support/process.h"

namespace test {

// Keeps what a program printed and how it ended, where QUORVANE_RUN_RECORDS names a folder for it:
// in a folder of the running test's name, as N.out, N.err and N.end for its Nth program. Records of
// the same tests on two builds of the product are compared by tests/macos/suites/compare_logs.py.
void recordRun(const Result& result);

}  // namespace test

#endif
