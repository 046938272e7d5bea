// What is on the screen while an installer is at work: the runtime that it installs looks, when it
// is run to write its class data.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/blackbox/installer/current_installation.h"
#include "tests/support/background.h"

namespace {

class Screen : public testing::Test {
 protected:
  // Runs a whole installation on a screen of its own; returns the windows that were seen.
  std::string windowsDuring(const std::vector<std::string>& words) {
    const std::string seen = installer_ / "windows";
    const test::OwnDisplay display;
    installer_.runtime = test::nestedRecord(
        "runtime", test::Installer::runtimeRecords() +
                       test::fileRecord("Contents/Home/bin/java",
                                        "#!/bin/sh\nxwininfo -display " + display.name() +
                                            " -root -tree > '" + seen + "'\n"));
    installer_.updater[2] = test::fileRecord(
        "nativesplash.png", test::readFile(QUORVANE_SOURCE "/examples/splash/nativesplash.png"));
    installer_.write();
    result_ = installer_.run(words, {{"DISPLAY", display.name()}}, true);
    EXPECT_TRUE(test::exists(seen)) << result_.out;
    return test::exists(seen) ? test::readFile(seen) : "";
  }

  test::Installer installer_;
  test::Result result_;
};

// The size of the picture, which the splash's window takes.
const char kSplashSize[] = "480x";

}  // namespace

TEST_F(Screen, ShowsTheSplashDuringAnInstallation) {
  EXPECT_NE(std::string::npos, windowsDuring({}).find(kSplashSize));
  EXPECT_EQ(0, result_.status);
}

TEST_F(Screen, ShowsNoSplashDuringASilentInstallation) {
  EXPECT_EQ(std::string::npos, windowsDuring({"-silent"}).find(kSplashSize));
  EXPECT_EQ(0, result_.status);
}

TEST_F(Screen, ShowsNoSplashDuringAnElevatedInstallation) {
  EXPECT_EQ(std::string::npos, windowsDuring({"--elevated"}).find(kSplashSize));
  EXPECT_EQ(0, result_.status);
}
