// Where a failure shows nothing: it ends the process as it always did.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/blackbox/alert/failing_installer.h"
#include "tests/support/files.h"

namespace fs = std::filesystem;

namespace {

class NoAlert : public InstallerAlert {
 protected:
  // The process ends by itself with the status, and no alert was shown.
  test::Result expectNone(int status) {
    const test::Result result = finish();
    EXPECT_FALSE(result.timedOut);
    EXPECT_EQ(status, result.status) << result.out << result.err;
    EXPECT_FALSE(wasAlertShown());
    return result;
  }
};

}  // namespace

TEST_F(NoAlert, IsShownToAStartFromATerminal) {
  writeDamaged();
  startOnScreen(command());
  expectNone(1);
}

TEST_F(NoAlert, IsShownByASilentRun) {
  writeDamaged();
  startByDesktop(command({"-silent"}));
  expectNone(1);
}

TEST_F(NoAlert, IsShownByARunWithoutUi) {
  installer_.properties = {{"show_no_ui", "true"}};
  writeDamaged();
  startByDesktop(command());
  expectNone(1);
}

TEST_F(NoAlert, IsShownByAnElevatedRun) {
  writeDamaged();
  startByDesktop(command({"--elevated"}));
  expectNone(1);
}

TEST_F(NoAlert, IsShownByARunWithWordsThatFailsBeforeItsSilenceIsKnown) {
  installer_.tailPlace = test::TailPlace::None;
  write();
  startByDesktop(command({"-silent"}));
  expectNone(1);
}

TEST_F(NoAlert, IsShownAfterSuccess) {
  write();
  startByDesktop(command());
  expectNone(0);
  EXPECT_TRUE(installer_.launched());
}

TEST_F(NoAlert, IsShownWithoutAWindowSystem) {
  writeDamaged();
  test::Command withoutDisplay = command();
  withoutDisplay.unset = {"DISPLAY"};
  startByDesktop(withoutDisplay);
  expectNone(1);
}

TEST_F(NoAlert, IsShownWhereTheSecondAttemptOfALaunchWorks) {
  write();
  test::Command failing = command();
  failing.environment["QUORVANE_FAKE_JVM"] = "class";
  startByDesktop(failing);
  expectNone(0);
  EXPECT_TRUE(test::exists(installer_.javaReport()));
}

// The same log, but for the time, the process and the paths that differ from run to run.
TEST_F(NoAlert, ChangesTheLogOfAFailure) {
  writeDamaged();
  startOnScreen(command());
  const std::vector<std::string> terminal = test::logLinesOf(expectNone(1).out);
  fs::remove_all(installer_.home / "Library");
  startByDesktop(command());
  waitForAlert();
  press("OK");
  const std::vector<std::string> desktop = test::logLinesOf(finish().out);
  ASSERT_EQ(terminal.size(), desktop.size());
  for (size_t i = 0; i < terminal.size(); ++i) {
    // Time stamps and process numbers have digits of their own.
    const std::string digits = "0123456789";
    EXPECT_EQ(terminal[i].substr(0, terminal[i].find_first_of(digits)),
              desktop[i].substr(0, desktop[i].find_first_of(digits)));
  }
}
