#include "launcher/installation/install_locations.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "support/files/paths.h"
#include "support/process/exit_status.h"
#include "tests/support/capture.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tests/unit/launcher/fake_account.h"

namespace fs = std::filesystem;
using test::field;
using Texts = std::vector<std::string>;

class SharedDirectory : public testing::Test {
 protected:
  SharedDirectory() { setFakeHome(home_.path().c_str()); }

  std::string locate(const std::string& installType) {
    std::string path;
    lines_ = test::logLinesOf([&] {
      char* block = locateSharedDirectory(installType.c_str());
      path = block;
      free(block);
    });
    return path;
  }

  std::string userFolder() const { return home_ / "Library/Application Support"; }

  test::TempFolder home_;
  Texts lines_;
};

TEST_F(SharedDirectory, ForAllUsersIsTheSystemsAndTheHomeIsLeftAlone) {
  const bool existed = test::exists("/Library");
  EXPECT_EQ("/Library/Application Support", locate("perm_all"));
  EXPECT_EQ((Texts{"Permanent install for all users"}), lines_);
  EXPECT_EQ(Texts{}, test::namesIn(home_.path()));
  EXPECT_EQ(existed, test::exists("/Library"));
}

TEST_F(SharedDirectory, ForTheCurrentUserLiesInTheHomeAndIsCreated) {
  fs::create_directory(home_ / "Library");
  EXPECT_EQ(userFolder(), locate("perm_user"));
  ASSERT_LE(2u, lines_.size());
  EXPECT_EQ("Permanent install for current user", lines_[0]);
  EXPECT_EQ("HomeDir is " + home_.path(), lines_[1]);
  EXPECT_TRUE(fs::is_directory(userFolder()));
}

TEST_F(SharedDirectory, OfAnEmptyInstallTypeIsThatOfTheCurrentUserButTemporary) {
  EXPECT_EQ(userFolder(), locate(""));
  ASSERT_LE(2u, lines_.size());
  EXPECT_EQ("Temporary install", lines_[0]);
  EXPECT_EQ("HomeDir is " + home_.path(), lines_[1]);
  EXPECT_TRUE(fs::is_directory(userFolder()));
}

TEST_F(SharedDirectory, InstallTypesAreComparedExactly) {
  locate("PERM_ALL");
  EXPECT_EQ("Temporary install", lines_.at(0));
  locate("perm_user ");
  EXPECT_EQ("Temporary install", lines_.at(0));
}

TEST_F(SharedDirectory, OfAFreshHomeGetsItsLibraryFolderForTheUserAlone) {
  locate("perm_user");
  EXPECT_EQ(0700u, test::modeOf(home_ / "Library"));
}

TEST_F(SharedDirectory, ThatExistsKeepsItsModeAndContents) {
  test::writeFile(userFolder() + "/kept", "");
  ASSERT_EQ(0, chmod(userFolder().c_str(), 0711));
  EXPECT_EQ(userFolder(), locate("perm_user"));
  EXPECT_EQ(0711u, test::modeOf(userFolder()));
  EXPECT_EQ((Texts{"kept"}), test::namesIn(userFolder()));
}

TEST_F(SharedDirectory, OfAHomeThatDoesNotFitIsUnusable) {
  setFakeHome(("/" + std::string(PATH_BUFFER_SIZE, 'h')).c_str());
  EXPECT_EQ(0u, locate("perm_user").find(UNUSABLE_PATH));
}

TEST_F(SharedDirectory, WithoutAnAccountEndsTheProcessWithALoggedLine) {
  setFakeHome(nullptr);
  const test::Result result = test::runInChild([] { locateSharedDirectory("perm_user"); });
  EXPECT_EQ(EXIT_STATUS_FAILURE, result.status);
  EXPECT_EQ((Texts{"Permanent install for current user", "ERROR: Unable to get shared dir!"}),
            test::logLinesOf(result.out));
}

class JreName : public testing::Test {
 protected:
  void overrideWith(const std::string& bytes) {
    test::writeFile(master_ / "QVApps/JreNameOverride", bytes);
  }

  std::string name() {
    std::string name;
    lines_ = test::logLinesOf([&] {
      char* block = getJREName(master_.path().c_str());
      name = block;
      free(block);
    });
    return name;
  }

  test::TempFolder master_;
  Texts lines_;
};

TEST_F(JreName, IsTheDefaultWithoutAnOverrideFile) {
  EXPECT_EQ("Mac64JRE", name());
  EXPECT_EQ((Texts{"No JRE name override!"}), lines_);
}

TEST_F(JreName, IsTheDefaultWhenTheOverrideIsAHyphen) {
  overrideWith(field("-"));
  EXPECT_EQ("Mac64JRE", name());
  EXPECT_EQ((Texts{"Ignoring JRE name -, using Mac64JRE"}), lines_);
}

TEST_F(JreName, IsWhatTheOverrideSaysOtherwise) {
  overrideWith(field("Mac64JRE2"));
  EXPECT_EQ("Mac64JRE2", name());
  EXPECT_EQ((Texts{"JRE name overridden to Mac64JRE2"}), lines_);
}

TEST_F(JreName, IsTheFirstFieldOfTheOverrideOnly) {
  overrideWith(field("One") + field("Two"));
  EXPECT_EQ("One", name());
}

TEST_F(JreName, OfAnEmptyOverrideFileIsEmpty) {
  overrideWith("");
  EXPECT_EQ("", name());
  EXPECT_EQ((Texts{"JRE name overridden to "}), lines_);
}

TEST_F(JreName, Of498CharactersIsTakenWhole) {
  overrideWith(field(std::string(498, 'n')));
  EXPECT_EQ(std::string(498, 'n'), name());
}

TEST_F(JreName, BeyondTheReadLimitIsCutToIt) {
  overrideWith(field(std::string(600, 'n')));
  EXPECT_EQ(std::string(499, 'n'), name());
}

TEST_F(JreName, OfAnOverrideThatCannotBeReadAsAFileIsEmpty) {
  fs::create_directories(master_ / "QVApps/JreNameOverride");
  EXPECT_EQ("", name());
}
