// Whole offline installations and updates, through the real executable.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "support/owned.h"
#include "tests/blackbox/installer/current_installation.h"

namespace fs = std::filesystem;
using test::fileRecord;
using test::Installer;
using test::nestedRecord;
using test::signedBy;

namespace {

const char kUpdaterFolder[] = "Quorvane-Quorvane-5-complete";
const char kRuntimeFolder[] = "Quorvane-Mac64JRE-1407-complete";
const char kRuntimeBundle[] = "Quorvane-Mac64JRE-1407-complete.plugin";
const char kAppFolder[] = "Quorvane-Demo-3-complete";

const tools::SigningKey& key() {
  static const tools::SigningKey kKey = test::testKey("first");
  return kKey;
}

class Installation : public testing::Test {
 protected:
  test::Result install(const std::vector<std::string>& words = {}) {
    installer_.write();
    return installer_.run(words);
  }

  // Nothing of this run counts as installed.
  void expectNothingInstalled() {
    EXPECT_TRUE(installer_.versionFolders().empty());
    EXPECT_FALSE(installer_.launched());
  }

  Installer installer_;
};

}  // namespace

TEST_F(Installation, WithARuntimeThatHoldsAHiddenFolderUnpacksPackedEntriesWithItsTool) {
  installer_.runtime =
      nestedRecord("runtime", Installer::runtimeRecords() +
                                  fileRecord("Contents/Home/.systemPrefs/prefs.xml", "<prefs/>"));
  const std::string packed = test::field("2") + test::field("lib/a.jar") + test::field("6");
  installer_.application[0] =
      nestedRecord("application", Installer::applicationRecords("3") + packed + "packed");
  const test::Result result = install();
  EXPECT_EQ(0, result.status) << result.out;
  EXPECT_EQ("packed", test::readFile(installer_.master(kAppFolder) + "/lib/a.jar"));
  EXPECT_EQ(installer_.runtimeFolder(),
            fs::read_symlink(installer_.master(kRuntimeBundle) + "/Contents/Home").string());
  EXPECT_EQ("<prefs/>", test::readFile(installer_.runtimeFolder() + "/.systemPrefs/prefs.xml"));
}

TEST_F(Installation, OnAFreshAccountMakesAllVersionFoldersAndLaunches) {
  const test::Result result = install();
  EXPECT_EQ(0, result.status) << result.out;
  EXPECT_EQ((std::vector<std::string>{kAppFolder, kRuntimeFolder, kRuntimeBundle, kUpdaterFolder}),
            installer_.versionFolders());
  EXPECT_TRUE(installer_.launched());
  EXPECT_TRUE(installer_.tempFolders().empty());
  EXPECT_EQ("the updater", test::readFile(installer_.master(kUpdaterFolder) + "/updater.jar"));
  EXPECT_EQ("application 3", test::readFile(installer_.master(kAppFolder) + "/demo.jar"));
  EXPECT_TRUE(fs::exists(installer_.runtimeFolder() + "/bin/java"));
  EXPECT_TRUE(fs::is_symlink(installer_.runtimeFolder() + ".plugin/Contents/Home"));
}

TEST_F(Installation, OfARuntimeWhoseVersionIsOneDigitInstallsTheCarriedOne) {
  installer_.tail.jreVersion = "8";
  const test::Result result = install();
  EXPECT_EQ(0, result.status) << result.out;
  EXPECT_TRUE(fs::exists(installer_.master("Quorvane-Mac64JRE-8-complete/bin/java")));
  EXPECT_TRUE(installer_.launched());
}

