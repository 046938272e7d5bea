// The launcher with a real Java runtime in a window system of its own: URLs from other processes,
// and the menu.

#include <gtest/gtest.h>

#include "tests/support/background.h"
#include "tests/support/files.h"
#include "tests/support/launcher_bundle.h"
#include "tests/support/temp_folder.h"
#include "tests/support/wait.h"

class LauncherWindow : public testing::Test {
 protected:
  LauncherWindow() {
    bundle_.appendTail(test::Tail());
    bundle_.installRuntime();
  }

  test::Command command(const std::vector<std::string>& arguments) const {
    test::Command command;
    command.arguments = arguments;
    command.environment = bundle_.home.environment();
    command.environment["DISPLAY"] = display_.name();
    return command;
  }

  // The launcher with a Java program that stays until its process ends.
  test::Command stayingProgram() const {
    return command({bundle_.executable(), "-cp", QUORVANE_TEST_CLASSES, "guest.Program", "stay"});
  }

  test::Command sender(const std::string& url) const {
    return command({QUORVANE_BIN "/url_sender", "Demo", url});
  }

  static bool hasReceived(const test::Background& launcher, const std::string& url) {
    return test::comesTrue([&] {
      return launcher.err().find("[Quorvane] [URL] Converted URL to '" + url + "'") !=
             std::string::npos;
    });
  }

  test::LauncherBundle bundle_;
  test::OwnDisplay display_;
};

TEST_F(LauncherWindow, TheUrlThatStartedTheApplicationIsNotLost) {
  const test::Background sending(sender("demo://open/at-start"));
  const test::Background launcher(stayingProgram());
  EXPECT_TRUE(hasReceived(launcher, "demo://open/at-start")) << launcher.err();
}

TEST_F(LauncherWindow, AUrlSentWhileTheProgramRunsIsReceived) {
  const test::Background launcher(stayingProgram());
  launcher.waitForLine("[Guest] class path");
  const test::Result sending = test::run(sender("demo://open/later"));
  EXPECT_EQ("1\n", sending.out) << sending.err;
  EXPECT_TRUE(hasReceived(launcher, "demo://open/later")) << launcher.err();
}

TEST_F(LauncherWindow, QuittingThroughTheMenuEndsTheProcessWithZero) {
  static const char kQuitThroughMenu[] = R"sh(
    menu=$1; log=$2; shift 2
    "$@" > "$log" 2>&1 & launcher=$!
    "$menu" open Demo && "$menu" quit Demo && wait "$launcher"; status=$?
    echo "status $status"
    [ "$status" -eq 0 ] || tail -n 30 "$log" >&2
  )sh";
  test::Command script = stayingProgram();
  const test::TempFolder folder;
  script.arguments.insert(script.arguments.begin(),
                          {"/bin/bash", "-c", kQuitThroughMenu, "script",
                           QUORVANE_SOURCE "/scripts/app-menu", folder / "log"});
  script.seconds = 150;
  const test::Result result = test::run(script);
  EXPECT_EQ("status 0\n", result.out) << result.err;
}
