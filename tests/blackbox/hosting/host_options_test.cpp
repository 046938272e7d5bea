// Options that are meant for the host, and what the host tells Java's window toolkit.

#include <gtest/gtest.h>

#include "tests/blackbox/hosting/hosted_program.h"

using Texts = std::vector<std::string>;

class HostOptionsOf : public testing::TestWithParam<Start> {
 protected:
  // Runs guest.Hosted on a host without a display.
  Texts answersWithoutDisplay(const Texts& options, const Texts& steps) {
    return answers(options, steps, [](test::Command* command) { command->unset = {"DISPLAY"}; });
  }

  Texts answers(const Texts& options, const Texts& steps,
                const std::function<void(test::Command*)>& change = {}) {
    HostedProgram program(GetParam(), "guest.Hosted");
    program.options = options;
    program.steps = steps;
    test::Command command = program.command();
    if (change) {
      change(&command);
    }
    result_ = test::run(command);
    EXPECT_EQ(0, result_.status) << result_.out << result_.err;
    return answersIn(result_.out);
  }

  // Whether the JVM was given an option that begins like that.
  bool jvmGot(const std::string& start) const {
    for (const std::string& line : test::messagesOf(result_.out)) {
      if (line.rfind("[JNILaunch] JNI Option ", 0) == 0 &&
          line.find("=" + start) != std::string::npos) {
        return true;
      }
    }
    return false;
  }

  bool isLauncher() const { return GetParam() == Start::Launcher; }

  test::Result result_;
};

INSTANTIATE_TEST_SUITE_P(In, HostOptionsOf, testing::Values(Start::Launcher, Start::QuickLaunch),
                         [](const auto& info) { return nameOf(info.param); });

// Such a program makes the application object itself: none of the host's is in its way.
TEST_P(HostOptionsOf, StartOnFirstThreadRunsJavaThereWithoutAWindowSystem) {
  EXPECT_EQ((Texts{"first thread", "JAVA_STARTED_ON_FIRST_THREAD_PID 1"}),
            answersWithoutDisplay({"-XstartOnFirstThread"},
                                  {"library=" QUORVANE_MAIN_THREAD_LIBRARY, "thread",
                                   "variable=JAVA_STARTED_ON_FIRST_THREAD_PID"}));
  EXPECT_TRUE(jvmGot("-Djava.class.path"));
  EXPECT_FALSE(jvmGot("-XstartOnFirstThread"));
}

TEST_P(HostOptionsOf, DockNameAndIconReachTheWindowToolkitAndNotTheJvm) {
  EXPECT_EQ((Texts{"APP_NAME_PID Größe 2", "APP_ICON_PID /opt/icon of.icns"}),
            answers({"-Xdock:name=first", "-Xdock:name=Größe 2", "-Xdock:icon=/opt/icon of.icns"},
                    {"variable=APP_NAME_PID", "variable=APP_ICON_PID"}));
  EXPECT_TRUE(jvmGot("-Djava.class.path"));
  EXPECT_FALSE(jvmGot("-Xdock:"));
}

TEST_P(HostOptionsOf, WithoutDockOptionsTheInstallerNamesItsApplicationAndTheLauncherNothing) {
  const Texts named = {"APP_NAME_PID " + std::string(kHostedName), "APP_ICON_PID is not set"};
  const Texts unnamed = {"APP_NAME_PID is not set", "APP_ICON_PID is not set"};
  EXPECT_EQ(isLauncher() ? unnamed : named,
            answers({}, {"variable=APP_NAME_PID", "variable=APP_ICON_PID"}));
}

TEST_P(HostOptionsOf, TheWindowToolkitIsToldToTakeTheApplicationsDelegate) {
  EXPECT_EQ((Texts{"AWT_OVERRIDE_NSDELEGATE 1"}),
            answers({}, {"variable=AWT_OVERRIDE_NSDELEGATE"}));
}

TEST_P(HostOptionsOf, AUsersOwnWordOnTheDelegateStays) {
  EXPECT_EQ((Texts{"AWT_OVERRIDE_NSDELEGATE 0"}),
            answers({}, {"variable=AWT_OVERRIDE_NSDELEGATE"}, [](test::Command* command) {
              command->environment["AWT_OVERRIDE_NSDELEGATE"] = "0";
            }));
}

TEST_P(HostOptionsOf, ANameThatIsNotUtf8DoesNoHarm) {
  EXPECT_EQ((Texts{"guest.property is not set"}),
            answers({"-Xdock:name=\xFF\xC3"}, {"property=guest.property"}));
}
