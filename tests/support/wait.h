#ifndef QUORVANE_TESTS_SUPPORT_WAIT_H
#define QUORVANE_TESTS_SUPPORT_WAIT_H

#include <functional>

namespace test {

// Waits until the condition is true, for a minute at most; returns whether it is.
bool comesTrue(const std::function<bool()>& condition);

}  // namespace test

#endif
