#include "launcher/installation/version_folders.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "support/owned.h"
#include "tests/support/capture.h"
#include "tests/support/files.h"
#include "tests/support/master_folder.h"
#include "tests/support/temp_folder.h"

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

// A master folder with the given folders in it.
class PickLatest : public testing::Test {
 protected:
  void make(const Texts& names) { test::MasterFolder(master_.path()).addFolders(names); }

  // The choice for the component, or "none".
  std::string pick(const std::string& component = "Mac64JRE") {
    std::string chosen = "none";
    lines_ = test::logLinesOf([&] {
      char* name = pickAndAllocLatestFromMaster(master_.path().c_str(), component.c_str());
      if (name != nullptr) {
        chosen = name;
        free(name);
      }
    });
    return chosen;
  }

  test::TempFolder master_;
  Texts lines_;
};

TEST_F(PickLatest, AFolderWithoutItsThirdHyphenIsNeverChosen) {
  make({"Quorvane-Mac64JRE-1407-complete", "Quorvane-Mac64JRE-1500-complete",
        "Quorvane-Mac64JRE-1600"});
  EXPECT_EQ("Quorvane-Mac64JRE-1500-complete", pick());
}

TEST_F(PickLatest, AloneAFolderWithoutItsThirdHyphenGivesNothing) {
  make({"Quorvane-Mac64JRE-1600"});
  EXPECT_EQ("none", pick());
  EXPECT_EQ((Texts{"[PickFolder] Folder Quorvane-Mac64JRE-1600 matches Mac64JRE with version -1"}),
            lines_);
}

TEST_F(PickLatest, ClosesTheFolderWhetherItFindsOneOrNot) {
  const size_t before = test::openFiles();
  EXPECT_EQ("none", pick());
  make({"Quorvane-Mac64JRE-1-complete"});
  EXPECT_EQ("Quorvane-Mac64JRE-1-complete", pick());
  EXPECT_EQ("none", pick("Other"));
  EXPECT_EQ(before, test::openFiles());
}

TEST_F(PickLatest, VersionsAreComparedAsNumbers) {
  make({"Quorvane-Mac64JRE-0100-complete", "Quorvane-Mac64JRE-99-complete"});
  EXPECT_EQ("Quorvane-Mac64JRE-0100-complete", pick());
}

TEST_F(PickLatest, AnotherComponentIsIgnored) {
  make({"Quorvane-OtherJRE-1407-complete", "Quorvane-mac64jre-1-complete",
        "Quorvane-Mac64JRE2-1-complete", "Quorvane-Mac64JR-1-complete"});
  EXPECT_EQ("none", pick());
  EXPECT_EQ(Texts{}, lines_);
}

TEST_F(PickLatest, LogsEveryMatchFromTheHighestVersionAndTheChoiceOnce) {
  make({"Quorvane-Mac64JRE-1-complete", "Quorvane-Mac64JRE-9-complete",
        "Quorvane-Mac64JRE-10-complete", "Quorvane-Mac64JRE-5-complete"});
  EXPECT_EQ("Quorvane-Mac64JRE-10-complete", pick());
  EXPECT_EQ(
      (Texts{"[PickFolder] Folder Quorvane-Mac64JRE-10-complete matches Mac64JRE with version 10",
             "[PickFolder] Set latest to 10 Quorvane-Mac64JRE-10-complete",
             "[PickFolder] Folder Quorvane-Mac64JRE-9-complete matches Mac64JRE with version 9",
             "[PickFolder] Folder Quorvane-Mac64JRE-5-complete matches Mac64JRE with version 5",
             "[PickFolder] Folder Quorvane-Mac64JRE-1-complete matches Mac64JRE with version 1"}),
      lines_);
}

TEST_F(PickLatest, AmongEqualVersionsTheFirstByNameWins) {
  make({"Quorvane-Mac64JRE-1-complete.plugin", "Quorvane-Mac64JRE-1-complete"});
  EXPECT_EQ("Quorvane-Mac64JRE-1-complete", pick());
}

TEST_F(PickLatest, AVersionThatIsNoNumberCountsAsZeroAndBeatsNone) {
  make({"Quorvane-Mac64JRE-x-complete", "Quorvane-Mac64JRE-7"});
  EXPECT_EQ("Quorvane-Mac64JRE-x-complete", pick());
}

TEST_F(PickLatest, AVersionBeyondTheNumbersRangeIsTheHighest) {
  make({"Quorvane-Mac64JRE-99999999999999999999-complete", "Quorvane-Mac64JRE-2-complete"});
  EXPECT_EQ("Quorvane-Mac64JRE-99999999999999999999-complete", pick());
}

TEST_F(PickLatest, PrefixAndRestOfTheNameAreNotLookedAt) {
  make({"-Mac64JRE-3-", "Quorvane-Mac64JRE-2-complete"});
  EXPECT_EQ("-Mac64JRE-3-", pick());
}

TEST_F(PickLatest, AnEmptyComponentNameMatchesAnEmptyFieldOnly) {
  make({"Quorvane--4-complete", "Quorvane-Mac64JRE-5-complete"});
  EXPECT_EQ("Quorvane--4-complete", pick(""));
}

