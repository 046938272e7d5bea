#ifndef QUORVANE_TESTS_SUPPORT_CAPTURE_H
#define QUORVANE_TESTS_SUPPORT_CAPTURE_H

#include <functional>
#include <string>
#include <vector>

#include "tests/support/process.h"

namespace test {

struct Captured {
  std::string out;  // standard output, byte for byte
  std::string err;  // standard error; the system log goes there too

  // The lines of `out` without the elapsed-time prefix of log lines.
  std::vector<std::string> lines() const;
};

// Runs `code` in this process with descriptors 1 and 2, which child processes inherit, directed
// into files, and returns what was written. Captures do not nest. When an expectation inside `code`
// fails, what was captured is also shown.
Captured capture(const std::function<void()>& code);

// The captured standard output's lines without the elapsed-time prefix of log lines.
std::vector<std::string> logLinesOf(const std::function<void()>& code);

// The status that runInChild() reports when `code` came back instead of ending the process.
constexpr int CODE_RETURNED = 250;

// Runs `code` in a forked child, so that it may end its process, crash or change process-wide
// state, and returns how the child ended and what it wrote. After `seconds` the child is killed.
// Expectations inside `code` do not reach the test.
Result runInChild(const std::function<void()>& code, double seconds = 30);

}  // namespace test

#endif
