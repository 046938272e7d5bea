#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "support/file_operations.h"
#include "tests/support/capture.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

TEST(DeleteFolder, GivesOneAndLogsANullForAMissingFolder) {
  EXPECT_EQ((Lines{"[DeleteFolder] Deleting from '/absent' is NULL"}),
            test::logLinesOf([] { EXPECT_EQ(1, deleteFolder("/absent")); }));
}

TEST(DeleteFolder, GivesOneForAFileAndLeavesIt) {
  const test::TempFolder folder;
  test::writeFile(folder / "file", "kept");
  test::capture([&] { EXPECT_EQ(1, deleteFolder((folder / "file").c_str())); });
  EXPECT_EQ("kept", test::readFile(folder / "file"));
}

TEST(DeleteFolder, GivesZeroForAnEmptyFolderAndLeavesIt) {
  const test::TempFolder folder;
  EXPECT_EQ((Lines{}),
            test::logLinesOf([&] { EXPECT_EQ(0, deleteFolder(folder.path().c_str())); }));
  EXPECT_TRUE(test::exists(folder.path()));
}

TEST(DeleteFolder, DeletesFilesAndFoldersBelowAndLogsEach) {
  const test::TempFolder folder;
  test::writeFile(folder / "sub/file", "");
  EXPECT_EQ((Lines{"Deleting DIR " + (folder / "sub"), "Deleting FILE " + (folder / "sub/file")}),
            test::logLinesOf([&] { EXPECT_EQ(0, deleteFolder(folder.path().c_str())); }));
  EXPECT_EQ((Lines{}), test::namesIn(folder.path()));
}

TEST(DeleteFolder, LeavesTwoCharacterDotNamesAndDeletesLongerOnes) {
  const test::TempFolder folder;
  test::writeFile(folder / ".a", "");
  test::writeFile(folder / ".DS_Store", "");
  test::writeFile(folder / ".ab", "");
  test::writeFile(folder / "..b", "");
  test::capture([&] { EXPECT_EQ(0, deleteFolder(folder.path().c_str())); });
  EXPECT_EQ((Lines{".a"}), test::namesIn(folder.path()));
}

TEST(DeleteFolder, LeavesAFolderThatStillHoldsATwoCharacterDotName) {
  const test::TempFolder folder;
  test::writeFile(folder / "sub/.a", "");
  test::writeFile(folder / "sub/b", "");
  test::capture([&] { EXPECT_EQ(0, deleteFolder(folder.path().c_str())); });
  EXPECT_EQ((Lines{".a"}), test::namesIn(folder / "sub"));
}

TEST(DeleteFolder, RemovesALinkAndLeavesWhatItLeadsTo) {
  const test::TempFolder folder;
  test::writeFile(folder / "outside/file", "kept");
  fs::create_directory(folder / "tree");
  fs::create_symlink(folder / "outside", folder / "tree/link");
  EXPECT_EQ((Lines{"Deleting FILE " + (folder / "tree/link")}),
            test::logLinesOf([&] { EXPECT_EQ(0, deleteFolder((folder / "tree").c_str())); }));
  EXPECT_EQ((Lines{}), test::namesIn(folder / "tree"));
  EXPECT_EQ("kept", test::readFile(folder / "outside/file"));
}

TEST(DeleteFolder, EmptiesTheFolderThatALinkItIsGivenLeadsTo) {
  const test::TempFolder folder;
  test::writeFile(folder / "real/file", "");
  fs::create_symlink("real", folder / "link");
  test::capture([&] { EXPECT_EQ(0, deleteFolder((folder / "link").c_str())); });
  EXPECT_EQ((Lines{}), test::namesIn(folder / "real"));
  EXPECT_TRUE(test::exists(folder / "link"));
}

TEST(DeleteFolder, GoesOnAfterAFailureAndLogsIt) {
  const test::TempFolder folder;
  const std::string path = folder.path();
  // A path that has become too long for the operating system cannot be removed by it.
  std::string deep = path;
  const std::string name(250, 'd');
  const test::Result result = test::runInChild([&] {
    bool inside = chdir(path.c_str()) == 0;
    for (int depth = 0; depth < 20; ++depth) {
      inside = inside && mkdir(name.c_str(), 0777) == 0 && chdir(name.c_str()) == 0;
    }
  });
  ASSERT_EQ(test::CODE_RETURNED, result.status);
  test::writeFile(folder / "file", "");
  const Lines lines = test::logLinesOf([&] { EXPECT_EQ(0, deleteFolder(path.c_str())); });
  EXPECT_EQ((Lines{name}), test::namesIn(path));
  EXPECT_TRUE(std::any_of(lines.begin(), lines.end(), [](const std::string& line) {
    return line.rfind("Failed to delete file ", 0) == 0;
  }));
}

TEST(DeleteFolder, ReachesTheBottomOfATreeThatIsDeeperThanOpenFilesAreAllowed) {
  const test::TempFolder folder;
  test::writeFile(test::makeDeepFolder(folder.path(), 100) + "/file", "");
  const test::Result result = test::runInChild([&] {
    test::allowOpenFiles(32);
    deleteFolder(folder.path().c_str());
  });
  EXPECT_EQ(test::CODE_RETURNED, result.status);
  EXPECT_EQ((Lines{}), test::namesIn(folder.path()));
}
