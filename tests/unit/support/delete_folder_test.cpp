#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "support/files/file_operations.h"
#include "support/files/folder_walk.h"
#include "support/files/held_folder.h"
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

TEST(DeleteFolder, DoesNotFollowALinkThatItIsGiven) {
  const test::TempFolder folder;
  test::writeFile(folder / "real/file", "kept");
  fs::create_symlink("real", folder / "link");
  for (const std::string& path : {folder / "link", folder / "link/"}) {
    EXPECT_EQ((Lines{"[DeleteFolder] Deleting from '" + path + "' is NULL"}),
              test::logLinesOf([&] { EXPECT_EQ(1, deleteFolder(path.c_str())); }));
  }
  EXPECT_EQ("kept", test::readFile(folder / "real/file"));
}

TEST(DeleteFolder, GoesThroughALinkFurtherUp) {
  const test::TempFolder folder;
  test::writeFile(folder / "real/tree/file", "");
  fs::create_symlink("real", folder / "link");
  test::capture([&] { EXPECT_EQ(0, deleteFolder((folder / "link/tree").c_str())); });
  EXPECT_EQ((Lines{}), test::namesIn(folder / "real/tree"));
}

TEST(DeleteFolder, DeletesATreeWhosePathsAreLongerThanTheSystemTakes) {
  const test::TempFolder folder;
  const std::string path = folder.path();
  const std::string name(250, 'd');
  const test::Result result = test::runInChild([&] {
    bool inside = chdir(path.c_str()) == 0;
    for (int depth = 0; depth < 40; ++depth) {
      inside = inside && mkdir(name.c_str(), 0777) == 0 && chdir(name.c_str()) == 0;
    }
    if (!inside) {
      _exit(1);
    }
  });
  ASSERT_EQ(test::CODE_RETURNED, result.status);
  const Lines lines = test::logLinesOf([&] { EXPECT_EQ(0, deleteFolder(path.c_str())); });
  EXPECT_EQ((Lines{}), test::namesIn(path));
  EXPECT_EQ(40u, lines.size());
  EXPECT_EQ("Deleting DIR " + path + "/.../" + name, lines.back());
}

TEST(DeleteFolder, NeedsNeitherStackNorDescriptorsForEachOfThousandsOfLevels) {
  const test::TempFolder folder;
  const std::string path = folder.path();
  const test::Result result = test::runInChild(
      [&] {
        bool inside = chdir(path.c_str()) == 0;
        for (int depth = 0; depth < 2600; ++depth) {
          inside = inside && mkdir("d", 0777) == 0 && chdir("d") == 0;
        }
        test::allowOpenFiles(32);
        test::allowStack(256 * 1024);
        _exit(inside && removeTree(path.c_str()) ? 0 : 1);
      },
      120);
  EXPECT_EQ(0, result.status);
  EXPECT_FALSE(test::exists(path));
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

TEST(RemoveTree, LeavesAnEmptyFolderThatStandsWhereItsOwnWasMovedAway) {
  const test::TempFolder folder;
  fs::create_directory(folder / "own");
  test::writeFile(folder / "own/file", "");
  const Descriptor own = openFolderItself((folder / "own").c_str());
  fs::rename(folder / "own", folder / "moved");
  fs::create_directory(folder / "own");
  test::capture([&] { EXPECT_FALSE(removeTree(own, (folder / "own").c_str())); });
  EXPECT_TRUE(fs::exists(folder / "own"));
  EXPECT_TRUE(fs::is_empty(folder / "moved"));
}

TEST(RemoveTree, RemovesAnEmptyFolderThatMayNotBeRead) {
  const test::TempFolder folder;
  fs::permissions(folder.path(), fs::perms::all);
  fs::create_directory(folder / "unreadable");
  fs::permissions(folder / "unreadable", fs::perms::none);
  const test::Result result = test::runInChild([&] {
    // Who is not the superuser need not become anybody else.
    const bool isReady =
        chdir(folder.path().c_str()) == 0 && (geteuid() != 0 || seteuid(65534) == 0);
    _exit(isReady && removeTree("unreadable") ? 0 : 1);
  });
  EXPECT_EQ(0, result.status) << result.out;
  EXPECT_FALSE(fs::exists(folder / "unreadable"));
}

TEST(HeldFolder, IsNotComeBackToFromAFolderThatWasMovedElsewhere) {
  const test::TempFolder folder;
  fs::create_directories(folder / "above/below");
  fs::create_directory(folder / "elsewhere");
  HeldFolder above;
  ASSERT_TRUE(hold(openFolderItself((folder / "above").c_str()), &above));
  const Descriptor below = openFolderItself((folder / "above/below").c_str());
  letGo(&above, below);
  EXPECT_TRUE(comeBack(&above, below));
  letGo(&above, below);
  fs::rename(folder / "above/below", folder / "elsewhere/below");
  EXPECT_FALSE(comeBack(&above, below));
}

TEST(ListNames, OfAFolderThatIsNotOpenSaysSo) {
  std::vector<std::string> names;
  EXPECT_FALSE(listNames(nullptr, &names));
}
