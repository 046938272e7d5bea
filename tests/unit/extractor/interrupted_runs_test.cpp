#include "extractor/installation/interrupted_runs.h"

#include <filesystem>
#include <string>
#include <vector>

#include "extractor/versions/install_lock.h"
#include "extractor/versions/temp_marks.h"
#include "tests/unit/extractor/runtime_folders.h"

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;
using test::writeFile;

namespace {

class InterruptedRuns : public RuntimeFolders {
 protected:
  // What a run leaves that died between the two folders.
  void installWithWaitingBundle() const {
    installEarlier();
    fs::rename(bundle(), waiting());
  }

  // What a run leaves that died when it had put the earlier home aside.
  void installWithoutHome() const {
    installEarlier();
    fs::copy(bundle(), plain() + "/.plugin",
             fs::copy_options::recursive | fs::copy_options::copy_symlinks);
    fs::rename(plain(), temp());
  }

  Lines finish() {
    return test::logLinesOf([this] { finishInterruptedRuntimes(run_.masterFolder); });
  }
};

}  // namespace

TEST_F(InterruptedRuns, BundleThatWaitsInItsHomeGetsItsPlace) {
  installWithWaitingBundle();
  EXPECT_EQ(Lines{"[Extractor] Finishing the interrupted setup of " + bundle()}, finish());
  expectRuntime("old");
  expectFilesOfTheUser();
  EXPECT_FALSE(test::exists(waiting()));
  EXPECT_EQ(Lines{}, finish());
}

TEST_F(InterruptedRuns, BundleThatWaitsWhereOneIsInItsPlaceIsLeftAloneSilently) {
  installWithWaitingBundle();
  writeFile(bundle() + "/settings.ini", "of the one in its place");
  EXPECT_EQ(Lines{}, finish());
  EXPECT_EQ("of the one in its place", test::readFile(bundle() + "/settings.ini"));
}

TEST_F(InterruptedRuns, LinkInPlaceOfAWaitingBundleIsLeftAloneSilently) {
  installEarlier();
  fs::rename(bundle(), folder_ / "elsewhere");
  fs::create_directory_symlink(folder_ / "elsewhere", waiting());
  EXPECT_EQ(Lines{}, finish());
  EXPECT_FALSE(test::exists(bundle()));
}

TEST_F(InterruptedRuns, BundleThatCannotBeMovedIsLeftToALaterRun) {
  installWithWaitingBundle();
  test::unmovable = "/.plugin";
  EXPECT_EQ((Lines{"[Extractor] Finishing the interrupted setup of " + bundle(),
                   "[Extractor] Unable to move " + waiting() + " there"}),
            finish());
  test::unmovable.clear();
  finish();
  expectRuntime("old");
}

TEST_F(InterruptedRuns, HomeThatIsMissingBesideItsBundleComesFromItsTemporaryFolder) {
  installWithoutHome();
  EXPECT_EQ(Lines{"[Extractor] Finishing the interrupted setup of " + plain()}, finish());
  expectRuntime("old");
  expectFilesOfTheUser();
  EXPECT_FALSE(test::exists(temp()));
  EXPECT_EQ(Lines{}, finish());
}

TEST_F(InterruptedRuns, TemporaryFolderOfALivingRunIsNoMissingHome) {
  installWithoutHome();
  const Descriptor mark = markFolder(temp().c_str());
  EXPECT_EQ(Lines{}, finish());
  EXPECT_FALSE(test::exists(plain()));
}

TEST_F(InterruptedRuns, TemporaryFolderWithoutAWaitingBundleOfThatHomeIsNoMissingHome) {
  installWithoutHome();
  fs::remove(temp() + "/.plugin/Contents/Home");
  EXPECT_EQ(Lines{}, finish());
  fs::create_symlink(folder_ / "Quorvane-Other-1-complete", temp() + "/.plugin/Contents/Home");
  EXPECT_EQ(Lines{}, finish());
  EXPECT_TRUE(test::exists(temp()));
}

TEST_F(InterruptedRuns, HomeThatIsWholeUnderATemporaryNameWithoutABundleIsNotInstalled) {
  installWithoutHome();
  fs::remove_all(bundle());
  EXPECT_EQ(Lines{}, finish());
  EXPECT_FALSE(test::exists(plain()));
}

TEST_F(InterruptedRuns, FinishedRuntimeIsLeftAloneSilently) {
  installEarlier();
  EXPECT_EQ(Lines{}, finish());
  expectRuntime("old");
}

TEST_F(InterruptedRuns, AreLeftToAnotherInstallerThatIsAtWork) {
  installWithWaitingBundle();
  fs::create_directories(folder_ / "QVAppsSharedConfig");
  {
    const InstallLock lock(run_.masterFolder);
    EXPECT_EQ(Lines{"[Extractor] Another installer is at work, unfinished runtimes are left to it"},
              finish());
    EXPECT_FALSE(test::exists(bundle()));
  }
  finish();
  expectRuntime("old");
}