TEST_F(Installation, LogsItsStepsInTheirOrder) {
  const test::Result result = install();
  EXPECT_TRUE(test::containsInOrder(
      test::logLinesOf(result.out),
      {"[Extractor] GU folder is " + installer_.master(kUpdaterFolder),
       "[Extractor] Ensuring LZMA is executable.",
       "[Extractor] Extracted GU and GU Version",
       "[Extractor] Renaming GU folder to " + installer_.master(kUpdaterFolder),
       "[Extractor] Recreating GU location",
       "[Extractor] LZMA path is " + installer_.master(kUpdaterFolder) + "/lzma64",
       "[Extractor] Native Splash PNG path is " + installer_.master(kUpdaterFolder) +
           "/nativesplash.png",
       "[Extractor] Configuring splash",
       "[Extractor] Showing splash",
       "[Extractor] Setting up a JRE",
       "+++ Start: Extracting Offline JRE",
       "[Extractor] We want to query the JRE version to enable proxy detection.",
       "[Extractor] Invalid Update URL. Skipping...",
       "[Extractor] Offline installer - no need to download JRE, will extract",
       "[Extractor] Extracting JRE archive...",
       "[Extractor] Extracted JRE Mac64JRE",
       "[Extractor] Regenerating jsa...",
       "--- End: Extracting Offline JRE",
       "[Extractor] Renamed JRE folder to " + installer_.master(kRuntimeBundle),
       "+++ Start: OSX JRE initialisation",
       "[Extractor] Ensuring JRE bin is writable.",
       "[Extractor] Extracting App...",
       "[Extractor] Renaming App folder to " + installer_.master(kAppFolder),
       "[Extractor] Will now run latest GU Quorvane-Quorvane-5-complete"}));
}

TEST_F(Installation, TheSecondTimeLaunchesAtOnce) {
  install();
  fs::remove(installer_.jvmReport());
  const test::Result result = installer_.run();
  EXPECT_EQ(0, result.status);
  EXPECT_TRUE(logs(result, "[Extractor] Running without extraction now"));
  EXPECT_TRUE(installer_.launched());
}

TEST_F(Installation, OfANewApplicationKeepsTheOldVersion) {
  install();
  installer_.tail.appVersion = "4";
  installer_.application[0] = nestedRecord("application", Installer::applicationRecords("4"));
  const test::Result result = install();
  EXPECT_EQ(0, result.status) << result.out;
  EXPECT_EQ("application 4",
            test::readFile(installer_.master("Quorvane-Demo-4-complete/demo.jar")));
  EXPECT_EQ("application 3", test::readFile(installer_.master(kAppFolder) + "/demo.jar"));
  EXPECT_TRUE(fs::exists(installer_.runtimeFolder() + "/bin/java"));
  EXPECT_TRUE(installer_.tempFolders().empty());
}

// Puts into each folder what an application keeps there, and spoils what is the installer's.
static void useFolders(const std::vector<std::string>& folders) {
  for (const std::string& folder : folders) {
    test::writeFile(folder + "/user-settings.ini", "of the user's", 0640);
    test::writeFile(folder + "/.user/history", "of the user's", 0600);
  }
}

static void expectUsed(const std::vector<std::string>& folders) {
  for (const std::string& folder : folders) {
    EXPECT_EQ("of the user's", test::readFile(folder + "/user-settings.ini")) << folder;
    EXPECT_EQ(0640u, test::modeOf(folder + "/user-settings.ini")) << folder;
    EXPECT_EQ("of the user's", test::readFile(folder + "/.user/history")) << folder;
  }
}

TEST_F(Installation, OfTheSameRuntimeAndApplicationAgainKeepsWhatTheUserPutThere) {
  install();
  const std::string application = installer_.master("Quorvane-Demo-3-complete");
  const std::vector<std::string> folders = {application, installer_.runtimeFolder(),
                                            installer_.runtimeFolder() + ".plugin"};
  useFolders(folders);
  test::writeFile(installer_.runtimeFolder() + "/bin/java", "spoilt");
  test::writeFile(application + "/demo.jar", "spoilt");
  installer_.tail.guVersion = "6";
  EXPECT_EQ(0, install().status);
  expectUsed(folders);
  EXPECT_EQ("application 3", test::readFile(application + "/demo.jar"));
  EXPECT_EQ(test::readFile(QUORVANE_BIN "/fake_java"),
            test::readFile(installer_.runtimeFolder() + "/bin/java"));
  EXPECT_TRUE(fs::exists(installer_.runtimeFolder() + ".plugin/Contents/Home/bin/java"));
  EXPECT_TRUE(installer_.tempFolders().empty());
}

