// What the programs that this process starts do about SIGPIPE, which this process ignores.

#include "support/process/start_program.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <string>

#include "extractor/runtime/run_command.h"
#include "support/process/process_start.h"
#include "support/process/spawner.h"
#include "tests/support/capture.h"
#include "tests/support/files.h"
#include "tests/support/owned_text.h"
#include "tests/support/temp_folder.h"

namespace {

class ChildOfAProcessThatIgnoresSigpipe : public testing::Test {
 protected:
  void SetUp() override {
    beginProcess();
    ASSERT_TRUE(isIgnored(test::readFile("/proc/self/status")));
  }

  // Whether the text, the status of a process, has SIGPIPE among the ignored signals.
  static bool isIgnored(const std::string& status) {
    const size_t at = status.find("SigIgn:");
    EXPECT_NE(std::string::npos, at) << status;
    return at != std::string::npos &&
           (strtoull(status.c_str() + at + 7, nullptr, 16) >> (SIGPIPE - 1) & 1) != 0;
  }

  void expectDefaultInFile() const { EXPECT_FALSE(isIgnored(test::readFile(out_))); }

  test::TempFolder folder_;
  const std::string out_ = folder_ / "out";
  const std::string script_ = "cat /proc/self/status > '" + out_ + "'";
};

}  // namespace

TEST_F(ChildOfAProcessThatIgnoresSigpipe, StartedDirectlyHasTheDefault) {
  const char* const words[] = {"sh", "-c", script_.c_str(), nullptr};
  pid_t child = 0;
  ASSERT_EQ(0, startProgram(&child, "/bin/sh", const_cast<char* const*>(words)));
  EXPECT_EQ(0, waitForChild(child));
  expectDefaultInFile();
}

TEST_F(ChildOfAProcessThatIgnoresSigpipe, StartedByASpawnerHasTheDefault) {
  const OwnedSpawner spawner(createSpawner());
  for (const char* word : {"/bin/sh", "-c", script_.c_str()}) {
    addSpawnerArg(spawner.get(), word);
  }
  EXPECT_EQ(0, runSpawnerAndWait(spawner.get()));
  expectDefaultInFile();
}

TEST_F(ChildOfAProcessThatIgnoresSigpipe, StartedWithoutOutputHasTheDefault) {
  const char* const words[] = {"/bin/sh", "-c", script_.c_str(), nullptr};
  EXPECT_EQ(0, runQuietly(words));
  expectDefaultInFile();
}

TEST_F(ChildOfAProcessThatIgnoresSigpipe, StartedThroughTheShellHasTheDefault) {
  EXPECT_FALSE(isIgnored(test::takeText(runCommandGetOutput("cat /proc/self/status"))));
}

TEST_F(ChildOfAProcessThatIgnoresSigpipe, IsEndedByItWhenItsReaderIsGone) {
  EXPECT_EQ(std::to_string(128 + SIGPIPE),
            test::takeText(runCommandGetOutput(
                "bash -c 'yes | head -n 1 > /dev/null; echo ${PIPESTATUS[0]}'")));
}

TEST(RunCommandGetOutput, ReturnsWhatTheCommandPrintedWithoutTrailingBlanks) {
  EXPECT_EQ("one\ntwo", test::takeText(runCommandGetOutput("printf 'one\\ntwo  \\r\\n\\n'")));
}

TEST(RunCommandGetOutput, WorksWithoutAStandardInputAndOutput) {
  const test::Result result = test::runInChild([] {
    close(STDIN_FILENO);
    close(STDOUT_FILENO);
    _exit(test::takeText(runCommandGetOutput("echo said")) == "said" ? 0 : 1);
  });
  EXPECT_EQ(0, result.status) << result.err;
}

TEST(RunCommandGetOutput, LeavesNoDescriptorOpen) {
  const auto count = [] { return test::namesIn("/proc/self/fd").size(); };
  const size_t before = count();
  test::takeText(runCommandGetOutput("echo again"));
  EXPECT_EQ(before, count());
}
