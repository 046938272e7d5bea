#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "extractor/installation/interrupted_runs.h"
#include "extractor/run/run.h"
#include "extractor/versions/folders.h"
#include "tests/support/account.h"
#include "tests/support/capture.h"
#include "tests/support/fake_clock.h"
#include "tests/support/files.h"
#include "tests/support/folder_exchange.h"
#include "tests/support/real_functions.h"
#include "tests/support/temp_folder.h"
#include "tests/support/unavailable.h"
#include "tests/unit/extractor/disturbed_renames.h"
#include "tests/unit/extractor/full_disk.h"

namespace fs = std::filesystem;
using FolderNames = std::vector<std::string>;
using test::beforeExchange;
using test::diskIsFullWhile;
using test::exchangesFail;
using test::unmovable;
using test::writeFile;

// What fails, and what happens just before a further name of a file.
static bool removalsFail = false;
static bool linksFail = false;
static std::function<void()> beforeLink;

static int fail(int error) {
  errno = error;
  return -1;
}

// These take the places of the C library's functions in this executable.
extern "C" int linkat(int from, const char* name, int to, const char* other, int flags) {
  if (const std::function<void()> action = std::exchange(beforeLink, nullptr)) {
    action();
  }
  if (linksFail) {
    return fail(EMLINK);
  }
  return test::realLinkat(from, name, to, other, flags);
}

extern "C" int unlinkat(int folder, const char* path, int flags) {
  if (removalsFail) {
    return fail(EBUSY);
  }
  return test::realUnlinkat(folder, path, flags);
}

namespace {

class ReplacedFolder : public testing::Test {
 protected:
  ReplacedFolder() {
    setPath(run_.masterFolder, folder_.path().c_str());
    writeFile(temp() + "/a", "new");
    writeFile(target() + "/old", "old");
  }
  ~ReplacedFolder() override {
    exchangesFail = false;
    removalsFail = false;
    linksFail = false;
    beforeExchange = nullptr;
    beforeLink = nullptr;
    unmovable.clear();
    diskIsFullWhile.clear();
  }

  std::string temp() const { return folder_ / "temp"; }
  std::string target() const { return folder_ / "target"; }

  void move() {
    test::capture(
        [&] { moveIntoPlace(run_.masterFolder, "application", temp().c_str(), target().c_str()); });
  }

  // Makes the entry `a`, which the new folder has as a file, a folder with content.
  void getInTheWay() const { writeFile(target() + "/a/in-the-way", "late"); }

  FolderNames namesOfMaster() const { return test::namesIn(folder_.path()); }

  ExtractorRun run_{};
  test::TempFolder folder_;
  test::FakeClock clock_{1457000000000};
};

}  // namespace

TEST_F(ReplacedFolder, ThatCannotBeRemovedDoesNotCostTheNewOne) {
  removalsFail = true;
  move();
  EXPECT_EQ((FolderNames{"a", "old"}), test::namesIn(target()));
  EXPECT_EQ(FolderNames{"old"}, test::namesIn(temp()));
}

TEST_F(ReplacedFolder, StandsAsideWhereFoldersCannotBeExchanged) {
  exchangesFail = true;
  move();
  EXPECT_EQ((FolderNames{"a", "old"}), test::namesIn(target()));
  EXPECT_EQ(FolderNames{"target"}, test::namesIn(folder_.path()));
}

TEST_F(ReplacedFolder, ComesBackWhenTheNewOneIsCopiedAndTheCopyIsIncomplete) {
  exchangesFail = true;
  unmovable = "/temp";
  fs::create_symlink("nowhere", temp() + "/not-copied");
  const test::Result result = test::runInChild([this] { move(); });
  EXPECT_EQ(1, result.status);
  EXPECT_EQ(FolderNames{"old"}, test::namesIn(target()));
  EXPECT_EQ(FolderNames{"target"}, test::namesIn(folder_.path()));
}