TEST_F(Installation, OfTheSameUpdaterAndApplicationAgainKeepsWhatTheUserPutThere) {
  install();
  fs::remove_all(installer_.runtimeFolder());
  fs::remove_all(installer_.runtimeFolder() + ".plugin");
  const std::vector<std::string> folders = {installer_.master(kUpdaterFolder),
                                            installer_.master("Quorvane-Demo-3-complete")};
  useFolders(folders);
  test::writeFile(installer_.master(kUpdaterFolder) + "/updater.jar", "spoilt");
  EXPECT_EQ(0, install().status);
  expectUsed(folders);
  EXPECT_EQ("the updater", test::readFile(installer_.master(kUpdaterFolder) + "/updater.jar"));
  EXPECT_TRUE(installer_.tempFolders().empty());
}

TEST_F(Installation, OfARuntimeAsASiteHasItLeavesOutTheRecordThatSaysWhichItIs) {
  installer_.runtime =
      nestedRecord("runtime", Installer::runtimeRecords() +
                                  fileRecord("qvArcSpBlock_Component", "Mac64JRE 1407"));
  EXPECT_EQ(0, install().status);
  EXPECT_TRUE(fs::exists(installer_.runtimeFolder() + "/bin/java"));
  EXPECT_FALSE(fs::exists(installer_.runtimeFolder() + ".plugin/qvArcSpBlock_Component"));
}

TEST_F(Installation, RunsTheExtractedJavaToWriteItsClassData) {
  install();
  const std::string words = test::readFile(installer_.javaReport());
  EXPECT_NE(std::string::npos, words.find("-Xshare:dump"));
}

TEST_F(Installation, WhoseLzmaToolCannotBeMadeExecutableSaysSoAndGoesOn) {
  installer_.updater[0] = fileRecord("another-tool", "nothing is compressed");
  installer_.updater[1] = fileRecord("updater.p2", Installer::updaterRecords());
  installer_.runtime = fileRecord("runtime.p2", Installer::runtimeRecords());
  installer_.application[0] = fileRecord("application.p2", Installer::applicationRecords("3"));
  const test::Result result = install();
  EXPECT_EQ(0, result.status) << result.out;
  EXPECT_TRUE(test::containsInOrder(
      test::logLinesOf(result.out),
      {"[Extractor] Ensuring LZMA is executable.",
       "[Extractor] ***************************** Error setting LZMA executable!",
       "[Extractor] Extracted GU and GU Version"}));
  EXPECT_TRUE(installer_.launched());
}

TEST_F(Installation, ThatIsElevatedInstallsAndLaunchesNothing) {
  const test::Result result = install({"--elevated"});
  EXPECT_EQ(0, result.status);
  EXPECT_EQ(4u, installer_.versionFolders().size());
  EXPECT_FALSE(installer_.launched());
}

TEST_F(Installation, ThatIsSilentStillConfiguresTheSplashButNeverShowsIt) {
  const test::Result result = install({"-silent"});
  EXPECT_EQ(0, result.status);
  EXPECT_TRUE(test::containsInOrder(test::linesOf(result.out),
                                    {"[Splash] configureSplash with URL " +
                                     installer_.master(kUpdaterFolder) + "/nativesplash.png"}));
  EXPECT_TRUE(
      test::containsInOrder(test::logLinesOf(result.out),
                            {"[Extractor] Is silent install is 1", "[Extractor] Configuring splash",
                             "[Extractor] Showing splash"}));
  EXPECT_EQ(std::string::npos, result.out.find("[Splash] Resizing"));
  EXPECT_TRUE(installer_.launched());
}

