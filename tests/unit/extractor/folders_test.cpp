#include "extractor/versions/folders.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#include <filesystem>
#include <fstream>
#include <string>

#include "extractor/installation/interrupted_runs.h"
#include "extractor/run/run.h"
#include "extractor/versions/copied_folder.h"
#include "extractor/versions/install_lock.h"
#include "platform/exchange_folders.h"
#include "support/files/file_operations.h"
#include "tests/support/capture.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

namespace fs = std::filesystem;
using test::writeFile;

namespace {

ExtractorRun foldersRun{};

class MasterFolder : public testing::Test {
 protected:
  MasterFolder() { setPath(foldersRun.masterFolder, folder_.path().c_str()); }

  std::string operator/(const std::string& name) const { return folder_ / name; }

  void moveInto(const std::string& from, const std::string& to) {
    char temp[PATH_BUFFER_SIZE];
    setPath(temp, from.c_str());
    test::capture([&] { moveIntoPlace(foldersRun.masterFolder, "application", temp, to.c_str()); });
  }

  test::TempFolder folder_;
};

using MoveIntoPlace = MasterFolder;
using TempFolders = MasterFolder;

}  // namespace

TEST_F(MoveIntoPlace, RenamesWhenNothingStandsThere) {
  writeFile(*this / "temp/a", "new");
  moveInto(*this / "temp", *this / "target");
  EXPECT_EQ("new", test::readFile(*this / "target/a"));
  EXPECT_FALSE(test::exists(*this / "temp"));
}

TEST_F(MoveIntoPlace, ReplacesAnExistingFolderAndKeepsWhatOnlyThatHolds) {
  writeFile(*this / "temp/a", "new");
  writeFile(*this / "target/a", "old");
  writeFile(*this / "target/.x", "old");
  moveInto(*this / "temp", *this / "target");
  EXPECT_EQ("new", test::readFile(*this / "target/a"));
  EXPECT_EQ("old", test::readFile(*this / "target/.x"));
  EXPECT_FALSE(test::exists(*this / "temp"));
}

TEST_F(MoveIntoPlace, EndsTheProcessWhenTheTemporaryFolderIsGone) {
  const test::Result result =
      test::runInChild([this] { moveInto(*this / "temp", *this / "target"); });
  EXPECT_EQ(1, result.status);
  EXPECT_FALSE(test::exists(*this / "target"));
}

TEST_F(MoveIntoPlace, LogsAReplacementAsTheRenameThatItIs) {
  writeFile(*this / "temp/a", "new");
  writeFile(*this / "target/a", "old");
  const std::string temp = *this / "temp";
  const std::string target = *this / "target";
  const auto lines = test::logLinesOf(
      [&] { moveIntoPlace(foldersRun.masterFolder, "application", temp.c_str(), target.c_str()); });
  EXPECT_TRUE(test::containsInOrder(
      lines, {"[Extractor] Replacing existing folder " + (*this / "target"),
              "[Rename] File '" + (*this / "temp") + "' renamed to '" + (*this / "target") + "'"}));
}

TEST_F(MoveIntoPlace, ExchangeIsOneStep) {
  writeFile(*this / "a/file", "a");
  writeFile(*this / "b/file", "b");
  ASSERT_TRUE(exchangeFolders((*this / "a").c_str(), (*this / "b").c_str()));
  EXPECT_EQ("b", test::readFile(*this / "a/file"));
  EXPECT_EQ("a", test::readFile(*this / "b/file"));
}

TEST_F(MoveIntoPlace, CopyGetsTheModesOfItsSource) {
  writeFile(*this / "temp/bin/java", "java", 0755);
  writeFile(*this / "target/bin/java", "java", 0644);
  EXPECT_TRUE(completeCopy((*this / "temp").c_str(), (*this / "target").c_str()));
  EXPECT_EQ(0755u, test::modeOf(*this / "target/bin/java"));
}

TEST_F(MoveIntoPlace, CopyThatIsCutShortOrMissesAFileIsIncomplete) {
  writeFile(*this / "temp/a", "12345");
  writeFile(*this / "target/a", "123");
  EXPECT_FALSE(completeCopy((*this / "temp").c_str(), (*this / "target").c_str()));
  writeFile(*this / "target/a", "12345");
  EXPECT_TRUE(completeCopy((*this / "temp").c_str(), (*this / "target").c_str()));
  writeFile(*this / "temp/b", "");
  EXPECT_FALSE(completeCopy((*this / "temp").c_str(), (*this / "target").c_str()));
}

TEST_F(MoveIntoPlace, CopyOfASourceThatCannotBeListedIsIncomplete) {
  fs::create_directories(*this / "target");
  EXPECT_FALSE(completeCopy((*this / "missing").c_str(), (*this / "target").c_str()));
}

