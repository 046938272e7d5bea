#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "support/files/file_operations.h"
#include "support/files/move_item.h"
#include "tests/support/capture.h"
#include "tests/support/fake_clock.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

// The number of rename() calls that fail before one is carried out, and what they fail with: the
// next of the errors, or, where there are none left, one and the same.
static int failingRenames = 0;
static int renameError = 0;
static std::vector<int> nextErrors;

// Takes the place of the C library's function in this executable.
extern "C" int rename(const char* from, const char* to) {
  if (failingRenames > 0) {
    --failingRenames;
    errno = renameError;
    if (!nextErrors.empty()) {
      errno = nextErrors.front();
      nextErrors.erase(nextErrors.begin());
    }
    return -1;
  }
  return renameat(AT_FDCWD, from, AT_FDCWD, to);
}

namespace {

// The file manager's first use waits for a file that all programs of the user share, and its
// waiting would count. Returns the time at which the tests begin.
int64_t startAfterTheFirstUse() {
  static_cast<void>(moveItem("/nonexistent/from", "/nonexistent/to"));
  return 1457000000000;
}

class DoRename : public testing::Test {
 protected:
  DoRename() : clock_(startAfterTheFirstUse()) {
    test::writeFile(from() + "/file", "bytes");
    workingFolder_ = "[Extractor] Working dir is '" + fs::current_path().string() + "'";
  }
  ~DoRename() override {
    failingRenames = 0;
    nextErrors.clear();
  }

  std::string from() const { return folder_ / "from"; }
  std::string to() const { return folder_ / "to"; }
  std::string names() const { return "'" + from() + "' to '" + to() + "'"; }
  std::string renamed() const { return "[Rename] File '" + from() + "' renamed to '" + to() + "'"; }
  std::string couldNot(int error) const {
    return "[Rename] Could not rename " + names() + " [" + std::to_string(error) + "]";
  }
  test::Captured rename() {
    return test::capture([&] { doRename(from().c_str(), to().c_str()); });
  }

  test::TempFolder folder_;
  test::FakeClock clock_;
  std::string workingFolder_;
};

}  // namespace

TEST_F(DoRename, LogsTheWorkingFolderAndARenameThatWorksAtOnce) {
  EXPECT_EQ((Lines{workingFolder_, renamed()}), rename().lines());
  EXPECT_EQ("bytes", test::readFile(to() + "/file"));
  EXPECT_FALSE(test::exists(from()));
  EXPECT_EQ(0, clock_.sleptMilliseconds());
}

TEST_F(DoRename, ReplacesAnEmptyFolder) {
  fs::create_directory(to());
  EXPECT_EQ((Lines{workingFolder_, renamed()}), rename().lines());
  EXPECT_EQ("bytes", test::readFile(to() + "/file"));
}

TEST_F(DoRename, AsksTheFileManagerWhenTheFirstRenameFails) {
  failingRenames = 1;
  renameError = EBUSY;
  EXPECT_EQ((Lines{workingFolder_, couldNot(EBUSY), "[Rename] OSX Rename worked.", renamed()}),
            rename().lines());
  EXPECT_EQ("bytes", test::readFile(to() + "/file"));
  EXPECT_FALSE(test::exists(from()));
  EXPECT_EQ(0, clock_.sleptMilliseconds());
}

TEST_F(DoRename, RenamesAgainAfterAPauseWhenTheFileManagerFailsToo) {
  failingRenames = 2;
  renameError = EBUSY;
  const test::Captured captured = rename();
  EXPECT_EQ((Lines{workingFolder_, couldNot(EBUSY), renamed()}), captured.lines());
  EXPECT_NE(std::string::npos, captured.err.find("[Rename] Unable to move item: "));
  EXPECT_EQ("bytes", test::readFile(to() + "/file"));
  EXPECT_EQ(300, clock_.sleptMilliseconds());
}

TEST_F(DoRename, LogsTheErrorOfTheLatestRenameAndNotOfTheFileManagers) {
  // The file manager makes every other of these calls.
  nextErrors = {EBUSY, EPERM, EACCES, EPERM, EIO, EPERM};
  failingRenames = 6;
  EXPECT_EQ((Lines{workingFolder_, couldNot(EBUSY), couldNot(EACCES), couldNot(EIO), renamed()}),
            rename().lines());
}

TEST_F(DoRename, LogsTheErrorOfTheVeryLastRenameBeforeTheCopy) {
  for (int error = 101; error <= 111; ++error) {
    nextErrors.insert(nextErrors.end(), {error, EPERM});
  }
  failingRenames = 21;
  const Lines lines = rename().lines();
  for (int error = 101; error <= 110; ++error) {
    EXPECT_TRUE(test::containsInOrder(lines, {couldNot(error)})) << error;
  }
  EXPECT_TRUE(
      test::containsInOrder(lines, {"[Rename] [FAIL] Could not rename " + names() + " [111]"}));
}

