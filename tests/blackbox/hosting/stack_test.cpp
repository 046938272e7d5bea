// The stack of Java's main thread, where the system gives a second thread half a megabyte.

#include <gtest/gtest.h>
#include <sys/resource.h>

#include "tests/blackbox/hosting/hosted_program.h"

static void allowSmallStacks() {
  rlimit limit{};
  getrlimit(RLIMIT_STACK, &limit);
  limit.rlim_cur = 512 << 10;
  setrlimit(RLIMIT_STACK, &limit);
}

// The depth that a run has printed, or -1.
static int depthIn(const test::Result& result) {
  int depth = -1;
  for (const std::string& answer : answersIn(result.out)) {
    sscanf(answer.c_str(), "depth %d", &depth);
  }
  EXPECT_GT(depth, 0) << result.out << result.err;
  return depth;
}

static int depthUnderJava(const std::vector<std::string>& options) {
  test::Command command;
  command.arguments = {QUORVANE_TEST_RUNTIME "/bin/java"};
  command.arguments.insert(command.arguments.end(), options.begin(), options.end());
  command.arguments.insert(command.arguments.end(),
                           {"-cp", QUORVANE_TEST_CLASSES, "guest.Hosted", "depth"});
  command.prepare = allowSmallStacks;
  return depthIn(test::run(command));
}

static int depthIn(Start start, const std::vector<std::string>& options) {
  HostedProgram program(start, "guest.Hosted");
  program.options = options;
  program.steps = {"depth"};
  test::Command command = program.command();
  command.prepare = allowSmallStacks;
  return depthIn(test::run(command));
}

class Stack : public testing::TestWithParam<Start> {};

INSTANTIATE_TEST_SUITE_P(In, Stack, testing::ValuesIn(kAllStarts),
                         [](const auto& info) { return nameOf(info.param); });

// Compiled code would take less room than interpreted code, from a time on that differs.
TEST_P(Stack, IsAsDeepAsUnderJava) {
  EXPECT_GE(depthIn(GetParam(), {"-Xint"}), 0.9 * depthUnderJava({"-Xint"}));
}

TEST_P(Stack, IsAsDeepAsUnderJavaWithAnOptionForIt) {
  const std::vector<std::string> options = {"-Xint", "-Xss2m", "-Xss64M"};
  EXPECT_GE(depthIn(GetParam(), options), 0.9 * depthUnderJava(options));
}