TEST_F(ReplacedFolder, IsNotReplacedByACopyWhereThatIsForbidden) {
  exchangesFail = true;
  unmovable = "/temp";
  const test::Result result = test::runInChild([this] {
    moveIntoPlace(run_.masterFolder, "application", temp().c_str(), target().c_str(), {},
                  ByCopy::Never);
  });
  EXPECT_EQ(1, result.status);
  EXPECT_EQ(std::string::npos, result.out.find("[CopyFolder]"));
  EXPECT_EQ(FolderNames{"old"}, test::namesIn(target()));
  EXPECT_EQ(FolderNames{"target"}, namesOfMaster());
}

TEST_F(ReplacedFolder, GivesTheNewOneNeitherFilesNorFoldersThatAreToBeLeftOut) {
  writeFile(target() + "/own/file", "old");
  writeFile(target() + "/kept/own", "old");
  test::capture([this] {
    moveIntoPlace(run_.masterFolder, "application", temp().c_str(), target().c_str(),
                  {"own", "old"});
  });
  EXPECT_EQ((FolderNames{"a", "kept"}), test::namesIn(target()));
  EXPECT_EQ(FolderNames{"own"}, test::namesIn(target() + "/kept"));
}

TEST_F(ReplacedFolder, StaysWhereItIsWhenItCannotBeMovedAside) {
  exchangesFail = true;
  unmovable = "/target";
  const test::Result result = test::runInChild([this] { move(); });
  EXPECT_EQ(1, result.status);
  EXPECT_EQ(FolderNames{"old"}, test::namesIn(target()));
  EXPECT_EQ(FolderNames{"target"}, test::namesIn(folder_.path()));
}

TEST_F(ReplacedFolder, GivesItsFilesLinksAndEmptyFoldersWithTheirModesToTheNewOne) {
  writeFile(target() + "/.config/settings.ini", "of the user's", 0600);
  writeFile(target() + "/closed/.a", "short", 0444);
  fs::create_directories(target() + "/closed/empty");
  fs::create_symlink("nowhere", target() + "/closed/link");
  fs::permissions(target() + "/closed", fs::perms(0555));
  for (const bool withLinks : {true, false}) {
    linksFail = !withLinks;
    move();
    EXPECT_EQ((FolderNames{".config", "a", "closed", "old"}), test::namesIn(target()));
    EXPECT_EQ("of the user's", test::readFile(target() + "/.config/settings.ini"));
    EXPECT_EQ(0600u, test::modeOf(target() + "/.config/settings.ini"));
    EXPECT_EQ((FolderNames{".a", "empty", "link"}), test::namesIn(target() + "/closed"));
    EXPECT_EQ(0444u, test::modeOf(target() + "/closed/.a"));
    EXPECT_EQ("nowhere", fs::read_symlink(target() + "/closed/link"));
    EXPECT_EQ(0555u, test::modeOf(target() + "/closed"));
    writeFile(temp() + "/a", "newer");
  }
}

TEST_F(ReplacedFolder, GivesNoCopyTheRightToRunAsItsOwner) {
  writeFile(target() + "/old", "somebody's", 06755);
  fs::create_directory(target() + "/folder");
  fs::permissions(target() + "/folder", fs::perms(07755));
  linksFail = true;
  move();
  EXPECT_EQ("somebody's", test::readFile(target() + "/old"));
  EXPECT_EQ(0755u, test::modeOf(target() + "/old"));
  EXPECT_EQ(0755u, test::modeOf(target() + "/folder"));
}

TEST_F(ReplacedFolder, StaysWholeWhenAFileIsExchangedBeforeItIsCopied) {
  linksFail = true;
  beforeLink = [this] {
    writeFile(folder_ / "other", "another");
    fs::rename(folder_ / "other", target() + "/old");
  };
  const test::Result result = test::runInChild([this] { move(); });
  EXPECT_EQ(1, result.status);
  EXPECT_EQ(FolderNames{"old"}, test::namesIn(target()));
  EXPECT_EQ(FolderNames{"target"}, test::namesIn(folder_.path()));
}

TEST_F(ReplacedFolder, IsCopiedBesideAFileThatIsNamedLikeAPartOfACopy) {
  writeFile(temp() + "/.QuorvanePart", "new");
  linksFail = true;
  move();
  EXPECT_EQ("new", test::readFile(target() + "/.QuorvanePart"));
  EXPECT_EQ((FolderNames{".QuorvanePart", "a", "old"}), test::namesIn(target()));
}

