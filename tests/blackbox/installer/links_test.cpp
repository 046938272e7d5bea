// Symbolic links planted where an installer writes, in a master folder that is open to every user:
// nothing outside of it is written, removed, or has its mode changed. Where the tests run as the
// superuser the installer runs as an ordinary user, who owns what the links lead to, so that only
// the installer itself stands in the way.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <ctime>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "tests/blackbox/installer/online.h"
#include "tests/blackbox/installer/starts.h"
#include "tests/support/account.h"
#include "tests/support/product_system.h"
#include "tests/support/unavailable.h"

namespace fs = std::filesystem;
using test::Installer;

namespace {

// Everything in a folder: path, kind, mode, and content or target.
std::map<std::string, std::string> contentsOf(const std::string& folder) {
  std::map<std::string, std::string> all;
  const auto describe = [](const fs::path& path) {
    struct stat status {};
    lstat(path.c_str(), &status);
    std::string text = std::to_string(status.st_mode) + " ";
    if (S_ISREG(status.st_mode)) {
      text += test::readFile(path);
    } else if (S_ISLNK(status.st_mode)) {
      text += fs::read_symlink(path);
    }
    return text;
  };
  all["."] = describe(folder);
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    all[entry.path().lexically_relative(folder)] = describe(entry.path());
  }
  return all;
}

// What a link is planted for: a place in the master folder, and what it leads to.
struct Plant {
  const char* name;
  const char* place;
  const char* target;  // below the folder outside
};

std::ostream& operator<<(std::ostream& out, const Plant& plant) {
  return out << plant.name;
}

class Links : public testing::Test {
 protected:
  Links() {
    // What a victim may have: a document, and a Java home in a bundle.
    for (const char* name : {"file", "Home/bin/java", "Home/.hidden", "MacOS/JavaAppletPlugin",
                             "Contents/Home/bin/java", "Contents/Home/.hidden"}) {
      test::writeFile(outside(name), "of the victim", 0640);
    }
    fs::permissions(outside(""), static_cast<fs::perms>(0750));
  }

  // As the superuser an installer would be stopped by no mode at all.
  void SetUp() override {
    if (!Installer::isReachableForOrdinary()) {
      return test::unreachable();
    }
  }

  std::string outside(const std::string& name) const { return (installer_ / "outside/") + name; }

  std::string plantAt(const std::string& place, const std::string& target) {
    const fs::path path = installer_.master(place);
    fs::create_directories(path.parent_path());
    fs::remove_all(path);
    fs::create_symlink(outside(target), path);
    return path;
  }

  // Lets all be the ordinary user's, and the shared folder open, as an installer leaves it.
  void share() {
    installer_.write();
    fs::create_directories(installer_.master());
    installer_.becomeOrdinary();
    fs::permissions(installer_.master(), static_cast<fs::perms>(0777));
    before_ = contentsOf(outside(""));
  }

  void expectNothingChangedOutside(const test::Result& result) {
    EXPECT_EQ(before_, contentsOf(outside(""))) << result.out;
  }

  // Lets the carried LZMA tool plant a link in the folder that is being filled, before it does its
  // own work.
  void plantDuringTheRun(const std::string& name) {
    installer_.updater[0] =
        test::fileRecord("lzma64", "#!/bin/sh\nln -s '" + outside("file") +
                                       "' \"$(dirname \"$0\")/" + name + "\" && : > '" + planted() +
                                       "'\n" + "exec '" + test::product("lzma64") + "' \"$@\"\n");
  }
  std::string planted() const { return installer_ / "planted"; }

  Installer installer_;
  std::map<std::string, std::string> before_;
};

class PlantedLink : public Links, public testing::WithParamInterface<Plant> {};

}  // namespace

TEST_P(PlantedLink, IsNotFollowedAndTheInstallationIsMade) {
  plantAt(GetParam().place, GetParam().target);
  share();
  const test::Result result = installer_.run();
  expectNothingChangedOutside(result);
  EXPECT_EQ(0, result.status) << result.out;
  EXPECT_TRUE(installer_.launched());
  EXPECT_EQ("application 3",
            test::readFile(installer_.master("Quorvane-Demo-3-complete/demo.jar")));
  EXPECT_FALSE(fs::is_symlink(installer_.master("Quorvane-Demo-3-complete")));
  EXPECT_FALSE(fs::is_symlink(installer_.master("Quorvane-Mac64JRE-1407-complete")));
}