TEST_F(PickLatest, NamesShorterThanThreeCharactersAreSkipped) {
  make({"--"});
  EXPECT_EQ("none", pick(""));
  EXPECT_EQ(Texts{}, lines_);
}

TEST_F(PickLatest, AnEmptyFolderGivesNothing) {
  EXPECT_EQ("none", pick());
}

TEST_F(PickLatest, AMissingFolderGivesNothing) {
  EXPECT_EQ(nullptr, pickAndAllocLatestFromMaster((master_ / "none").c_str(), "Mac64JRE"));
}

namespace {

const char* flawOfMarked(const char* folder) {
  return test::exists(std::string(folder) + "/flaw") ? "it is marked" : nullptr;
}

// The versions 1, 2 and 3, some of them with a flaw.
class PickThatStarts : public testing::Test {
 protected:
  using Pick = char* (*)(const char*, const char*, FlawOfFolder);

  PickThatStarts() {
    test::MasterFolder(master_.path())
        .addFolders({"Quorvane-Mac64JRE-1-complete", "Quorvane-Mac64JRE-2-complete",
                     "Quorvane-Mac64JRE-3-complete"});
  }

  void mark(const std::string& version) {
    test::MasterFolder(master_.path()).addFile("Quorvane-Mac64JRE-" + version + "-complete/flaw");
  }

  std::string choiceOf(Pick pick) {
    std::string chosen = "none";
    lines_ = test::logLinesOf([&] {
      const Block<char> name(pick(master_.path().c_str(), "Mac64JRE", flawOfMarked));
      chosen = name == nullptr ? "none" : name.get();
    });
    return chosen;
  }

  test::TempFolder master_;
  Texts lines_;
};

}  // namespace

TEST_F(PickThatStarts, WithoutAFlawIsTheLatestAndLogsNothingElse) {
  EXPECT_EQ("Quorvane-Mac64JRE-3-complete", choiceOf(pickAndAllocLatestThatStarts));
  const Texts lines = lines_;
  EXPECT_EQ("Quorvane-Mac64JRE-3-complete", choiceOf(pickAndAllocLatestToLaunch));
  EXPECT_EQ(lines, lines_);
  EXPECT_EQ(lines, test::logLinesOf([&] {
              free(pickAndAllocLatestFromMaster(master_.path().c_str(), "Mac64JRE"));
            }));
}

TEST_F(PickThatStarts, PassesOverFlawsAndSaysSo) {
  mark("3");
  mark("2");
  EXPECT_EQ("Quorvane-Mac64JRE-1-complete", choiceOf(pickAndAllocLatestThatStarts));
  ASSERT_LE(2u, lines_.size());
  EXPECT_EQ((Texts{"[PickFolder] Folder Quorvane-Mac64JRE-3-complete cannot start: it is marked",
                   "[PickFolder] Folder Quorvane-Mac64JRE-2-complete cannot start: it is marked"}),
            Texts(lines_.end() - 2, lines_.end()));
  EXPECT_EQ("Quorvane-Mac64JRE-1-complete", choiceOf(pickAndAllocLatestToLaunch));
}

TEST_F(PickThatStarts, OfFlawsAloneIsNoneOrTheNewestToLaunch) {
  for (const char* version : {"1", "2", "3"}) {
    mark(version);
  }
  EXPECT_EQ("none", choiceOf(pickAndAllocLatestThatStarts));
  EXPECT_EQ("Quorvane-Mac64JRE-3-complete", choiceOf(pickAndAllocLatestToLaunch));
}

TEST_F(PickThatStarts, OfNothingIsNone) {
  fs::remove_all(master_.path());
  EXPECT_EQ("none", choiceOf(pickAndAllocLatestThatStarts));
  EXPECT_EQ("none", choiceOf(pickAndAllocLatestToLaunch));
}

TEST(CheckAppFolderName, IsZeroForTheComponentAndTheComparisonsResultForAnother) {
  EXPECT_EQ(0, checkAppFolderName("Quorvane-GU-1-complete", "GU"));
  EXPECT_GT(0, checkAppFolderName("Quorvane-A-1", "B"));
  EXPECT_LT(0, checkAppFolderName("Quorvane-B-1", "A"));
}

TEST(CheckAppFolderName, IsMinusOneWithFewerThanTwoHyphens) {
  EXPECT_EQ(-1, checkAppFolderName("Quorvane-GU", "GU"));
  EXPECT_EQ(-1, checkAppFolderName("", ""));
}

TEST(PickVersionFromAppFolderName, IsTheNumberBetweenTheSecondAndThirdHyphen) {
  EXPECT_EQ(1407, pickVersionFromAppFolderName("Quorvane-Mac64JRE-1407-complete"));
  EXPECT_EQ(12, pickVersionFromAppFolderName("a-b-12x-"));
}

TEST(PickVersionFromAppFolderName, IsMinusOneWithFewerThanThreeHyphens) {
  EXPECT_EQ(-1, pickVersionFromAppFolderName("Quorvane-Mac64JRE-1407"));
  EXPECT_EQ(-1, pickVersionFromAppFolderName(""));
}