TEST_F(ReplacedFolder, OfAnOrdinaryUserMayHoldEmptyFoldersThatNobodyMaySearch) {
  const test::Account account = test::ordinaryAccount();
  if (!test::canReach(account, folder_.path())) {
    return test::unreachable();
  }
  for (const char* name : {"/r", "/rw"}) {
    fs::create_directory(target() + name);
    fs::permissions(target() + name, fs::perms(std::string("/r") == name ? 0400 : 0600));
  }
  test::giveTo(account, folder_.path());
  const test::Result result = test::runInChild([&] {
    test::become(account);
    moveIntoPlace(run_.masterFolder, "application", temp().c_str(), target().c_str());
  });
  EXPECT_EQ(test::CODE_RETURNED, result.status) << result.out;
  EXPECT_EQ(0400u, test::modeOf(target() + "/r"));
  EXPECT_EQ(0600u, test::modeOf(target() + "/rw"));
  EXPECT_EQ(FolderNames{"target"}, test::namesIn(folder_.path()));
}

TEST_F(ReplacedFolder, OfWhichAFileIsBeingWrittenGoesOnBeingWrittenInTheNewOne) {
  FILE* file = fopen((target() + "/open").c_str(), "w");
  ASSERT_NE(nullptr, file);
  fputs("before ", file);
  fflush(file);
  move();
  fputs("after", file);
  fclose(file);
  EXPECT_EQ("before after", test::readFile(target() + "/open"));
}

TEST_F(ReplacedFolder, KeepsWhatIsWrittenJustBeforeTheExchange) {
  beforeExchange = [this] { writeFile(target() + "/late/file", "late"); };
  move();
  EXPECT_EQ("late", test::readFile(target() + "/late/file"));
  EXPECT_EQ("new", test::readFile(target() + "/a"));
}

TEST_F(ReplacedFolder, ComesBackWholeWhenWhatIsWrittenJustBeforeTheExchangeCannotBeKept) {
  beforeExchange = [this] { writeFile(target() + "/a/in-the-way", "late"); };
  const test::Result result = test::runInChild([this] { move(); });
  EXPECT_EQ(1, result.status);
  EXPECT_EQ((FolderNames{"a", "old"}), test::namesIn(target()));
  EXPECT_EQ("late", test::readFile(target() + "/a/in-the-way"));
  EXPECT_EQ(FolderNames{"target"}, test::namesIn(folder_.path()));
}

TEST_F(ReplacedFolder, ThatCannotComeBackByAnExchangeSurvivesTheNextRunUnderAnotherName) {
  beforeExchange = [this] {
    getInTheWay();
    exchangesFail = true;
  };
  const test::Result result = test::runInChild([this] { move(); });
  EXPECT_EQ(1, result.status);
  test::capture([this] { removeAbandonedTempFolders(run_.masterFolder); });
  const FolderNames names = namesOfMaster();
  ASSERT_EQ(2u, names.size());
  EXPECT_EQ(0u, names[0].find("QuorvaneKept-"));
  EXPECT_EQ((FolderNames{"a", "old"}), test::namesIn(folder_ / names[0]));
  EXPECT_EQ("late", test::readFile(folder_ / (names[0] + "/a/in-the-way")));
  EXPECT_EQ("new", test::readFile(target() + "/a"));
}

TEST_F(ReplacedFolder, ThatCannotBeMovedBackSurvivesTheNextRun) {
  exchangesFail = true;
  unmovable = "-app";
  beforeLink = [this] { getInTheWay(); };
  fs::create_symlink("nowhere", target() + "/not-copied");
  const test::Result result = test::runInChild([this] { move(); });
  EXPECT_EQ(1, result.status);
  test::capture([this] { removeAbandonedTempFolders(run_.masterFolder); });
  const FolderNames names = namesOfMaster();
  ASSERT_EQ(1u, names.size());
  EXPECT_EQ((FolderNames{"a", "not-copied", "old"}), test::namesIn(folder_ / names[0]));
}

