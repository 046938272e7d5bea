#ifndef QUORVANE_TESTS_MACOS_RUN_TEST_GUEST_H
#define QUORVANE_TESTS_MACOS_RUN_TEST_GUEST_H

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/process.h"
#include "tests/support/temp_folder.h"

namespace test {

// A test of the runner with an executable for macOS that the cross compiler makes of one of the
// sources in guests/, unless it has before. Where there is no compiler, the test is skipped, and
// fails in CI.
class Guest : public testing::Test {
 protected:
  void SetUp() override;

  // Builds guests/NAME, which ends in .cpp or .mm; returns the executable's path.
  std::string build(const std::string& name);

  // Runs an executable through the runner, in a folder and with a trace file of its own.
  Result runGuest(const std::vector<std::string>& arguments);

  // The same for guests/NAME; the test fails where it writes to standard error or is ended by a
  // signal. Returns what it printed, line by line.
  std::vector<std::string> linesOfGuest(const std::string& name,
                                        const std::vector<std::string>& arguments = {});

  std::vector<std::string> traceLines() const;

  TempFolder folder_;
};

}  // namespace test

#endif
