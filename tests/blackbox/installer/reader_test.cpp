// An installer whose standard output and error go into a pipe, and whose reader goes away.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/blackbox/installer/current_installation.h"

namespace fs = std::filesystem;

// The reader takes one line and closes the only reading end of the pipe.
static const char kReaderLeaves[] = R"sh(
  "$1" 2>&1 | { read -r line; exec <&-; }
  echo "status ${PIPESTATUS[0]}"
)sh";

TEST(InstallerWithoutAReader, InstallsAndLogsToTheEnd) {
  const test::Installer installer;
  installer.write();
  test::Command command = installer.command();
  command.arguments = {"/bin/bash", "-c", kReaderLeaves, "script", installer.executable()};
  // GNUstep ignores the signal for itself, AppKit does not.
  std::string& preloaded = command.environment["LD_PRELOAD"];
  preloaded = std::string(QUORVANE_SIGPIPE_AS_IT_WAS) + ":" + preloaded;
  const test::Result result = test::run(command);
  EXPECT_EQ("status 0\n", result.out) << result.err;
  EXPECT_TRUE(installer.launched());
  EXPECT_TRUE(fs::exists(installer.master("Quorvane-Demo-3-complete/demo.jar")));
  const std::vector<std::string> logs = test::namesIn(installer.master("logs"));
  ASSERT_EQ(1u, logs.size());
  const std::string log = test::readFile(installer.master("logs/" + logs[0]));
  EXPECT_NE(std::string::npos, log.find("[Utils] Closing logging file.\n")) << log;
}
