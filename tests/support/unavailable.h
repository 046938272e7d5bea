#ifndef QUORVANE_TESTS_SUPPORT_UNAVAILABLE_H
#define QUORVANE_TESTS_SUPPORT_UNAVAILABLE_H

namespace test {

// For a test that this machine or account cannot run: it is skipped, with the reason, and fails
// where CI=true in the environment, since there nothing may be left out unseen. The caller returns
// at once: 'return test::unavailable("...");'.
void unavailable(const char* reason);

}  // namespace test

#endif