TEST_F(DoRename, MergesACopyIntoAFolderThatIsNotEmptyAfterTenRounds) {
  test::writeFile(to() + "/old", "old");
  const test::Captured captured = rename();
  Lines wanted{workingFolder_};
  wanted.insert(wanted.end(), 10, couldNot(ENOTEMPTY));
  const Lines end{
      "[Rename] [FAIL] Could not rename " + names() + " [" + std::to_string(ENOTEMPTY) + "]",
      "[Rename] Can do no better than a copy on this filesystem", "[Rename] Created folder " + to(),
      "[CopyFolder] Copying FILE " + to() + "/file", "[Rename] Copied " + from() + " to " + to()};
  wanted.insert(wanted.end(), end.begin(), end.end());
  EXPECT_EQ(wanted, captured.lines());
  EXPECT_EQ((Lines{"file", "old"}), test::namesIn(to()));
  EXPECT_EQ("bytes", test::readFile(from() + "/file")) << "the source has to stay";
  EXPECT_EQ(3000, clock_.sleptMilliseconds());
}

TEST_F(DoRename, SaysSoWhenTheCopyFailsToo) {
  test::writeFile(to(), "a file in the way");
  const Lines lines = rename().lines();
  EXPECT_EQ("[Rename] Copy failed too! Severe filesystem issues.", lines.back());
  EXPECT_EQ("a file in the way", test::readFile(to()));
}

TEST_F(DoRename, SaysSoWhenTheSourceIsMissing) {
  fs::remove_all(from());
  const Lines lines = rename().lines();
  EXPECT_TRUE(test::containsInOrder(
      lines,
      {couldNot(ENOENT),
       "[Rename] [FAIL] Could not rename " + names() + " [" + std::to_string(ENOENT) + "]",
       "[Rename] Created folder " + to(), "[CopyFolder] SourceDir from '" + from() + "' is NULL",
       "[Rename] Copy failed too! Severe filesystem issues."}));
}

TEST_F(DoRename, WithoutTheCopyLeavesBothWhereTenRoundsFail) {
  test::writeFile(to() + "/old", "old");
  Lines wanted{workingFolder_};
  wanted.insert(wanted.end(), 10, couldNot(ENOTEMPTY));
  EXPECT_EQ(wanted,
            test::logLinesOf([this] { EXPECT_FALSE(renameFolder(from().c_str(), to().c_str())); }));
  EXPECT_EQ("bytes", test::readFile(from() + "/file"));
  EXPECT_EQ(Lines{"old"}, test::namesIn(to()));
}

TEST_F(DoRename, WithoutTheCopyMovesAsWell) {
  EXPECT_EQ((Lines{workingFolder_, renamed()}),
            test::logLinesOf([this] { EXPECT_TRUE(renameFolder(from().c_str(), to().c_str())); }));
  EXPECT_EQ("bytes", test::readFile(to() + "/file"));
}

static bool move(const std::string& from, const std::string& to) {
  bool moved = false;
  test::capture([&] { moved = moveItem(from.c_str(), to.c_str()); });
  return moved;
}

TEST(MoveItem, MovesAFolderWithAllItHolds) {
  const test::TempFolder folder;
  test::writeFile(folder / "from/sub/file", "bytes");
  EXPECT_TRUE(move(folder / "from", folder / "to"));
  EXPECT_EQ("bytes", test::readFile(folder / "to/sub/file"));
  EXPECT_FALSE(test::exists(folder / "from"));
}

TEST(MoveItem, RefusesATargetThatExistsAndLeavesBoth) {
  const test::TempFolder folder;
  test::writeFile(folder / "from/file", "from");
  test::writeFile(folder / "to/file", "to");
  EXPECT_FALSE(move(folder / "from", folder / "to"));
  EXPECT_EQ("from", test::readFile(folder / "from/file"));
  EXPECT_EQ("to", test::readFile(folder / "to/file"));
}

TEST(MoveItem, WritesAFailureToTheSystemLogOnly) {
  const test::TempFolder folder;
  const test::Captured captured = test::capture(
      [&] { EXPECT_FALSE(moveItem((folder / "absent").c_str(), (folder / "to").c_str())); });
  EXPECT_EQ("", captured.out);
  EXPECT_NE(std::string::npos, captured.err.find("[Rename] Unable to move item: "));
}

TEST(MoveItem, TakesNamesWithBlanksQuotesAndUtf8) {
  const test::TempFolder folder;
  const std::string to = folder / "to \"x\" $HOME \xC3\xA4\xE6\x97\xA5";
  test::writeFile(folder / "from/file", "bytes");
  EXPECT_TRUE(move(folder / "from", to));
  EXPECT_EQ("bytes", test::readFile(to + "/file"));
}

TEST(MoveItem, MovesOrKeepsWhatHasANameThatIsNotUtf8) {
  const test::TempFolder folder;
  test::writeFile(folder / "\xFF\xFE/file", "bytes");
  if (move(folder / "\xFF\xFE", folder / "to")) {
    EXPECT_EQ("bytes", test::readFile(folder / "to/file"));
  } else {
    EXPECT_EQ("bytes", test::readFile(folder / "\xFF\xFE/file"));
  }
}

TEST(MoveItem, SurvivesAPathThatIsTooLong) {
  const test::TempFolder folder;
  test::writeFile(folder / "from/file", "bytes");
  EXPECT_FALSE(move(folder / "from", folder / std::string(6000, 'x')));
  EXPECT_EQ("bytes", test::readFile(folder / "from/file"));
}
