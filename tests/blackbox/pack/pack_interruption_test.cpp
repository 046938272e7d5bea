#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "tests/blackbox/pack/small_project.h"
#include "tests/support/files.h"
#include "tests/support/process.h"

namespace fs = std::filesystem;

namespace {

// A build that a signal reaches once the file `sign` is there.
class PackInterruption : public testing::Test {
 protected:
  // Starts the build and waits for the sign.
  void start(const std::string& sign) {
    test::writeFile(project_ / "quorvane.toml", project_.text);
    fs::create_directory(project_ / "tmp");
    command_.arguments.insert(command_.arguments.end(), words_.begin(), words_.end());
    command_.environment = {{"TMPDIR", project_ / "tmp"}};
    build_ = test::start(command_, project_ / "out", project_ / "err");
    for (int i = 0; i < 6000 && !test::exists(project_ / sign); ++i) {
      usleep(10000);
    }
    EXPECT_TRUE(test::exists(project_ / sign)) << test::readFile(project_ / "err");
  }

  void waitForEnd() {
    constexpr double kSeconds = 60;
    result_ = test::waitForChild(build_, kSeconds);
  }

  void interrupt(int signal, const std::string& sign) {
    start(sign);
    kill(build_, signal);
    waitForEnd();
  }

  // Makes a file that takes long to compress.
  void addRandomBytes(const std::string& name) const {
    std::string bytes(40u << 20, '\0');
    std::mt19937 random;
    for (char& byte : bytes) {
      byte = static_cast<char>(random());
    }
    test::writeFile(project_ / name, bytes);
  }

  // The runtime is made by a jlink that is this script.
  void useJlink(const std::string& script) {
    project_.replace("folder = \"runtime\"", "jdk = \"jdk\"\nmodules = [\"java.base\"]");
    test::writeFile(project_ / "jdk/bin/jlink", "#!/bin/sh\n" + script, 0755);
  }

  void expectNothingLeft() {
    EXPECT_EQ("quorvane-pack: interrupted; nothing was put in place\n",
              test::readFile(project_ / "err"));
    EXPECT_EQ(std::vector<std::string>{}, test::namesIn(project_ / "tmp"));
    EXPECT_EQ(std::vector<std::string>{}, test::namesIn(project_ / "dist"));
    EXPECT_EQ(std::vector<std::string>{}, unfinishedInCache());
  }

  // What was packed before the end is whole, and the next build takes it.
  std::vector<std::string> unfinishedInCache() const {
    std::vector<std::string> names;
    for (const std::string& name : test::namesIn(project_ / "cache/quorvane")) {
      if (name.rfind("component-", 0) != 0) {
        names.push_back(name);
      }
    }
    return names;
  }

  test::SmallProject project_;
  test::Command command_ =
      test::packCommand(project_.path(), {"build", "--quiet", "--executables", "bin"});
  std::vector<std::string> words_;  // more of the command line
  pid_t build_ = 0;
  test::Result result_;
};

TEST_F(PackInterruption, WhilePackingLeavesNothing) {
  addRandomBytes("runtime/lib/modules");
  interrupt(SIGINT, "dist/.quorvane-unfinished/site");
  EXPECT_EQ(128 + SIGINT, result_.status);
  expectNothingLeft();
}

TEST_F(PackInterruption, WhilePackingSideBySideLeavesNothing) {
  addRandomBytes("runtime/lib/modules");
  addRandomBytes("app/data");
  words_ = {"--jobs", "4"};
  interrupt(SIGINT, "dist/.quorvane-unfinished/site");
  EXPECT_EQ(128 + SIGINT, result_.status);
  expectNothingLeft();
}

TEST_F(PackInterruption, OfPackingByAFailureElsewhereLeavesNothing) {
  addRandomBytes("app/data");
  useJlink("echo no such module; exit 1\n");
  words_ = {"--jobs", "4"};
  start("dist");
  waitForEnd();
  EXPECT_EQ(1, result_.status);
  const std::string err = test::readFile(project_ / "err");
  EXPECT_NE(std::string::npos, err.find("bin/jlink failed:\nno such module")) << err;
  EXPECT_EQ(std::vector<std::string>{}, test::namesIn(project_ / "tmp"));
  EXPECT_EQ(std::vector<std::string>{}, test::namesIn(project_ / "dist"));
  EXPECT_EQ(std::vector<std::string>{}, unfinishedInCache());
}

TEST_F(PackInterruption, WhileAProgramRunsEndsItAndLeavesNothing) {
  useJlink("echo $$ > " + (project_ / "pid") + "\n: > " + (project_ / "started") +
           "\nexec sleep 600\n");
  interrupt(SIGTERM, "started");
  EXPECT_EQ(128 + SIGTERM, result_.status);
  EXPECT_NE(0, kill(std::stoi(test::readFile(project_ / "pid")), 0));
  expectNothingLeft();
}

TEST_F(PackInterruption, ByAKillLeavesWhatTheNextBuildRemoves) {
  useJlink(
      "while [ \"$1\" != --output ]; do shift; done\n"
      "mkdir -p \"$2/bin\"; : > " +
      (project_ / "started") + "\n[ -e " + (project_ / "go") + " ] || exec sleep 600\n" +
      "echo java > \"$2/bin/java\"; echo 'JAVA_VERSION=\"21.0.4\"' > \"$2/release\"\n");
  // A kill between the making of a folder and of its lock leaves the folder: nothing is packed
  // beside this jlink.
  words_ = {"--jobs", "1"};
  start("started");
  kill(build_, SIGKILL);
  waitForEnd();
  EXPECT_NE(0u, test::namesIn(project_ / "tmp").size());
  test::writeFile(project_ / "tmp/quorvane-mine/file", "of another program");
  test::writeFile(project_ / "go", "");
  test::transcriptOf(command_).ends(0);
  EXPECT_EQ(std::vector<std::string>{"quorvane-mine"}, test::namesIn(project_ / "tmp"));
  EXPECT_TRUE(test::exists(project_ / "dist/site/Quorvane-Mac64JRE-210004-archive.p2.l2"));
  EXPECT_FALSE(test::exists(project_ / "dist/.quorvane-unfinished"));
}

TEST_F(PackInterruption, ByAHangupEndsItAndLeavesNothing) {
  useJlink(": > " + (project_ / "started") + "\nexec sleep 600\n");
  interrupt(SIGHUP, "started");
  EXPECT_EQ(128 + SIGHUP, result_.status);
  expectNothingLeft();
}

TEST_F(PackInterruption, ByASignalThatIsIgnoredChangesNothing) {
  // While this jlink runs the build would note the signal.
  useJlink(": > " + (project_ / "started") + "\nwhile [ ! -e " + (project_ / "go") +
           " ]; do sleep 0.05; done\n"
           "while [ \"$1\" != --output ]; do shift; done\n"
           "mkdir -p \"$2/bin\" && echo java > \"$2/bin/java\"\n"
           "echo 'JAVA_VERSION=\"21.0.4\"' > \"$2/release\"\n");
  command_.prepare = [] { signal(SIGHUP, SIG_IGN); };
  start("started");
  kill(build_, SIGHUP);
  test::writeFile(project_ / "go", "");
  waitForEnd();
  EXPECT_EQ(0, result_.status) << test::readFile(project_ / "err");
  EXPECT_EQ("", test::readFile(project_ / "err"));
  EXPECT_TRUE(test::exists(project_ / "dist/site/Quorvane-Mac64JRE-210004-archive.p2.l2"));
  EXPECT_EQ(std::vector<std::string>{}, test::namesIn(project_ / "tmp"));
}

}  // namespace