const Plant kPlants[] = {
    {"LogFolderToAFolder", "logs", ""},
    {"LogFolderToAFile", "logs", "file"},
    {"LogFolderToNothing", "logs", "nothing"},
    {"SharedConfigToAFolder", "QVAppsSharedConfig", ""},
    {"SharedConfigToAFile", "QVAppsSharedConfig", "file"},
    {"SharedConfigToNothing", "QVAppsSharedConfig", "nothing"},
    {"LockToAFile", "QVAppsSharedConfig/InstallLock", "file"},
    {"LockToNothing", "QVAppsSharedConfig/InstallLock", "nothing"},
    {"LockToAFolder", "QVAppsSharedConfig/InstallLock", ""},
    {"QVAppsToAFolder", "QVApps", ""},
    {"UpdaterToAFolder", "Quorvane-Quorvane-5-complete", ""},
    {"UpdaterToAFile", "Quorvane-Quorvane-5-complete", "file"},
    {"UpdaterToNothing", "Quorvane-Quorvane-5-complete", "nothing"},
    {"ApplicationToAFolder", "Quorvane-Demo-3-complete", ""},
    {"ApplicationToAFile", "Quorvane-Demo-3-complete", "file"},
    {"ApplicationToNothing", "Quorvane-Demo-3-complete", "nothing"},
    {"RuntimeToAFolder", "Quorvane-Mac64JRE-1407-complete", ""},
    {"RuntimeToAFile", "Quorvane-Mac64JRE-1407-complete", "file"},
    {"RuntimeToNothing", "Quorvane-Mac64JRE-1407-complete", "nothing"},
    {"BundleToAFolder", "Quorvane-Mac64JRE-1407-complete.plugin", ""},
    {"BundleToAFile", "Quorvane-Mac64JRE-1407-complete.plugin", "file"},
    {"BundleToNothing", "Quorvane-Mac64JRE-1407-complete.plugin", "nothing"},
    // Bundles that look as if a run had died before they were finished.
    {"ContentsOfABundle", "Quorvane-Other-1-complete.plugin/Contents", ""},
    {"ContentsOfABundleToABundlesContents", "Quorvane-Other-1-complete.plugin/Contents",
     "Contents"},
    {"WholeBundle", "Quorvane-Other-1-complete.plugin", ""},
    {"OldTemporaryFolder", "QuorvaneTemp-1-1-app", ""},
    // Files inside a version folder that is reinstalled.
    {"FileOfTheUpdater", "Quorvane-Quorvane-5-complete/lzma64", "file"},
    {"SplashOfTheUpdater", "Quorvane-Quorvane-5-complete/nativesplash.png", "file"},
    {"VersionFileOfTheUpdater", "Quorvane-Quorvane-5-complete/Quorvane-Mac64JRE-version.txt",
     "file"},
    {"FileOfTheApplication", "Quorvane-Demo-3-complete/demo.jar", "file"},
    {"FolderOfTheRuntime", "Quorvane-Mac64JRE-1407-complete/bin", "Home/bin"},
    {"FolderOfTheBundle", "Quorvane-Mac64JRE-1407-complete.plugin/Contents", ""},
    {"ExecutableFolderOfTheBundle", "Quorvane-Mac64JRE-1407-complete.plugin/Contents/MacOS",
     "MacOS"},
};