TEST_F(ReplacedFolder, ComesBackWholeByACopyWhereItCannotBeMovedBack) {
  exchangesFail = true;
  unmovable = "-app";
  beforeLink = [this] { getInTheWay(); };
  writeFile(target() + "/.x", "short");
  const test::Result result = test::runInChild([this] { move(); });
  EXPECT_EQ(1, result.status);
  EXPECT_EQ((FolderNames{".x", "a", "old"}), test::namesIn(target()));
  EXPECT_EQ("late", test::readFile(target() + "/a/in-the-way"));
  EXPECT_EQ(FolderNames{"target"}, namesOfMaster());
}

TEST_F(ReplacedFolder, StaysForTheReasonThatHoldsBeforeTheNewOneIsRemoved) {
  getInTheWay();
  diskIsFullWhile = temp();
  const test::Result result = test::runInChild([this] {
    moveIntoPlace(run_.masterFolder, "application", temp().c_str(), target().c_str());
  });
  EXPECT_EQ(1, result.status);
  EXPECT_NE(std::string::npos, result.out.find("The disk is full\n"));
  EXPECT_EQ(std::string::npos, result.out.find("The disk has room\n"));
  EXPECT_EQ(FolderNames{"target"}, namesOfMaster());
}

TEST_F(ReplacedFolder, StaysWholeWhereAFolderWithContentMeetsAFileOfItsName) {
  writeFile(target() + "/a/of-the-user", "precious");
  const test::Result result = test::runInChild([this] {
    moveIntoPlace(run_.masterFolder, "application", temp().c_str(), target().c_str());
  });
  EXPECT_EQ(1, result.status);
  EXPECT_EQ("precious", test::readFile(target() + "/a/of-the-user"));
  EXPECT_EQ((FolderNames{"a", "old"}), test::namesIn(target()));
  EXPECT_NE(std::string::npos, result.out.find("[Merge] Unable to keep 'a' of " + target() + "\n"));
  EXPECT_EQ(FolderNames{"target"}, test::namesIn(folder_.path()));
}

TEST_F(ReplacedFolder, GivesWayWhereItsFileOrEmptyFolderMeetsANewOneOfItsName) {
  fs::create_directory(target() + "/a");
  writeFile(temp() + "/b/file", "new");
  writeFile(target() + "/b", "old");
  move();
  EXPECT_EQ("new", test::readFile(target() + "/a"));
  EXPECT_EQ("new", test::readFile(target() + "/b/file"));
}

TEST_F(ReplacedFolder, OfAnOrdinaryUserIsMergedWhereItIsReadOnlyAndStaysWholeWhereItCannotBeRead) {
  const test::Account account = test::ordinaryAccount();
  if (!test::canReach(account, folder_.path())) {
    return test::unreachable();
  }
  for (const bool isReadable : {true, false}) {
    writeFile(temp() + "/a", "new");
    writeFile(target() + "/folder/file", "of the user's", 0400);
    fs::permissions(target() + "/folder", fs::perms(isReadable ? 0555 : 0111));
    fs::permissions(target(), fs::perms(0555));
    test::giveTo(account, folder_.path());
    const test::Result result = test::runInChild([&] {
      test::become(account);
      moveIntoPlace(run_.masterFolder, "application", temp().c_str(), target().c_str());
    });
    EXPECT_EQ(isReadable ? test::CODE_RETURNED : 1, result.status) << result.out;
    fs::permissions(target(), fs::perms(0755));
    fs::permissions(target() + "/folder", fs::perms(0755));
    EXPECT_EQ("of the user's", test::readFile(target() + "/folder/file"));
    EXPECT_EQ("old", test::readFile(target() + "/old"));
  }
}

TEST_F(ReplacedFolder, IsMergedHoweverDeepItIs) {
  writeFile(test::makeDeepFolder(target(), 100) + "/file", "deep");
  const test::Result result = test::runInChild([this] {
    test::allowOpenFiles(32);
    move();
  });
  EXPECT_EQ(test::CODE_RETURNED, result.status) << result.out;
  std::string path = target();
  for (int i = 0; i < 100; ++i) {
    path += "/d";
  }
  EXPECT_EQ("deep", test::readFile(path + "/file"));
}
