#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/files/file_operations.h"
#include "tests/support/capture.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

TEST(DoesFileExist, IsTrueForAReadableFileAndLogsIt) {
  const test::TempFolder folder;
  const std::string path = folder / "file";
  test::writeFile(path, "");
  EXPECT_EQ((Lines{"File exists: " + path}),
            test::logLinesOf([&] { EXPECT_TRUE(doesFileExist(path.c_str())); }));
}

TEST(DoesFileExist, IsTrueForAReadableFolder) {
  const test::TempFolder folder;
  test::capture([&] { EXPECT_TRUE(doesFileExist(folder.path().c_str())); });
}

TEST(DoesFileExist, IsFalseWithoutALogLineForAMissingFile) {
  EXPECT_EQ((Lines{}), test::logLinesOf([] { EXPECT_FALSE(doesFileExist("/absent")); }));
}

TEST(DoesDirExist, SaysYesWithoutLooking) {
  EXPECT_EQ((Lines{"Checking if /absent exists"}),
            test::logLinesOf([] { EXPECT_TRUE(doesDirExist("/absent")); }));
}

TEST(MakeDir, CreatesAFolderThatEverybodyMayUseWhateverTheMask) {
  const test::TempFolder folder;
  const std::string path = folder / "new";
  const mode_t mask = umask(077);
  EXPECT_EQ((Lines{"[ChMod] Executing chmod 777 \"" + path + "\""}),
            test::logLinesOf([&] { EXPECT_EQ(0, makeDir(path.c_str())); }));
  umask(mask);
  EXPECT_EQ(0777u, test::modeOf(path));
}

TEST(MakeDir, GivesZeroAndRunsNoChmodForAFolderThatExists) {
  const test::TempFolder folder;
  fs::permissions(folder.path(), fs::perms(0755));
  EXPECT_EQ((Lines{}), test::logLinesOf([&] { EXPECT_EQ(0, makeDir(folder.path().c_str())); }));
  EXPECT_EQ(0755u, test::modeOf(folder.path()));
}

TEST(MakeDir, TakesALinkToAFolderForAFolder) {
  const test::TempFolder folder;
  fs::create_directory(folder / "real");
  fs::create_symlink("real", folder / "link");
  EXPECT_EQ((Lines{}), test::logLinesOf([&] { EXPECT_EQ(0, makeDir((folder / "link").c_str())); }));
}

TEST(MakeDir, DoesNotCreateParentsButRunsItsChmod) {
  const test::TempFolder folder;
  const std::string path = folder / "absent/new";
  EXPECT_EQ((Lines{"[ChMod] Executing chmod 777 \"" + path + "\""}),
            test::logLinesOf([&] { EXPECT_EQ(-1, makeDir(path.c_str())); }));
  EXPECT_FALSE(test::exists(folder / "absent"));
}

TEST(MakeDir, FailsForAFileInTheWayAndOpensItsPermissions) {
  const test::TempFolder folder;
  test::writeFile(folder / "file", "kept", 0600);
  test::capture([&] { EXPECT_EQ(-1, makeDir((folder / "file").c_str())); });
  EXPECT_EQ("kept", test::readFile(folder / "file"));
  EXPECT_EQ(0777u, test::modeOf(folder / "file"));
}

TEST(MakeDir, FailsForADanglingLinkAndLeavesItsTarget) {
  const test::TempFolder folder;
  fs::create_symlink("nowhere", folder / "link");
  test::capture([&] { EXPECT_EQ(-1, makeDir((folder / "link").c_str())); });
  EXPECT_FALSE(test::exists(folder / "nowhere"));
}
