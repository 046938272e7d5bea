// What Java's window toolkits need of the process that hosts them: main() runs beside the first
// thread, and that one does what it is asked to.

#include <gtest/gtest.h>

#include "tests/blackbox/hosting/hosted_program.h"
#include "tests/support/files.h"

using Texts = std::vector<std::string>;

class MainThread : public testing::TestWithParam<Start> {};

INSTANTIATE_TEST_SUITE_P(In, MainThread, testing::ValuesIn(kAllStarts),
                         [](const auto& info) { return nameOf(info.param); });

TEST_P(MainThread, AnswersCallsWhileTheProgramRunsOnAnother) {
  HostedProgram program(GetParam(), "guest.Hosted");
  program.steps = {"library=" QUORVANE_MAIN_THREAD_LIBRARY, "thread", "call"};
  const test::Result result = test::run(program.command());
  EXPECT_EQ(0, result.status) << result.out << result.err;
  const Texts answers = answersIn(result.out);
  ASSERT_EQ(2u, answers.size()) << result.out << result.err;
  EXPECT_EQ("second thread", answers[0]);
  int milliseconds = -1;
  EXPECT_EQ(1, sscanf(answers[1].c_str(), "called back in %d ms", &milliseconds)) << answers[1];
  EXPECT_GE(milliseconds, 0);
  EXPECT_LT(milliseconds, 5000);
  EXPECT_NE(std::string::npos, result.out.find("[JNILauncher] Done!"));
}

class InstallersMainThread : public testing::TestWithParam<Start> {};

INSTANTIATE_TEST_SUITE_P(In, InstallersMainThread,
                         testing::Values(Start::FirstInstallation, Start::SilentInstallation),
                         [](const auto& info) { return nameOf(info.param); });

TEST_P(InstallersMainThread, GoesOnWhenTheProgramIsOver) {
  HostedProgram program(GetParam(), "guest.Hosted");
  const test::Result result = test::run(program.command());
  EXPECT_EQ(0, result.status);
  EXPECT_TRUE(test::containsInOrder(
      test::logLinesOf(result.out),
      {"[JNILauncher] Done!", "[Extractor] Return code for JNI launch was 0"}))
      << result.out << result.err;
}

TEST(HeldMainThread, OfASilentInstallationDoesNotKeepTheProcess) {
  HostedProgram program(Start::SilentInstallation, "guest.Hosted");
  program.steps = {"library=" QUORVANE_MAIN_THREAD_LIBRARY, "hold"};
  test::Command command = program.command();
  command.seconds = 120;
  const test::Result result = test::run(command);
  EXPECT_EQ(0, result.status);
  EXPECT_EQ(Texts{"holding"}, answersIn(result.out)) << result.out << result.err;
  EXPECT_TRUE(test::containsInOrder(
      test::logLinesOf(result.out),
      {"[JNILauncher] Done!", "[Extractor] Return code for JNI launch was 0"}))
      << result.out << result.err;
}

TEST_P(InstallersMainThread, GoesOnToAChildProcessWhenTheProgramCannotRun) {
  HostedProgram program(GetParam(), "guest.Nobody");
  const test::Result result = test::run(program.command());
  EXPECT_EQ(0, result.status);
  EXPECT_TRUE(
      test::containsInOrder(test::logLinesOf(result.out),
                            {"[JNILauncher] Searching for clazz failed!",
                             "[Extractor] JNI launch failed. Attempting legacy spawn instead",
                             "[Extractor] Attempting spawn launch"}))
      << result.out << result.err;
}
