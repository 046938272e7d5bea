#ifndef QUORVANE_TESTS_SUPPORT_UNAVAILABLE_H
#define QUORVANE_TESTS_SUPPORT_UNAVAILABLE_H

namespace test {

// For a test that this machine or account cannot run: it is skipped, with the reason, and fails
// where CI=true in the environment and the account is the superuser's, since there nothing may be
// left out. The caller returns at once: 'return test::unavailable("...");'.
void unavailable(const char* reason);

// For a test with an account of no rights that cannot reach the checkout, wherever it runs: the
// place of a checkout is not the test's to judge. It is skipped, and ctest lists it at the end.
void unreachable();

}  // namespace test

#endif
