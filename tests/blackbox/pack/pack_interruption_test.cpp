#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "tests/blackbox/pack/small_project.h"
#include "tests/support/files.h"
#include "tests/support/process.h"

namespace fs = std::filesystem;

namespace {

// A build that is stopped by a signal once the file `sign` is there.
class PackInterruption : public testing::Test {
 protected:
  void interrupt(int signal, const std::string& sign) {
    test::writeFile(project_ / "quorvane.toml", project_.text);
    fs::create_directory(project_ / "tmp");
    test::Command command;
    command.arguments = {QUORVANE_BIN "/quorvane-pack", "build", "--executables", "bin"};
    command.environment = {{"TMPDIR", project_ / "tmp"}};
    command.folder = project_.path();
    const pid_t build = test::start(command, project_ / "out", project_ / "err");
    for (int i = 0; i < 6000 && !test::exists(project_ / sign); ++i) {
      usleep(10000);
    }
    kill(build, signal);
    constexpr double kSeconds = 60;
    result_ = test::waitForChild(build, kSeconds);
  }

  void expectNothingLeft() {
    EXPECT_EQ("quorvane-pack: interrupted; nothing was put in place\n",
              test::readFile(project_ / "err"));
    EXPECT_EQ(std::vector<std::string>{}, test::namesIn(project_ / "tmp"));
    EXPECT_EQ(std::vector<std::string>{}, test::namesIn(project_ / "dist"));
  }

  test::SmallProject project_;
  test::Result result_;
};

TEST_F(PackInterruption, WhilePackingLeavesNothing) {
  // Random bytes, which take long to compress.
  std::string bytes(40u << 20, '\0');
  std::mt19937 random;
  for (char& byte : bytes) {
    byte = static_cast<char>(random());
  }
  test::writeFile(project_ / "runtime/lib/modules", bytes);
  interrupt(SIGINT, "dist/.quorvane-unfinished/site");
  EXPECT_EQ(128 + SIGINT, result_.status);
  expectNothingLeft();
}

TEST_F(PackInterruption, WhileAProgramRunsEndsItAndLeavesNothing) {
  project_.replace("folder = \"runtime\"", "jdk = \"jdk\"\nmodules = [\"java.base\"]");
  test::writeFile(project_ / "jdk/bin/jlink",
                  "#!/bin/sh\necho $$ > " + (project_ / "started") + "\nexec sleep 600\n", 0755);
  interrupt(SIGTERM, "started");
  EXPECT_EQ(128 + SIGTERM, result_.status);
  EXPECT_NE(0, kill(atoi(test::readFile(project_ / "started").c_str()), 0));
  expectNothingLeft();
}

TEST_F(PackInterruption, ByASignalThatIsIgnoredChangesNothing) {
  test::writeFile(project_ / "quorvane.toml", project_.text);
  test::Command command;
  command.arguments = {"/bin/sh", "-c",
                       "trap '' HUP; " QUORVANE_BIN
                       "/quorvane-pack build --executables bin & kill -HUP $!; wait $!"};
  command.folder = project_.path();
  const test::Result result = test::run(command);
  EXPECT_EQ(0, result.status) << result.err;
}

}  // namespace
