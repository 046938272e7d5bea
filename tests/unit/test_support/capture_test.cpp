#include "tests/support/capture.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "platform/process_end.h"
#include "support/log/logging.h"

using Lines = std::vector<std::string>;

TEST(Capture, TakesBothStreamsAndGivesThemBackAfterwards) {
  const test::Captured captured = test::capture([] {
    printf("one\n");
    fprintf(stderr, "two\n");
  });
  EXPECT_EQ("one\n", captured.out);
  EXPECT_EQ("two\n", captured.err);
  EXPECT_EQ("three\n", test::capture([] { printf("three\n"); }).out);
}

TEST(Capture, TakesWhatAChildProcessWrites) {
  EXPECT_EQ("child\n", test::capture([] { EXPECT_EQ(0, system("echo child")); }).out);
}

TEST(Capture, GivesLogLinesWithoutTheirElapsedTime) {
  EXPECT_EQ((Lines{"[Utils] a", "[Utils] b"}), test::logLinesOf([] {
              logMessage("[Utils] a\n");
              logMessage("[Utils] b\n");
            }));
}

TEST(RunInChild, ReportsTheStatusAndOutputOfCodeThatEndsItsProcess) {
  const test::Result result = test::runInChild([] {
    printf("last words");
    endProcess(101);
  });
  EXPECT_EQ(101, result.status);
  EXPECT_EQ("last words", result.out);
}

TEST(RunInChild, ReportsThatTheCodeReturned) {
  EXPECT_EQ(test::CODE_RETURNED, test::runInChild([] {}).status);
}

TEST(RunInChild, ReportsTheSignalThatEndedTheChild) {
  EXPECT_EQ(SIGABRT, test::runInChild([] { abort(); }).signal);
}

TEST(RunInChild, KillsAChildThatDoesNotEnd) {
  EXPECT_TRUE(test::runInChild([] { pause(); }, 0.2).timedOut);
}
