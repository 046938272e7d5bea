#include "extractor/runtime/publish_runtime.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "extractor/installation/interrupted_runs.h"
#include "extractor/runtime/jre_layout.h"
#include "launcher/installation/version_folders.h"
#include "tests/unit/extractor/runtime_folders.h"

namespace fs = std::filesystem;
using FolderNames = std::vector<std::string>;
using test::exchangesFail;
using test::unmovable;
using test::writeFile;

namespace {

class PublishedRuntime : public RuntimeFolders {
 protected:
  void expectNothingInstalledChanged() const {
    expectRuntime("old");
    expectFilesOfTheUser();
    EXPECT_EQ((FolderNames{"Quorvane-Mac64JRE-1-complete", "Quorvane-Mac64JRE-1-complete.plugin"}),
              namesOfMaster());
  }
};

// Counts an exchange as one of the renames.
void countExchange() {
  rename("", "");
  test::beforeExchange = countExchange;
}

// Whether the system can exchange folders.
class DisturbedPublication : public RuntimeFolders, public testing::WithParamInterface<bool> {
 protected:
  DisturbedPublication() { exchangesFail = !GetParam(); }

  // The state of a master folder before the disturbed run.
  void reset(bool hasEarlier, bool isPlainHome) const {
    fs::remove_all(folder_.path());
    fs::create_directories(folder_.path());
    if (isPlainHome) {
      copyPlainHome();
    } else {
      unpack();
    }
    if (hasEarlier) {
      installEarlier();
    }
  }

  // Ends a publication at every rename, one after the other, and looks at what the next start
  // makes of it. Returns how many renames there were.
  int dieAtEveryRename(bool hasEarlier, bool isPlainHome = false) {
    for (int point = 1;; ++point) {
      SCOPED_TRACE("rename " + std::to_string(point));
      reset(hasEarlier, isPlainHome);
      const test::Result result = test::runInChild([this, point] {
        test::lastRename = point;
        test::beforeExchange = countExchange;
        publishHere();
      });
      if (result.status != test::DIED_AT_A_RENAME) {
        EXPECT_EQ(test::CODE_RETURNED, result.status) << result.out;
        expectRuntime("new");
        return point - 1;
      }
      test::capture([this] { finishInterruptedRuntimes(run_.masterFolder); });
      expectWhole(hasEarlier);
    }
  }

  void expectWhole(bool hasEarlier) const {
    if (!hasEarlier && !fs::exists(plain())) {
      EXPECT_FALSE(fs::exists(bundle()));
      return;
    }
    const std::string java = test::readFile(plain() + "/bin/java");
    EXPECT_TRUE(java == "new" || (hasEarlier && java == "old")) << java;
    EXPECT_EQ(java == "new", fs::exists(plain() + "/bin/unpack200"));
    if (hasEarlier) {
      EXPECT_EQ("of the runtime", test::readFile(plain() + "/settings.ini"));
    }
    expectRuntime(java);
  }
};

}  // namespace

TEST_F(PublishedRuntime, IsInItsPlainFolderAndLinkedIntoItsBundle) {
  unpack();
  publish();
  expectRuntime("new");
  EXPECT_EQ((FolderNames{"bin", "lib"}), test::namesIn(plain()));
  EXPECT_EQ(0777u, test::modeOf(plain()));
  EXPECT_EQ((FolderNames{"Contents"}), test::namesIn(bundle()));
  EXPECT_EQ(plain() + "/lib/libnpjp2.dylib",
            fs::read_symlink(bundle() + "/Contents/MacOS/JavaAppletPlugin").string());
  EXPECT_EQ(2u, namesOfMaster().size());
}

TEST_F(PublishedRuntime, IsLoggedAsTheRenameAndTheStepsThatMakeItsFolders) {
  unpack();
  const std::vector<std::string> lines = test::logLinesOf([this] { publishHere(); });
  const std::string home = "\"" + bundle() + "/Contents/Home\"";
  const std::string executable = "\"" + bundle() + "/Contents/MacOS/JavaAppletPlugin\"";
  const std::vector<std::string> wanted{
      "[Rename] File '" + temp() + "' renamed to '" + bundle() + "'",
      "[Extractor] Renamed JRE folder to " + bundle(),
      std::string(48, '+'),
      "+++ Start: OSX JRE initialisation",
      std::string(48, '+'),
      "[OSX JRE] Alias JRE path is " + plain(),
      "[ChMod] Executing chmod 777 \"" + plain() + "\"",
      "[LNS] Running mv " + home + "/* \"" + plain() + "\"",
      "[LNS] Running rm " + home + "/.* ",
      "[LNS] Running rmdir " + home,
      "[LNS] Running ln -s \"" + plain() + "\" " + home,
      "[LNS] Running rm " + executable,
      "[LNS] Running ln -s \"" + plain() + "/lib/libnpjp2.dylib\" " + executable,
      "[LNS] Running chmod a+x \"\"" + plain() + "/lib/jspawnhelper\"",
      std::string(48, '-'),
      "--- End: OSX JRE initialisation",
      std::string(48, '-')};
  ASSERT_GE(lines.size(), wanted.size());
  EXPECT_EQ(wanted,
            std::vector<std::string>(lines.end() - static_cast<long>(wanted.size()), lines.end()));
}