TEST_F(Installation, InAWindowSystemShowsItsSplashAndLaunches) {
  installer_.write();
  const test::Result result = installer_.run({}, {}, true);
  EXPECT_EQ(0, result.status) << result.out;
  EXPECT_TRUE(installer_.launched());
}

TEST_F(Installation, WithoutAnUpdaterAndNothingInstalledEndsWithStatus1) {
  installer_.tail.guVersion.clear();
  const test::Result result = install();
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(test::containsInOrder(test::logLinesOf(result.out),
                                    {"[Extractor] Note: No latest JRE version exists",
                                     "[Extractor] Note: No latest GU version exists",
                                     "[Extractor] Unable to run (we are just a launcher)"}));
}

TEST_F(Installation, SplashOverrideReplacesTheCarriedImage) {
  installer_.tail.canOverrideSplash = "1";
  installer_.updater[2] = fileRecord("other.txt", "");
  installer_.properties = {{"splash_image", "TWE="}};
  EXPECT_EQ(0, install().status);
  EXPECT_EQ("Ma", test::readFile(installer_.master(kUpdaterFolder) + "/nativesplash.png"));
}

TEST_F(Installation, SplashOverrideWithoutAnImageWritesNothing) {
  installer_.tail.canOverrideSplash = "1";
  installer_.updater[2] = fileRecord("other.txt", "");
  const test::Result result = install();
  EXPECT_TRUE(logs(result, "[Extractor] Authorised to override the splash image."));
  EXPECT_FALSE(fs::exists(installer_.master(kUpdaterFolder) + "/nativesplash.png"));
}

TEST_F(Installation, SplashImageIsIgnoredWhenTheOverrideIsNotAllowed) {
  installer_.properties = {{"splash_image", "TWE="}};
  install();
  EXPECT_EQ("no image", test::readFile(installer_.master(kUpdaterFolder) + "/nativesplash.png"));
}

TEST_F(Installation, OfSignedArchivesIsVerified) {
  installer_.sign(key());
  installer_.properties = {{"require_signature", "true"}};
  const test::Result result = install();
  EXPECT_EQ(0, result.status) << result.out;
  EXPECT_TRUE(logs(result, "[ExtractArchive] Archive signature verified."));
  EXPECT_EQ(4u, installer_.versionFolders().size());
}

TEST_F(Installation, OfAnUpdaterSignedWithAnotherKeyInstallsNothing) {
  installer_.sign(test::testKey("second"));
  installer_.tail.publicKey = key().publicKeyHex();
  const test::Result result = install();
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(logs(
      result, "[Extractor] The GenericUpdater archive was rejected, nothing of it is installed"));
  expectNothingInstalled();
  EXPECT_TRUE(installer_.tempFolders().empty());
}

TEST_F(Installation, OfARuntimeWithAWrongSignatureInstallsNoRuntime) {
  installer_.sign(key());
  installer_.runtime =
      nestedRecord("runtime", signedBy(test::testKey("second"), Installer::runtimeRecords()));
  const test::Result result = install();
  EXPECT_EQ(1, result.status);
  EXPECT_EQ(std::vector<std::string>{kUpdaterFolder}, installer_.versionFolders());
  EXPECT_TRUE(logs(result, "[Extractor] The JRE archive was rejected, nothing of it is installed"));
}

TEST_F(Installation, OfAnApplicationWithAWrongSignatureKeepsTheOldOneRunning) {
  install();
  installer_.sign(key());
  installer_.tail.appVersion = "4";
  installer_.application[0] = nestedRecord(
      "application", signedBy(test::testKey("second"), Installer::applicationRecords("4")));
  const test::Result result = install();
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(
      logs(result, "[Extractor] The application archive was rejected, nothing of it is installed"));
  EXPECT_FALSE(fs::exists(installer_.master("Quorvane-Demo-4-complete")));
  EXPECT_EQ("application 3", test::readFile(installer_.master(kAppFolder) + "/demo.jar"));
}

