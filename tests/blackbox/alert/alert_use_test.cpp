// What an alert does beside being seen.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "tests/blackbox/alert/failing_installer.h"
#include "tests/support/files.h"
#include "tests/support/launcher_bundle.h"

using Texts = std::vector<std::string>;

using AlertUse = InstallerAlert;

// Puts a program "xdg-open" that writes down its words, one each line, before all others.
static void recordOpening(test::Command* command, const std::string& folder,
                          const std::string& record) {
  test::writeFile(folder + "/xdg-open",
                  "#!/bin/sh\nprintf '%s\\n' \"$@\" > '" + record + ".part'\nmv '" + record +
                      ".part' '" + record + "'\n",
                  0755);
  command->environment["PATH"] = folder + ":" + getenv("PATH");
}

static bool appears(const std::string& file) {
  for (int i = 0; i < 6000 && !test::exists(file); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return test::exists(file);
}

TEST_F(AlertUse, ShowLogOpensTheFolderOfTheLogAndKeepsTheStatus) {
  writeDamaged();
  test::Command recorded = command();
  recordOpening(&recorded, folder_.path(), folder_ / "opened");
  // The program outlives the installer, whose group is ended with it.
  recorded.until = nullptr;
  startByDesktop(recorded);
  waitForAlert();
  press("Show Log");
  ASSERT_TRUE(appears(folder_ / "opened"));
  EXPECT_EQ(installer_.master("logs") + "\n", test::readFile(folder_ / "opened"));
  EXPECT_EQ(1, finish().status);
}

TEST_F(AlertUse, OkOpensNothing) {
  writeDamaged();
  test::Command recorded = command();
  recordOpening(&recorded, folder_.path(), folder_ / "opened");
  startByDesktop(recorded);
  waitForAlert();
  press("OK");
  EXPECT_EQ(1, finish().status);
  EXPECT_FALSE(test::exists(folder_ / "opened"));
}

TEST_F(AlertUse, DoesNotKeepTheApplicationFromQuittingWithTheFailuresStatus) {
  writeDamaged();
  startByDesktop(command());
  waitForAlert();
  press("Quit");
  EXPECT_EQ(1, finish().status);
  EXPECT_EQ("no", test::readFile(folder_ / "prevents-quit"));
}

TEST_F(AlertUse, LetsOtherInstallersWork) {
  writeDamaged();
  startByDesktop(command());
  waitForAlert();
  const int lock = open(installer_.master("QVAppsSharedConfig/InstallLock").c_str(), O_RDONLY);
  ASSERT_GE(lock, 0);
  EXPECT_EQ(0, flock(lock, LOCK_EX | LOCK_NB));
  close(lock);
  press("OK");
  EXPECT_EQ(1, finish().status);
}

TEST_F(AlertUse, BeforeThereIsALogSaysNothingOfOne) {
  installer_.tailPlace = test::TailPlace::None;
  write();
  startByDesktop(command());
  const test::ShownAlert alert = waitForAlert();
  // The bundle names no application: the process's name takes its place.
  EXPECT_EQ("Setup cannot be opened because some of its own files are missing.", alert.message);
  EXPECT_EQ("Download it again, and open the new copy.", alert.advice);
  EXPECT_EQ((Texts{"OK"}), alert.buttons);
  press("OK");
  EXPECT_EQ(1, finish().status);
}

TEST_F(AlertUse, NamesTheBundleWhereTheApplicationIsNotKnownYet) {
  installer_.tailPlace = test::TailPlace::None;
  write();
  test::writeFile(installer_.resources() + "/../Info.plist",
                  "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
                  "<key>CFBundleName</key><string>Größe Installer</string></dict></plist>\n");
  startByDesktop(command());
  EXPECT_EQ("Größe Installer cannot be opened because some of its own files are missing.",
            waitForAlert().message);
  press("OK");
  EXPECT_EQ(1, finish().status);
}

TEST_F(AlertUse, CutsALongNameBetweenCharacters) {
  installer_.tail.appName = std::string(79, 'n') + "ö" + std::string(100, 'n');
  writeDamaged();
  startByDesktop(command());
  EXPECT_EQ(std::string(79, 'n') + "... was not installed because the installer is damaged.",
            waitForAlert().message);
  press("OK");
  EXPECT_EQ(1, finish().status);
}

TEST_F(AlertUse, ComesAfterBothAttemptsOfALaunchHaveFailedAndKeepsTheStatus) {
  write();
  test::Command failing = command();
  failing.environment["QUORVANE_FAKE_JVM"] = "class";
  failing.environment["FAKE_JAVA_STATUS"] = "1";
  startByDesktop(failing);
  EXPECT_EQ("Demo cannot be opened because its main program is missing.", waitForAlert().message);
  press("OK");
  EXPECT_EQ(0, finish().status);
}

TEST_F(AlertUse, OfTheLauncherWithoutAClassComesFromItsOtherThread) {
  test::LauncherBundle bundle;
  bundle.writeTailFile(test::Tail());
  bundle.installRuntime();
  putRecorderInto(bundle.executable(), "launcher");
  startByDesktop({{bundle.executable()}, bundle.home.environment()});
  const test::ShownAlert alert = waitForAlert();
  EXPECT_EQ("Demo cannot be opened because it was not told which program to run.", alert.message);
  EXPECT_EQ("main", alert.thread);
  press("OK");
  const test::Result result = finish();
  EXPECT_EQ(1, result.status);
  EXPECT_NE(std::string::npos, result.out.find("[ERROR] No class specified. Exiting...\n"));
}
