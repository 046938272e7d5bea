#include <gtest/gtest.h>

#include <string>

#include "support/files/file_operations.h"
#include "support/files/folder_walk.h"
#include "support/files/paths.h"
#include "tests/support/capture.h"
#include "tests/support/fake_clock.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

TEST(MakeAppFolder, NamesTheFolderOfAnInstalledVersion) {
  char path[PATH_BUFFER_SIZE];
  EXPECT_EQ(path, makeAppFolder(path, "/base", "MyApp", "1234567"));
  EXPECT_STREQ("/base/Quorvane-MyApp-1234567-complete", path);
}

TEST(MakeAppFolder, AddsNoSecondSlashToTheBase) {
  char path[PATH_BUFFER_SIZE];
  EXPECT_STREQ("/base/Quorvane-a-1-complete", makeAppFolder(path, "/base/", "a", "1"));
}

TEST(MakeAppFolder, GivesAnUnusablePathForANameThatDoesNotFit) {
  char path[PATH_BUFFER_SIZE];
  test::capture([&] { makeAppFolder(path, "/base", std::string(5000, 'x').c_str(), "1"); });
  EXPECT_EQ(0u, std::string(path).find(UNUSABLE_PATH));
}

TEST(MakeAppTempFolder, NamesTheSecondsAndTheNumberOfEntriesWithDotAndDotDot) {
  const test::FakeClock clock(1457000000999);
  const test::TempFolder folder;
  for (int i = 0; i < 10; ++i) {
    test::writeFile(folder / std::to_string(i), "");
  }
  char path[PATH_BUFFER_SIZE];
  EXPECT_EQ(path, makeAppTempFolder(path, folder.path().c_str(), "unused", "unused"));
  EXPECT_EQ(folder / "QuorvaneTemp-1457000000-12-app", path);
  EXPECT_FALSE(test::exists(path));
}

TEST(MakeAppTempFolder, CountsTwoCharacterDotNamesToo) {
  const test::FakeClock clock(1457000000000);
  const test::TempFolder folder;
  test::writeFile(folder / ".a", "");
  char path[PATH_BUFFER_SIZE];
  EXPECT_EQ(folder / "QuorvaneTemp-1457000000-3-app",
            makeAppTempFolder(path, folder.path().c_str()));
}

TEST(MakeAppTempFolder, CountsZeroEntriesInABaseThatCannotBeOpened) {
  const test::FakeClock clock(1457000000000);
  char path[PATH_BUFFER_SIZE];
  EXPECT_STREQ("/absent/QuorvaneTemp-1457000000-0-app", makeAppTempFolder(path, "/absent"));
}
