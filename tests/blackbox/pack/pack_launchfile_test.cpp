// quorvane-pack launchfile: the command as a packager runs it.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/files.h"
#include "tests/support/format_examples.h"
#include "tests/support/process.h"
#include "tests/support/temp_folder.h"

using namespace std::string_literals;

static const int kInputError = 1;
static const int kUsageError = 2;

class PackLaunchfile : public testing::Test {
 protected:
  test::Result pack(const std::vector<std::string>& words) const {
    test::Command command;
    command.arguments = {QUORVANE_BIN "/quorvane-pack", "launchfile"};
    command.arguments.insert(command.arguments.end(), words.begin(), words.end());
    return test::run(command);
  }

  std::string text() const { return folder / "launch.toml"; }
  std::string file() const { return folder / "QuorvaneLaunch"; }

  test::TempFolder folder;
};

TEST_F(PackLaunchfile, WritesTheDocumentsExample) {
  test::writeFile(text(), test::formatBlock("toml", "launch-file"));
  const test::Result result = pack({"write", text(), file()});
  EXPECT_EQ(0, result.status) << result.err;
  EXPECT_EQ("", result.out + result.err);
  EXPECT_EQ(test::formatBlock("hex", "launch-file"), test::hexDump(test::readFile(file())));
  EXPECT_EQ(0644u, test::modeOf(file()));
}

TEST_F(PackLaunchfile, ReadShowsWhatWriteTakes) {
  test::writeFile(text(), test::formatBlock("toml", "launch-file"));
  EXPECT_EQ(0, pack({"write", text(), file()}).status);
  const std::string written = test::readFile(file());
  const test::Result shown = pack({"read", file()});
  EXPECT_EQ(0, shown.status) << shown.err;
  test::writeFile(text(), shown.out);
  EXPECT_EQ(0, pack({"write", text(), file()}).status);
  EXPECT_EQ(written, test::readFile(file()));
}

TEST_F(PackLaunchfile, NamesTheFileAndTheKeyThatIsWrong) {
  test::writeFile(text(), "class = 5\n");
  const test::Result result = pack({"write", text(), file()});
  EXPECT_EQ(kInputError, result.status);
  EXPECT_EQ("quorvane-pack: " + text() + ": \"class\" must be a string\n", result.err);
  EXPECT_FALSE(test::exists(file()));
}

TEST_F(PackLaunchfile, LeavesAnOlderLaunchFileAloneWhenTheTextIsWrong) {
  test::writeFile(file(), "older");
  test::writeFile(text(), "version = 9\napp_name = 'A'\n");
  EXPECT_EQ(kInputError, pack({"write", text(), file()}).status);
  EXPECT_EQ("older", test::readFile(file()));
}

TEST_F(PackLaunchfile, SaysWhatALaunchFileLacks) {
  test::writeFile(file(), "6\0Main\0"s);
  const test::Result result = pack({"read", file()});
  EXPECT_EQ(kInputError, result.status);
  EXPECT_EQ("quorvane-pack: " + file() +
                ": the launch file is damaged at byte 7: it ends inside Class OnUpdate; it is "
                "truncated or not a launch file\n",
            result.err);
}

TEST_F(PackLaunchfile, SaysThatAFileIsMissing) {
  EXPECT_EQ(kInputError, pack({"read", file()}).status);
  EXPECT_EQ(kInputError, pack({"write", text(), file()}).status);
  EXPECT_EQ(kInputError, pack({"read", folder.path()}).status);
}

TEST_F(PackLaunchfile, EndsAWrongCommandLineWithTheUsageStatus) {
  EXPECT_EQ(kUsageError, pack({}).status);
  EXPECT_EQ(kUsageError, pack({"write", text()}).status);
  EXPECT_EQ(kUsageError, pack({"read", file(), "--unknown"}).status);
}
