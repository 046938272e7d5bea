// quorvane-pack launchfile: the command as a packager runs it.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/blackbox/pack/transcript.h"
#include "tests/support/files.h"
#include "tests/support/format_examples.h"
#include "tests/support/temp_folder.h"

using namespace std::string_literals;

static const int kInputError = 1;
static const int kUsageError = 2;

class PackLaunchfile : public testing::Test {
 protected:
  test::Transcript pack(std::vector<std::string> words) const {
    words.insert(words.begin(), "launchfile");
    return test::runPack(words);
  }

  std::string text() const { return folder / "launch.toml"; }
  std::string file() const { return folder / "QuorvaneLaunch"; }

  test::TempFolder folder;
};

TEST_F(PackLaunchfile, WritesTheDocumentsExample) {
  test::writeFile(text(), test::formatBlock("toml", "launch-file"));
  pack({"write", text(), file()}).ends(0).prints("").reports("");
  EXPECT_EQ(test::formatBlock("hex", "launch-file"), test::hexDump(test::readFile(file())));
  EXPECT_EQ(0644u, test::modeOf(file()));
}

TEST_F(PackLaunchfile, ReadShowsWhatWriteTakes) {
  test::writeFile(text(), test::formatBlock("toml", "launch-file"));
  pack({"write", text(), file()}).ends(0);
  const std::string written = test::readFile(file());
  const test::Transcript shown = pack({"read", file()});
  shown.ends(0);
  test::writeFile(text(), shown.out);
  pack({"write", text(), file()}).ends(0);
  EXPECT_EQ(written, test::readFile(file()));
}

TEST_F(PackLaunchfile, NamesTheFileAndTheKeyThatIsWrong) {
  test::writeFile(text(), "class = 5\n");
  pack({"write", text(), file()})
      .ends(kInputError)
      .reports("quorvane-pack: " + text() + ": \"class\" must be a string\n");
  EXPECT_FALSE(test::exists(file()));
}

TEST_F(PackLaunchfile, LeavesAnOlderLaunchFileAloneWhenTheTextIsWrong) {
  test::writeFile(file(), "older");
  test::writeFile(text(), "version = 9\napp_name = 'A'\n");
  pack({"write", text(), file()}).ends(kInputError);
  EXPECT_EQ("older", test::readFile(file()));
}

TEST_F(PackLaunchfile, SaysWhatALaunchFileLacks) {
  test::writeFile(file(), "6\0Main\0"s);
  pack({"read", file()})
      .ends(kInputError)
      .reports("quorvane-pack: " + file() +
               ": the launch file is damaged at byte 7: it ends inside Class OnUpdate; it is "
               "truncated or not a launch file\n");
}

TEST_F(PackLaunchfile, SaysThatAFileIsMissing) {
  pack({"read", file()}).ends(kInputError);
  pack({"write", text(), file()}).ends(kInputError);
  pack({"read", folder.path()}).ends(kInputError);
}

TEST_F(PackLaunchfile, EndsAWrongCommandLineWithTheUsageStatus) {
  pack({}).ends(kUsageError);
  pack({"write", text()}).ends(kUsageError);
  pack({"read", file(), "--unknown"}).ends(kUsageError);
}