TEST_F(PublishedRuntime, TakesTheEarlierOnesPlaceAndKeepsWhatOnlyThatHolds) {
  for (const bool canExchange : {true, false}) {
    exchangesFail = !canExchange;
    fs::remove_all(plain());
    fs::remove_all(bundle());
    installEarlier();
    writeFile(plain() + "/bin/Demo", "old", 0755);  // the copy under an application's name
    writeFile(plain() + "/.users/file", "old");
    unpack();
    publish();
    expectRuntime("new");
    expectFilesOfTheUser();
    EXPECT_FALSE(test::exists(plain() + "/bin/Demo"));
    EXPECT_EQ("old", test::readFile(plain() + "/.users/file"));
    EXPECT_FALSE(test::exists(waiting()));
    EXPECT_EQ(2u, namesOfMaster().size());
  }
}

TEST_F(PublishedRuntime, GetsTheHiddenFoldersOfItsHomeAndLosesTheHiddenFiles) {
  installEarlier();
  writeFile(plain() + "/.user", "old");
  unpack();
  writeFile(temp() + "/Contents/Home/.folder/file", "x");
  writeFile(temp() + "/Contents/Home/.file", "x");
  publish();
  expectRuntime("new");
  EXPECT_EQ((FolderNames{".folder", ".user", "bin", "lib", "settings.ini"}),
            test::namesIn(plain()));
  EXPECT_EQ("x", test::readFile(plain() + "/.folder/file"));
}

TEST_F(PublishedRuntime, OfABundleWithAnotherBinFolderLeavesThatInTheBundle) {
  unpack();
  writeFile(temp() + "/bin/tool", "tool", 0755);
  publish();
  expectRuntime("new");
  EXPECT_EQ("tool", test::readFile(bundle() + "/bin/tool"));
}

TEST_F(PublishedRuntime, KeepsTheUsersFilesOfABundleWhoseHomeWasNeverMovedOutOfIt) {
  writeFile(bundle() + "/Contents/Home/bin/java", "old", 0755);
  writeFile(bundle() + "/Contents/Home/settings.ini", "of the runtime");
  writeFile(bundle() + "/settings.ini", "of the bundle");
  unpack();
  publish();
  expectRuntime("new");
  expectFilesOfTheUser();
}

TEST_F(PublishedRuntime, WithoutJavaDoesNotTakeThatOfABundleWhoseHomeWasNeverMovedOutOfIt) {
  writeFile(bundle() + "/Contents/Home/bin/java", "old", 0755);
  unpack();
  fs::remove(temp() + "/Contents/Home/bin/java");
  EXPECT_EQ(1, publishInChild().status);
  EXPECT_EQ("old", test::readFile(bundle() + "/Contents/Home/bin/java"));
  EXPECT_FALSE(test::exists(plain()));
}

TEST_F(PublishedRuntime, TakesNothingThroughALinkInTheEarlierBundle) {
  const test::TempFolder outside;
  writeFile(outside / "Home/secret", "of another user");
  installEarlier();
  fs::remove_all(bundle() + "/Contents");
  fs::create_directory_symlink(outside.path(), bundle() + "/Contents");
  unpack();
  publish();
  expectRuntime("new");
  EXPECT_FALSE(test::exists(plain() + "/secret"));
  EXPECT_EQ(FolderNames{"secret"}, test::namesIn(outside / "Home"));
}

TEST_F(PublishedRuntime, TakesThePlaceOfAFileAndOfALink) {
  for (const std::string& target : {std::string("nowhere"), plain(), std::string()}) {
    for (const std::string& path : {plain(), bundle()}) {
      fs::remove_all(plain());
      fs::remove_all(bundle());
      if (target.empty()) {
        writeFile(path, "a file");
      } else {
        fs::create_symlink(target, path);
      }
      unpack();
      publish();
      expectRuntime("new");
      EXPECT_FALSE(fs::is_symlink(path)) << target;
    }
  }
}

TEST_F(PublishedRuntime, WithoutJavaChangesNothingInstalled) {
  installEarlier();
  unpack();
  fs::remove(temp() + "/Contents/Home/bin/java");
  EXPECT_EQ(1, publishInChild().status);
  expectNothingInstalledChanged();
}

TEST_F(PublishedRuntime, WhoseTemporaryFolderIsGoneChangesNothingInstalledAndSaysSo) {
  installEarlier();
  const test::Result result = publishInChild();
  EXPECT_EQ(1, result.status);
  EXPECT_NE(std::string::npos, result.out.find("The folder of the JRE is gone, nothing of it"));
  expectNothingInstalledChanged();
}