INSTANTIATE_TEST_SUITE_P(Of, PlantedLink, testing::ValuesIn(kPlants),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(Links, ToAnotherUsersJavaHomeInABundleThatLooksUnfinishedMovesNothing) {
  // All is current but for this bundle, which a run at its start would finish.
  installer_.installCarried();
  installer_.installed.addFolders({"Quorvane-Other-1-complete.plugin/Contents/Home/bin"});
  plantAt("Quorvane-Other-1-complete.plugin/Contents/MacOS", "MacOS");
  plantAt("Quorvane-Other-2-complete.plugin/Contents", "Contents");
  plantAt("Quorvane-Other-3-complete.plugin", "");
  share();
  const test::Result result = installer_.run();
  expectNothingChangedOutside(result);
  EXPECT_EQ(0, result.status) << result.out;
  EXPECT_TRUE(installer_.launched());
}

TEST_F(Links, InEveryNameThatATemporaryFolderMayGetAreNotFollowed) {
  // A standing clock makes the names predictable; the links themselves count as entries.
  constexpr long kNow = 1500000000;
  constexpr int kLinks = 40;
  for (int i = 0; i < kLinks; ++i) {
    plantAt("QuorvaneTemp-" + std::to_string(kNow) + "-" + std::to_string(kLinks + i) + "-app", "");
  }
  share();
  const test::Result result =
      installer_.run({}, withClock(installer_, std::to_string(kNow) + ":0"));
  expectNothingChangedOutside(result);
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(
      logs(result, "[Extractor] Unable to create GU Temp folder - assuming elevation required"))
      << result.out;
}

TEST_F(Links, InEveryNameThatTheLogFileMayGetAreNotFollowed) {
  // With the clock at one second there are a thousand names left.
  setenv("TZ", "UTC", 1);
  for (int millisecond = 0; millisecond < 1000; ++millisecond) {
    char name[64];
    snprintf(name, sizeof name, "logs/Wrapper-2017-07-14-02-40-00-%03d.log", millisecond);
    plantAt(name, "file");
  }
  share();
  const test::Result result = installer_.run({}, withClock(installer_, "1500000000:0"));
  expectNothingChangedOutside(result);
  EXPECT_TRUE(mentions(result, "logs/Wrapper-2017-07-14-02-40-00-")) << result.out;
  EXPECT_EQ(0, result.status) << result.out;
}

TEST_F(Links, HardLinksInEveryNameThatTheLogFileMayGetAreNotWritten) {
  setenv("TZ", "UTC", 1);
  for (int millisecond = 0; millisecond < 1000; ++millisecond) {
    char name[64];
    snprintf(name, sizeof name, "logs/Wrapper-2017-07-14-02-40-00-%03d.log", millisecond);
    installer_.installed.addFolders({"logs"});
    fs::create_hard_link(outside("file"), installer_.master(name));
  }
  share();
  const test::Result result = installer_.run({}, withClock(installer_, "1500000000:0"));
  expectNothingChangedOutside(result);
  EXPECT_TRUE(mentions(result, "logs/Wrapper-2017-07-14-02-40-00-")) << result.out;
  EXPECT_EQ(1000u, test::namesIn(installer_.master("logs")).size());
  EXPECT_EQ(0, result.status) << result.out;
}

TEST_F(Links, HardLinkInPlaceOfTheLockKeepsItsMode) {
  installer_.installed.addFolders({"QVAppsSharedConfig"});
  fs::create_hard_link(outside("file"), installer_.master("QVAppsSharedConfig/InstallLock"));
  share();
  const test::Result result = installer_.run();
  expectNothingChangedOutside(result);
  EXPECT_EQ(0, result.status) << result.out;
}

TEST_F(Links, PipeInPlaceOfTheLockDoesNotBlockTheRun) {
  installer_.installed.addFolders({"QVAppsSharedConfig"});
  ASSERT_EQ(0, mkfifo(installer_.master("QVAppsSharedConfig/InstallLock").c_str(), 0666));
  share();
  const test::Result result = installer_.run();
  EXPECT_FALSE(result.timedOut);
  EXPECT_EQ(0, result.status) << result.out;
}

TEST_F(Links, ThatAnArchiveFindsInItsWayEndTheRun) {
  plantDuringTheRun("nativesplash.png");
  share();
  const test::Result result = installer_.run();
  expectNothingChangedOutside(result);
  EXPECT_TRUE(test::exists(planted()));
  EXPECT_EQ(1, result.status) << result.out;
  EXPECT_TRUE(mentions(
      result, "Refused archive file nativesplash.png (path passes through a symbolic link)\n"))
      << result.out;
}

TEST_F(Links, InTheWayOfTheSplashOverrideAreNotFollowed) {
  installer_.tail.canOverrideSplash = "1";
  installer_.properties = {{"splash_image", "TWE="}};
  plantDuringTheRun("nativesplash.png");
  installer_.updater[2] = test::fileRecord("other.txt", "");
  share();
  const test::Result result = installer_.run();
  expectNothingChangedOutside(result);
  EXPECT_TRUE(test::exists(planted()));
  EXPECT_TRUE(mentions(result, "[Extractor] Overwriting splash image at ")) << result.out;
  EXPECT_EQ(0, result.status) << result.out;
  EXPECT_TRUE(installer_.launched());
}

TEST_F(Links, InPlaceOfTheVersionFileAreNotFollowedByItsDownload) {
  UpdateSite site;
  site.publishGoodSite();
  installer_.makeOnline(site.serve());
  plantDuringTheRun("Quorvane-Mac64JRE-version.txt");
  share();
  const test::Result result = installer_.run();
  expectNothingChangedOutside(result);
  EXPECT_TRUE(test::exists(planted()));
  EXPECT_TRUE(mentions(result, "[JREDownload] Fetching JRE Version from http://127.0.0.1:"))
      << result.out;
  EXPECT_EQ(0, result.status) << result.out;
  EXPECT_EQ("1500\n", test::readFile(installer_.master(
                          "Quorvane-Quorvane-5-complete/Quorvane-Mac64JRE-version.txt")));
}

// A decompressor that writes through what is in the place of its output.
static std::string writingThrough() {
  return test::fileRecord("lzma64", "#!/bin/sh\n'" QUORVANE_BIN
                                    "/lzma64' d \"$2\" \"$3.x\" && cat \"$3.x\" > \"$3\" && "
                                    "rm \"$3.x\"\n");
}

TEST_F(Links, InPlaceOfTheDownloadedArchiveAreNotWrittenThrough) {
  for (const char* link : {"ln -s", "ln"}) {
    const bool isSymbolic = std::string(link) == "ln -s";
    UpdateSite site;
    site.publishGoodSite();
    installer_.makeOnline(site.servePlanting(
        installer_.master(), std::string(link) + " '" + outside("file") + "' JREArchive.p2"));
    installer_.updater[0] = writingThrough();
    share();
    const test::Result result = installer_.run();
    expectNothingChangedOutside(result);
    EXPECT_EQ(isSymbolic ? 1 : 0, result.status) << result.out;
    EXPECT_EQ(isSymbolic, mentions(result, "Failed to decompress JRE archive\n")) << result.out;
    EXPECT_EQ(isSymbolic, mentions(result, "[JREDownload] Not following link ")) << result.out;
    fs::remove_all(installer_.master());
  }
}

// The copy of java under the application's name, which a launch makes.
class NamedExecutable : public Links, public testing::WithParamInterface<Plant> {};

TEST_P(NamedExecutable, PlantedAsALinkIsReplacedAndTheLaunchGoesOn) {
  installer_.installCarried();
  const std::string java = installer_.runtimeFolder() + "/bin/Demo";
  plantAt(GetParam().place, GetParam().target);
  share();
  const test::Result result = installer_.run();
  expectNothingChangedOutside(result);
  EXPECT_EQ(0, result.status) << result.out;
  EXPECT_TRUE(installer_.launched());
  EXPECT_FALSE(fs::is_symlink(java));
  EXPECT_EQ(test::readFile(QUORVANE_BIN "/fake_java"), test::readFile(java));
}

INSTANTIATE_TEST_SUITE_P(
    Links, NamedExecutable,
    testing::Values(
        Plant{"ToAFile", "Quorvane-Mac64JRE-1407-complete/bin/Demo", "file"},
        Plant{"ToNothing", "Quorvane-Mac64JRE-1407-complete/bin/Demo", "nothing"},
        Plant{"UnfinishedToAFile", "Quorvane-Mac64JRE-1407-complete/bin/Demo.part", "file"},
        Plant{"UnfinishedToNothing", "Quorvane-Mac64JRE-1407-complete/bin/Demo.part", "nothing"}),
    [](const auto& info) { return std::string(info.param.name); });