TEST_F(Installation, OfAnUnsignedArchiveIsRefusedWhereSignaturesAreRequired) {
  installer_.tail.publicKey = key().publicKeyHex();
  installer_.properties = {{"require_signature", "true"}};
  EXPECT_EQ(1, install().status);
  expectNothingInstalled();
}

TEST_F(Installation, OfAnUnsignedArchiveIsAcceptedByDefault) {
  installer_.tail.publicKey = key().publicKeyHex();
  EXPECT_EQ(0, install().status);
  EXPECT_TRUE(installer_.launched());
}

TEST_F(Installation, OfASignedArchiveWithoutAKeyAbortsAndInstallsNothing) {
  installer_.sign(key());
  installer_.tail.publicKey = "";
  const test::Result result = install();
  EXPECT_EQ(SIGABRT, result.signal);
  expectNothingInstalled();
}

TEST_F(Installation, OfASignedArchiveWithADamagedKeyAbortsAndInstallsNothing) {
  installer_.sign(key());
  installer_.tail.publicKey = "30820122deadbeef";
  const test::Result result = install();
  EXPECT_EQ(SIGABRT, result.signal);
  expectNothingInstalled();
}

TEST_F(Installation, OfAnInstalledUpdaterThatIsNewerRunsThatOne) {
  installer_.installUpdater("6");
  const test::Result result = install();
  EXPECT_EQ(0, result.status);
  EXPECT_TRUE(logs(result, "[Extractor] Will now run latest GU Quorvane-Quorvane-6-complete"));
}

TEST_F(Installation, ThatIsElevatedAndSilentInstallsAndLaunchesNothing) {
  const test::Result result = install({"--elevated", "-silent"});
  EXPECT_EQ(0, result.status);
  EXPECT_EQ(4u, installer_.versionFolders().size());
  EXPECT_FALSE(installer_.launched());
}

TEST_F(Installation, ThatLostItsEndInstallsNoApplication) {
  installer_.application.pop_back();
  const test::Result result = install();
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(logs(result, "[Extractor] The installer ends before the application archive"));
  EXPECT_FALSE(fs::exists(installer_.master(kAppFolder)));
}

TEST_F(Installation, ThatIsCutAnywhereInItsLastRecordInstallsNoApplication) {
  const std::string record = nestedRecord("more", fileRecord("more.jar", "more"));
  const size_t head = record.find("more");
  for (const size_t length : {size_t{1}, head, head + 4, record.size() / 2, record.size() - 1}) {
    SCOPED_TRACE(length);
    installer_.application.back() = record.substr(0, length);
    EXPECT_EQ(1, install().status);
    EXPECT_FALSE(fs::exists(installer_.master(kAppFolder)));
  }
}

TEST_F(Installation, OfAnEntryThatCannotBeDecompressedInstallsNothing) {
  installer_.updater[2] = fileRecord("help.txt.l2", "not compressed");
  const test::Result result = install();
  EXPECT_EQ(1, result.status);
  EXPECT_NE(std::string::npos, result.out.find("help.txt.l2 could not be decompressed"));
  expectNothingInstalled();
}

TEST_F(Installation, OfARuntimeWithoutJavaInstallsNoRuntime) {
  installer_.runtime = nestedRecord("runtime", fileRecord("Contents/Home/release", "none"));
  const test::Result result = install();
  EXPECT_EQ(1, result.status);
  EXPECT_NE(std::string::npos,
            result.out.find("The JRE archive was rejected or holds no bin/java"));
  EXPECT_EQ(std::vector<std::string>{kUpdaterFolder}, installer_.versionFolders());
}

TEST_F(Installation, OfAnUpdaterWithoutALaunchFileInstallsNothing) {
  installer_.updater[1] = nestedRecord("updater", fileRecord("updater.jar", "x"));
  EXPECT_EQ(1, install().status);
  expectNothingInstalled();
}