TEST_F(PublishedRuntime, OfWhichAnEntryCannotBeMovedChangesNothingInstalled) {
  installEarlier();
  unpack();
  unmovable = "/Contents/Home/lib";
  EXPECT_EQ(1, publishInChild().status);
  expectNothingInstalledChanged();
}

TEST_F(PublishedRuntime, InWhichAFileMeetsAFolderOfTheUsersChangesNothingInstalled) {
  for (const std::string& place : {plain() + "/lib/modules/mine", bundle() + "/file/mine"}) {
    fs::remove_all(plain());
    fs::remove_all(bundle());
    installEarlier();
    writeFile(place, "of the user's");
    unpack();
    writeFile(temp() + "/file", "new");
    EXPECT_EQ(1, publishInChild().status);
    EXPECT_EQ("of the user's", test::readFile(place));
    expectNothingInstalledChanged();
  }
}

TEST_F(PublishedRuntime, WhoseBundleCannotLeaveItIsFinishedByTheNextRun) {
  unpack();
  unmovable = "/.plugin";
  EXPECT_EQ(1, publishInChild().status);
  EXPECT_EQ("new", test::readFile(plain() + "/bin/java"));
  unmovable.clear();
  test::capture([this] { finishInterruptedRuntimes(run_.masterFolder); });
  expectRuntime("new");
}

TEST_F(PublishedRuntime, StaysAsItWasWhereTheNewOneCanNeitherBeExchangedNorMoved) {
  exchangesFail = true;
  unmovable = "/QuorvaneTemp-";
  installEarlier();
  unpack();
  EXPECT_EQ(1, publishInChild().status);
  unmovable.clear();
  expectNothingInstalledChanged();
}

TEST_F(PublishedRuntime, ThatIsAPlainHomeIsLinkedIntoABundleThatHoldsNothingElse) {
  copyPlainHome();
  publish();
  expectRuntime("new");
  EXPECT_EQ((FolderNames{".hidden", "bin"}), test::namesIn(plain()));
  EXPECT_EQ((FolderNames{"Contents"}), test::namesIn(bundle()));
  EXPECT_EQ((FolderNames{"Home"}), test::namesIn(bundle() + "/Contents"));
  EXPECT_EQ(2u, namesOfMaster().size());
}

TEST_F(PublishedRuntime, ThatIsAPlainHomeIsTheOneThatIsChosenAndThatTheToolPathsReach) {
  copyPlainHome();
  publish();
  test::capture([this] {
    using Text = std::unique_ptr<char, decltype(&free)>;
    const Text chosen(pickAndAllocLatestFromMaster(run_.masterFolder, "Mac64JRE"), &free);
    EXPECT_EQ(plain(), folder_ / chosen.get());
    const Text java(getJavaExecutable(bundle().c_str()), &free);
    const Text unpack200(getUnpack200Executable(bundle().c_str()), &free);
    EXPECT_EQ(fs::canonical(plain() + "/bin/java"), fs::canonical(java.get()));
    EXPECT_EQ(fs::canonical(plain() + "/bin/unpack200"), fs::canonical(unpack200.get()));
  });
}

TEST_F(PublishedRuntime, ThatIsAPlainHomeIsLoggedAsOneBeforeTheSteps) {
  copyPlainHome();
  EXPECT_TRUE(test::containsInOrder(
      test::logLinesOf([this] { publishHere(); }),
      {"[Extractor] Renamed JRE folder to " + bundle(), "[OSX JRE] Alias JRE path is " + plain(),
       "[OSX JRE] No Contents/Home in " + bundle() + ", it becomes " + plain() + " itself",
       "[LNS] Running mv \"" + bundle() + "/Contents/Home\"/* \"" + plain() + "\""}));
}

TEST_F(PublishedRuntime, ThatIsAPlainHomeKeepsTheUsersFilesOfBothEarlierFolders) {
  installEarlier();
  copyPlainHome();
  publish();
  expectRuntime("new");
  expectFilesOfTheUser();
}

TEST_P(DisturbedPublication, OfAFirstRuntimeThatDiesAtAnyRenameLeavesItWholeOrNone) {
  EXPECT_EQ(5, dieAtEveryRename(false));
}

TEST_P(DisturbedPublication, OverAnEarlierRuntimeThatDiesAtAnyRenameLeavesOneOfThemWhole) {
  EXPECT_EQ(GetParam() ? 5 : 7, dieAtEveryRename(true));
}

TEST_P(DisturbedPublication, OfAPlainHomeThatDiesAtAnyRenameLeavesARuntimeWholeOrNone) {
  EXPECT_EQ(3, dieAtEveryRename(false, true));
  EXPECT_EQ(GetParam() ? 3 : 5, dieAtEveryRename(true, true));
}

INSTANTIATE_TEST_SUITE_P(WhereFolders, DisturbedPublication, testing::Bool(), [](const auto& info) {
  return info.param ? "CanBeExchanged" : "CannotBeExchanged";
});