TEST_F(TempFolders, GetANewNameWhenTheirsIsTaken) {
  char name[PATH_BUFFER_SIZE];
  nameTempFolder(foldersRun.masterFolder, name);
  const std::string first = name;
  fs::create_directories(first);
  writeFile(first + "/someone", "else");
  test::capture([&] { EXPECT_EQ(0, createTempFolder(foldersRun.masterFolder, name)); });
  EXPECT_NE(first, name);
  EXPECT_TRUE(fs::is_empty(name));
}

TEST_F(TempFolders, OfNoLivingProcessAreRemovedWithALogLine) {
  writeFile(*this / "QuorvaneTemp-1-2-app/.a", "x");
  const auto lines = test::logLinesOf([] { removeAbandonedTempFolders(foldersRun.masterFolder); });
  EXPECT_FALSE(test::exists(*this / "QuorvaneTemp-1-2-app"));
  EXPECT_TRUE(test::containsInOrder(
      lines, {"[Extractor] Removing old temporary folder " + (*this / "QuorvaneTemp-1-2-app")}));
}

TEST_F(TempFolders, OfALivingProcessStayUntilItDies) {
  int ready[2];
  ASSERT_EQ(0, pipe(ready));
  const pid_t child = fork();
  ASSERT_LE(0, child);
  if (child == 0) {
    char path[PATH_BUFFER_SIZE];
    setPath(path, (*this / "QuorvaneTemp-1-2-app").c_str());
    const int result = createTempFolder(foldersRun.masterFolder, path);
    const bool isWritten = write(ready[1], &result, sizeof result) == sizeof result;
    pause();
    _exit(isWritten ? 0 : 1);
  }
  int result = -1;
  EXPECT_EQ(static_cast<ssize_t>(sizeof result), read(ready[0], &result, sizeof result));
  EXPECT_EQ(0, result);
  test::capture([] { removeAbandonedTempFolders(foldersRun.masterFolder); });
  EXPECT_TRUE(test::exists(*this / "QuorvaneTemp-1-2-app"));
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  close(ready[0]);
  close(ready[1]);
  test::capture([] { removeAbandonedTempFolders(foldersRun.masterFolder); });
  EXPECT_FALSE(test::exists(*this / "QuorvaneTemp-1-2-app"));
}

TEST_F(TempFolders, AreAllThatIsRemoved) {
  writeFile(*this / "Quorvane-MyApp-1-complete/a", "x");
  writeFile(*this / "QuorvaneTemp-1-2-file", "x");
  test::capture([] { removeAbandonedTempFolders(foldersRun.masterFolder); });
  EXPECT_TRUE(test::exists(*this / "Quorvane-MyApp-1-complete/a"));
  EXPECT_TRUE(test::exists(*this / "QuorvaneTemp-1-2-file"));
}

TEST_F(TempFolders, LinkIsNotFollowedWhenRemoved) {
  writeFile(*this / "precious/file", "x");
  fs::create_directory_symlink(*this / "precious", *this / "QuorvaneTemp-1-2-app");
  test::capture([this] { removeTree((*this / "QuorvaneTemp-1-2-app").c_str()); });
  EXPECT_TRUE(test::exists(*this / "precious/file"));
}

TEST_F(MasterFolder, LockKeepsASecondInstallerWaitingUntilItIsReleased) {
  fs::create_directories(*this / "QVAppsSharedConfig");
  InstallLock first(foldersRun.masterFolder);
  ASSERT_TRUE(first.isHeld());
  const std::string path = folder_.path();
  const test::Result waiting =
      test::runInChild([&path] { const InstallLock second(path.c_str()); }, 1.0);
  EXPECT_TRUE(waiting.timedOut);
  EXPECT_TRUE(test::containsInOrder(test::logLinesOf(waiting.out),
                                    {"[Extractor] Another installer is at work, waiting for it"}));
  first.release();
  const test::Result free =
      test::runInChild([&path] { const InstallLock second(path.c_str()); }, 10.0);
  EXPECT_EQ(test::CODE_RETURNED, free.status);
  EXPECT_EQ("", free.out);
}

TEST_F(MasterFolder, LockIsNotWaitedForByWhoSaysSo) {
  fs::create_directories(*this / "QVAppsSharedConfig");
  const InstallLock first(foldersRun.masterFolder);
  const InstallLock second(foldersRun.masterFolder, InstallLock::Wait::Never);
  EXPECT_FALSE(second.isHeld());
  EXPECT_TRUE(second.isHeldByAnother());
}

TEST_F(MasterFolder, LockThatCannotBeCreatedIsNoLock) {
  const InstallLock lock((*this / "missing").c_str());
  EXPECT_FALSE(lock.isHeld());
}

TEST_F(MasterFolder, VersionFoldersAreComparedByTheirNames) {
  fs::create_directories(*this / "Quorvane-A-1-complete");
  const std::string before = versionFoldersIn(foldersRun.masterFolder);
  fs::create_directories(*this / "QuorvaneTemp-1-1-app");
  EXPECT_EQ(before, versionFoldersIn(foldersRun.masterFolder));
  fs::create_directories(*this / "Quorvane-A-2-complete");
  EXPECT_NE(before, versionFoldersIn(foldersRun.masterFolder));
}
