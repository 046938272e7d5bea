// The launcher's log file, which it has when the desktop starts it.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/files.h"
#include "tests/support/launcher_bundle.h"
#include "tests/support/product_system.h"

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

namespace {

class LauncherLog : public testing::Test {
 protected:
  LauncherLog() {
    bundle_.writeTailFile(test::Tail());
    bundle_.installLibrary(QUORVANE_FAKE_JVM, test::jvmLibraryPlace());
  }

  void run(const std::map<std::string, std::string>& environment) {
    std::map<std::string, std::string> all = environment;
    all["QUORVANE_FAKE_JVM_REPORT"] = bundle_.home / "report";
    result_ = bundle_.run({"guest.Program"}, all);
    EXPECT_EQ(0, result_.status) << result_.out;
  }
  void runByDesktop() { run({{"DESKTOP_STARTUP_ID", "files-1-host_TIME5"}}); }

  Texts logs() const {
    Texts names = test::namesIn(bundle_.master("logs"));
    std::sort(names.begin(), names.end());
    return names;
  }

  test::LauncherBundle bundle_;
  test::Result result_;
};

}  // namespace

TEST_F(LauncherLog, HoldsAllLinesFromTheFirstToTheStartOfJava) {
  runByDesktop();
  ASSERT_EQ(1u, logs().size());
  EXPECT_EQ(0u, logs()[0].find("Launcher-20")) << logs()[0];
  const std::string log = test::readFile(bundle_.master("logs/" + logs()[0]));
  // What is logged on both threads stands in another order here and there.
  Texts lines = test::messagesOf(log);
  Texts printed = test::messagesOf(result_.out);
  EXPECT_EQ("----- Starting Launcher -----", lines[0]);
  EXPECT_TRUE(test::containsInOrder(
      lines,
      {"[Launcher] App Name = Demo", "[Launcher] Master folder is " + bundle_.master(),
       "[Launcher] Logging to " + bundle_.master("logs/" + logs()[0]),
       "[Launcher] JRE name is is Mac64JRE", "[JNILauncher] About to execute static void method.",
       "[Utils] Closing logging file."}));
  for (const std::string& line : lines) {
    EXPECT_GT(std::count(printed.begin(), printed.end(), line), 0) << line;
  }
}

TEST_F(LauncherLog, IsNotThereAfterAStartFromATerminal) {
  run({});
  EXPECT_FALSE(test::exists(bundle_.master("logs")));
  EXPECT_EQ(std::string::npos, result_.out.find("Logging to"));
}

TEST_F(LauncherLog, IsOneOfTheLastTwentyBesideTheInstallers) {
  for (int i = 0; i < 30; ++i) {
    const std::string stamp = "2016-03-01-14-05-" + std::to_string(10 + i) + "-042.log";
    bundle_.installed.addFile("logs/Launcher-" + stamp, "old")
        .addFile("logs/Wrapper-" + stamp, "installer's");
  }
  runByDesktop();
  const Texts names = logs();
  EXPECT_EQ(50u, names.size());
  EXPECT_EQ(20, std::count_if(names.begin(), names.end(), [](const std::string& name) {
              return name.rfind("Launcher-", 0) == 0;
            }));
  EXPECT_EQ("Launcher-2016-03-01-14-05-21-042.log", names[0]);
}

TEST_F(LauncherLog, IsNotWrittenThroughALink) {
  fs::create_directory(bundle_.home / "elsewhere");
  fs::create_directory_symlink(bundle_.home / "elsewhere", bundle_.master("logs"));
  runByDesktop();
  EXPECT_TRUE(test::namesIn(bundle_.home / "elsewhere").empty());
}

TEST_F(LauncherLog, IsNotWrittenForANameThatLeadsElsewhere) {
  test::Tail tail;
  tail.appName = "x/../../elsewhere";
  bundle_.writeTailFile(tail);
  fs::create_directories(bundle_.home.applicationSupport() + "/Quorvane-x");
  const test::Result result = bundle_.run(
      {"guest.Program"}, {{"DESKTOP_STARTUP_ID", "files-1-host_TIME5"}, {"DISPLAY", ":59998"}});
  EXPECT_EQ(1, result.status);
  EXPECT_FALSE(test::exists(bundle_.home / "Library/elsewhere"));
}

TEST_F(LauncherLog, IsNotWrittenForAnApplicationThatIsNotInstalled) {
  fs::remove_all(bundle_.master());
  const test::Result result = bundle_.run(
      {"guest.Program"}, {{"DESKTOP_STARTUP_ID", "files-1-host_TIME5"}, {"DISPLAY", ":59998"}});
  EXPECT_EQ(1, result.status);
  EXPECT_FALSE(test::exists(bundle_.master()));
}
