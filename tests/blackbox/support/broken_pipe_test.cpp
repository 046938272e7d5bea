// Logging when the reader of standard output is gone, in a process without a toolkit.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/files.h"
#include "tests/support/process.h"
#include "tests/support/temp_folder.h"

TEST(LogWithoutAReader, GoesOnIntoItsFileToTheLastLine) {
  const test::TempFolder folder;
  const std::string master = folder / "master";
  // The reader takes one line, closes the only reading end of the pipe, and then lets the driver
  // go on.
  static const char kReaderLeaves[] = R"sh(
    "$1" "$2" "$3" | { read -r line; exec <&-; : > "$3"; }
    echo "status ${PIPESTATUS[0]}"
  )sh";
  const test::Result result = test::run({{"/bin/bash", "-c", kReaderLeaves, "script",
                                          QUORVANE_BIN "/pipe_driver", master, folder / "go"}});
  EXPECT_EQ("status 0\n", result.out) << result.err;
  const std::vector<std::string> logs = test::namesIn(master + "/logs");
  ASSERT_EQ(1u, logs.size());
  const std::vector<std::string> lines =
      test::logLinesOf(test::readFile(master + "/logs/" + logs[0]));
  ASSERT_EQ(1005u, lines.size());
  EXPECT_EQ("[Driver] first", lines[0]);
  EXPECT_EQ("[Driver] line 999", lines[1000]);
  EXPECT_EQ("[Driver] last", lines[1002]);
  EXPECT_EQ("[Utils] Closing logging file.", lines[1004]);
}