TEST_F(Installation, OfAnApplicationWithoutAnyFileInstallsNoApplication) {
  installer_.application = {test::field(""), test::field("")};
  const test::Result result = install();
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(logs(result,
                   "[Extractor] The archives of the application are empty, nothing of it is "
                   "installed"));
  EXPECT_FALSE(fs::exists(installer_.master(kAppFolder)));
  EXPECT_TRUE(installer_.tempFolders().empty());
  EXPECT_FALSE(installer_.launched());
}

TEST_F(Installation, EmptyPlaceholderArchiveIsAccepted) {
  installer_.updater[3] = test::field("");
  EXPECT_EQ(0, install().status);
  EXPECT_TRUE(installer_.launched());
}

TEST_F(Installation, RemovesTheTemporaryFoldersOfAnInstallationThatWasKilled) {
  const std::string tool = installer_.updater[0];
  installer_.updater[0] = fileRecord("lzma64", "#!/bin/sh\nkill -9 $PPID\n");
  EXPECT_EQ(SIGKILL, install().signal);
  const std::vector<std::string> left = installer_.tempFolders();
  ASSERT_EQ(1u, left.size());
  installer_.updater[0] = tool;
  const test::Result result = install();
  EXPECT_EQ(0, result.status);
  EXPECT_TRUE(installer_.tempFolders().empty());
  EXPECT_TRUE(
      logs(result, "[Extractor] Removing old temporary folder " + installer_.master(left[0])));
}

TEST_F(Installation, LeavesTheTemporaryFoldersOfALivingOne) {
  test::writeFile(installer_.master("QuorvaneTemp-1-1-app/x"), "x");
  const Descriptor mark(
      open(installer_.master("QuorvaneTemp-1-1-app").c_str(), O_RDONLY | O_DIRECTORY));
  ASSERT_EQ(0, flock(mark.get(), LOCK_SH));
  EXPECT_EQ(0, install().status);
  EXPECT_EQ(std::vector<std::string>{"QuorvaneTemp-1-1-app"}, installer_.tempFolders());
}

TEST_F(Installation, ThatIsCurrentLaunchesWithoutWaitingForAnother) {
  install();
  // As a run leaves it that dies between the two folders of a runtime.
  const std::string bundle = installer_.master(kRuntimeBundle);
  fs::rename(bundle, installer_.runtimeFolder() + "/.plugin");
  fs::remove(installer_.jvmReport());
  {
    const Descriptor lock(
        open(installer_.master("QVAppsSharedConfig/InstallLock").c_str(), O_RDONLY));
    ASSERT_EQ(0, flock(lock.get(), LOCK_EX));
    const test::Result result = install();
    EXPECT_FALSE(result.timedOut);
    EXPECT_EQ(0, result.status) << result.out;
    EXPECT_TRUE(installer_.launched());
    EXPECT_FALSE(mentions(result, "waiting for it"));
    EXPECT_FALSE(fs::exists(bundle));
  }
  EXPECT_EQ(0, install().status);
  EXPECT_TRUE(fs::exists(bundle + "/Contents/Home/bin/java"));
}

TEST_F(Installation, WhereTheMasterFolderIsAFileAssumesThatElevationIsNeeded) {
  test::writeFile(installer_.master(), "a file");
  const test::Result result = install();
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(
      logs(result, "[Extractor] Unable to create GU Temp folder - assuming elevation required"));
}

TEST_F(Installation, TwoAtTheSameTimeBothEndWithAWorkingInstallation) {
  installer_.write();
  std::vector<test::Result> results(4);
  std::vector<std::thread> threads;
  for (test::Result& result : results) {
    threads.emplace_back([this, &result] { result = installer_.run(); });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  for (const test::Result& result : results) {
    EXPECT_EQ(0, result.status) << result.out;
    EXPECT_NE(std::string::npos, result.out.find("[JNILauncher] Done!")) << result.out;
  }
  EXPECT_EQ(4u, installer_.versionFolders().size());
  EXPECT_TRUE(installer_.tempFolders().empty());
}
