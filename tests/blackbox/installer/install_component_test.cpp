// `--install COMPONENT VERSION ARCHIVE`: one downloaded component, through the real executable.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "support/owned.h"
#include "support/process/exit_status.h"
#include "tests/blackbox/installer/current_installation.h"
#include "tests/support/own_root.h"
#include "tests/support/product_system.h"
#include "tests/support/unavailable.h"

namespace fs = std::filesystem;
using test::fileRecord;
using test::Installer;

namespace {

const char kOldApp[] = "Quorvane-Demo-3-complete";
const char kNewApp[] = "Quorvane-Demo-4-complete";

const tools::SigningKey& firstKey() {
  static const tools::SigningKey kKey = test::testKey("first");
  return kKey;
}

const tools::SigningKey& secondKey() {
  static const tools::SigningKey kKey = test::testKey("second");
  return kKey;
}

// The record that says what an archive of a site is.
std::string identity(const std::string& component, const std::string& version) {
  return fileRecord("qvArcSpBlock_Component", component + " " + version);
}

std::string application4() {
  return Installer::applicationRecords("4") + fileRecord("version.txt", "4") +
         identity("Demo", "4");
}

// An installed application 3 with updater 5 and runtime 1407, and files of a site in a folder.
class InstallComponent : public CurrentInstallation {
 protected:
  InstallComponent() {
    installer_.tail.publicKey = firstKey().publicKeyHex();
    installer_.write();
  }

  // Writes the file of a site and returns its path.
  std::string put(const std::string& bytes) {
    test::writeFile(installer_ / "download", bytes);
    return installer_ / "download";
  }

  std::string putSigned(const std::string& records) {
    return put(test::compressed(test::signedBy(firstKey(), records)));
  }

  test::Command request(const std::string& component, const std::string& version,
                        const std::string& archive) {
    return installer_.command({"--install", component, version, archive});
  }

  test::Result install(const std::string& component, const std::string& version,
                       const std::string& archive) {
    return test::run(request(component, version, archive));
  }

  static std::string lastLine(const test::Result& result) {
    const std::vector<std::string> lines = test::linesOf(result.out);
    return lines.empty() ? "" : lines.back();
  }

  // The last line of the log file that was written last.
  std::string lastLogged() {
    std::vector<std::string> logs;
    for (const std::string& name : test::namesIn(installer_.master("logs"))) {
      logs.push_back(installer_.master("logs/" + name));
    }
    std::sort(logs.begin(), logs.end());
    const std::vector<std::string> lines =
        test::logLinesOf(logs.empty() ? "" : test::readFile(logs.back()));
    return lines.empty() ? "" : lines.back();
  }

  // The installation is what it was, without a trace of the request but a log that says why.
  void expectRefused(const test::Result& result, int status, const std::string& why) {
    EXPECT_EQ(status, result.status) << result.out << result.err;
    EXPECT_EQ("Not installed: " + why, lastLine(result));
    EXPECT_EQ("[Install] Not installed: " + why, lastLogged());
    expectUntouched();
  }

  void expectUntouched() {
    EXPECT_FALSE(fs::exists(installer_.master(kNewApp)));
    EXPECT_EQ(before_, installer_.versionFolders());
    EXPECT_TRUE(installer_.tempFolders().empty());
    EXPECT_FALSE(installer_.launched());
    EXPECT_EQ("application 3", test::readFile(installer_.master(kOldApp) + "/demo.jar"));
  }

  void expectInstalled(const test::Result& result) {
    EXPECT_EQ(0, result.status) << result.out << result.err;
    EXPECT_EQ("Installed Demo 4", lastLine(result));
    expectApplication4();
    EXPECT_TRUE(installer_.tempFolders().empty());
    EXPECT_FALSE(installer_.launched());
  }

  void expectApplication4() {
    const std::string folder = installer_.master(kNewApp);
    EXPECT_EQ("application 4", test::readFile(folder + "/demo.jar"));
    EXPECT_EQ(Installer::applicationLaunchFile(), test::readFile(folder + "/QuorvaneLaunch"));
    EXPECT_EQ("4", test::readFile(folder + "/version.txt"));
    EXPECT_EQ(3u, test::namesIn(folder).size());
    EXPECT_TRUE(fs::exists(installer_.master(kOldApp)));
  }

  Descriptor holdLock() {
    installer_.installed.addFolders({"QVAppsSharedConfig"});
    Descriptor lock(open(installer_.master("QVAppsSharedConfig/InstallLock").c_str(),
                         O_RDONLY | O_CREAT | O_CLOEXEC, 0666));
    EXPECT_EQ(0, flock(lock.get(), LOCK_EX | LOCK_NB));
    return lock;
  }

  const std::vector<std::string> before_ = installer_.versionFolders();
};

const char kSignature[] = "Demo 4: the signature of its archive is missing or wrong";
const char kDamaged[] = "Demo 4: its archive is damaged, or another component's";
const char kNoFile[] = "Demo 4: its archive is no regular file that can be read";
const char kNotNewer[] = ": it is not newer than what is installed";

}  // namespace

TEST_F(InstallComponent, OfANewerApplicationPutsItBesideTheInstalledOne) {
  expectInstalled(install("Demo", "4", putSigned(application4())));
  EXPECT_EQ("[Install] Installed Demo 4", lastLogged());
  EXPECT_EQ(0, installer_.run().status);
  EXPECT_TRUE(installer_.launched());
}

TEST_F(InstallComponent, KeepsTwentyLogsOfItsKindAndTouchesNoOther) {
  for (int i = 10; i < 40; ++i) {
    const std::string time = "-2020-01-01-00-00-" + std::to_string(i) + "-000.log";
    installer_.installed.addFile("logs/Install" + time).addFile("logs/Wrapper" + time);
  }
  expectInstalled(install("Demo", "4", putSigned(application4())));
  std::map<std::string, int> kinds;
  for (const std::string& name : test::namesIn(installer_.master("logs"))) {
    ++kinds[name.substr(0, name.find('-'))];
  }
  EXPECT_EQ((std::map<std::string, int>{{"Install", 20}, {"Wrapper", 30}}), kinds);
  EXPECT_FALSE(test::exists(installer_.master("logs/Install-2020-01-01-00-00-20-000.log")));
  EXPECT_TRUE(test::exists(installer_.master("logs/Install-2020-01-01-00-00-21-000.log")));
}

TEST_F(InstallComponent, NeedsNoDisplayAndAsksForNone) {
  test::Command command = request("Demo", "4", putSigned(application4()));
  command.environment["DISPLAY"] = ":97";  // nobody answers there
  expectInstalled(test::run(command));
}

TEST_F(InstallComponent, OfANewerUpdaterIsLaunchedNextTime) {
  const std::string archive =
      putSigned(Installer::updaterRecords() + fileRecord("lzma64", "the tool") +
                fileRecord("version.txt", "6") + identity("Quorvane", "6 for Demo"));
  const test::Result result = install("Quorvane", "6", archive);
  EXPECT_EQ(0, result.status) << result.out;
  EXPECT_EQ("Installed Quorvane 6", lastLine(result));
  EXPECT_TRUE(installer_.tempFolders().empty());
  EXPECT_EQ("the updater",
            test::readFile(installer_.master("Quorvane-Quorvane-6-complete/updater.jar")));
  EXPECT_TRUE(mentions(installer_.run(), "Latest GU version exists: Quorvane-Quorvane-6-complete"));
}

TEST_F(InstallComponent, OfANewerRuntimeIsLaidOutInBothViews) {
  const std::string archive = putSigned(Installer::runtimeRecords() + identity("Mac64JRE", "1500"));
  const test::Result result = install("Mac64JRE", "1500", archive);
  EXPECT_EQ(0, result.status) << result.out;
  EXPECT_EQ("Installed Mac64JRE 1500", lastLine(result));
  const std::string folder = installer_.master("Quorvane-Mac64JRE-1500-complete");
  EXPECT_TRUE(fs::exists(folder + "/bin/java"));
  EXPECT_TRUE(fs::is_symlink(folder + ".plugin/Contents/Home"));
  EXPECT_FALSE(fs::exists(folder + ".plugin/qvArcSpBlock_Component"));
  EXPECT_NE(std::string::npos, test::readFile(installer_.javaReport()).find("-Xshare:dump"));
  EXPECT_TRUE(installer_.tempFolders().empty());
  EXPECT_EQ(0, installer_.run().status);
  EXPECT_TRUE(installer_.launched());
}

TEST_F(InstallComponent, OfPackedEntriesUnpacksThemWithTheInstalledRuntimesTool) {
  test::writeFile(installer_.runtimeFolder() + "/bin/unpack200",
                  "#!/bin/sh\nexec cp \"$1\" \"$2\"\n", 0755);
  const std::string packed = test::field("2") + test::field("lib/a.jar") + test::field("6");
  const test::Result result = install("Demo", "4", putSigned(application4() + packed + "packed"));
  EXPECT_EQ(0, result.status) << result.out;
  EXPECT_EQ("packed", test::readFile(installer_.master(kNewApp) + "/lib/a.jar"));
}

TEST_F(InstallComponent, OfARuntimeWithoutAJavaIsRefused) {
  const std::string archive =
      putSigned(fileRecord("Contents/Home/release", "x") + identity("Mac64JRE", "1500"));
  expectRefused(install("Mac64JRE", "1500", archive), EXIT_STATUS_ARCHIVE_REFUSED,
                "Mac64JRE 1500: its archive is damaged, or another component's");
}

TEST_F(InstallComponent, OfARuntimeWithWhichTheApplicationFailedIsRefusedAndTheOneBeforeIsUsed) {
  installer_.installRuntime("1500");
  installer_.installed.markAsFailed("Mac64JRE", "1500");
  const test::Result start = installer_.run();
  EXPECT_EQ(0, start.status) << start.out;
  EXPECT_TRUE(logs(start,
                   "[PickFolder] Folder Quorvane-Mac64JRE-1500-complete cannot start: the "
                   "application failed to start with it twice in a row"))
      << start.out;
  EXPECT_TRUE(logs(start, "[Extractor] Using private JRE Quorvane-Mac64JRE-1407-complete"));
  const std::string archive = putSigned(Installer::runtimeRecords() + identity("Mac64JRE", "1500"));
  EXPECT_EQ(EXIT_STATUS_NOT_NEWER, install("Mac64JRE", "1500", archive).status);
  const std::string newer = putSigned(Installer::runtimeRecords() + identity("Mac64JRE", "1501"));
  EXPECT_EQ(0, install("Mac64JRE", "1501", newer).status);
  EXPECT_TRUE(
      logs(installer_.run(), "[Extractor] Using private JRE Quorvane-Mac64JRE-1501-complete"));
}

TEST_F(InstallComponent, OfARuntimeWhoseJavaDoesNotRunHereIsRefused) {
  const std::string archive = putSigned(Installer::runtimeRecords() + identity("Mac64JRE", "1500"));
  for (const char* end : {"1", "killed"}) {
    SCOPED_TRACE(end);
    test::Command command = request("Mac64JRE", "1500", archive);
    command.environment["FAKE_JAVA_STATUS"] = end;
    expectRefused(test::run(command), EXIT_STATUS_ARCHIVE_REFUSED,
                  "Mac64JRE 1500: its java does not run on this machine");
  }
}

TEST_F(InstallComponent, WorksWithAnInstallerThatCarriesNoUpdater) {
  installer_.tail.guVersion.clear();
  installer_.updater.clear();
  installer_.makeOnline("http://192.0.2.10/");
  installer_.write();
  const std::string tool = installer_.master("Quorvane-Quorvane-5-complete/lzma64");
  test::writeFile(tool, test::readFile(test::product("lzma64")), 0755);
  expectInstalled(install("Demo", "4", putSigned(application4())));
}

TEST_F(InstallComponent, SignedWithAnotherKeyIsRefused) {
  const std::string bytes = test::signedBy(secondKey(), application4());
  expectRefused(install("Demo", "4", put(test::compressed(bytes))), EXIT_STATUS_SIGNATURE_REFUSED,
                kSignature);
}

TEST_F(InstallComponent, UnsignedIsRefusedThoughTheParamsFileAsksForNoSignatures) {
  expectRefused(install("Demo", "4", put(test::compressed(application4()))),
                EXIT_STATUS_SIGNATURE_REFUSED, kSignature);
}

TEST_F(InstallComponent, IsRefusedByAnInstallerWithoutAKey) {
  installer_.tail.publicKey.clear();
  installer_.write();
  expectRefused(install("Demo", "4", putSigned(application4())), EXIT_STATUS_SIGNATURE_REFUSED,
                "Demo 4: the installer has no key to verify its archive with");
}

TEST_F(InstallComponent, WithAChangedByteUnderTheSignatureIsRefused) {
  std::string bytes = test::signedBy(firstKey(), application4());
  bytes[bytes.find("application 4")] ^= 1;
  expectRefused(install("Demo", "4", put(test::compressed(bytes))), EXIT_STATUS_SIGNATURE_REFUSED,
                kSignature);
}

TEST_F(InstallComponent, WithAPathThatLeadsOutIsRefusedEvenIfSigned) {
  const std::string records = fileRecord("../escaped", "x") + application4();
  expectRefused(install("Demo", "4", putSigned(records)), EXIT_STATUS_ARCHIVE_REFUSED, kDamaged);
  EXPECT_FALSE(fs::exists(installer_.master("escaped")));
}

TEST_F(InstallComponent, ThatIsCutShortIsRefusedWhereverTheCutIs) {
  const std::string whole = test::compressed(test::signedBy(firstKey(), application4()));
  for (size_t i = 0; i < 8; ++i) {
    SCOPED_TRACE(i);
    const test::Result result = install("Demo", "4", put(whole.substr(0, whole.size() * i / 8)));
    EXPECT_TRUE(result.status == EXIT_STATUS_ARCHIVE_REFUSED ||
                result.status == EXIT_STATUS_SIGNATURE_REFUSED)
        << result.status;
    expectUntouched();
  }
}

TEST_F(InstallComponent, ThatIsAWebPageIsRefused) {
  const std::string page = "<!DOCTYPE html><html><body>Log in to this network</body></html>";
  expectRefused(install("Demo", "4", put(page)), EXIT_STATUS_ARCHIVE_REFUSED, kDamaged);
}

TEST_F(InstallComponent, OfAnotherVersionThanItsArchiveSaysIsRefused) {
  expectRefused(install("Demo", "5", putSigned(application4())), EXIT_STATUS_ARCHIVE_REFUSED,
                "Demo 5: its archive is damaged, or another component's");
}

TEST_F(InstallComponent, OfAnotherProgramOfTheSameMakerIsRefused) {
  const std::string records = Installer::applicationRecords("4") + identity("Other", "4");
  expectRefused(install("Demo", "4", putSigned(records)), EXIT_STATUS_ARCHIVE_REFUSED, kDamaged);
}

// Its settings would lead this one's updates to the other's site, or switch them off.
TEST_F(InstallComponent, OfTheUpdaterOfAnotherProgramOfTheSameMakerIsRefused) {
  for (const char* version : {"6", "6 for Other", "6 for Demo 2", "6 for "}) {
    SCOPED_TRACE(version);
    const std::string archive =
        putSigned(Installer::updaterRecords() + identity("Quorvane", version));
    expectRefused(install("Quorvane", "6", archive), EXIT_STATUS_ARCHIVE_REFUSED,
                  "Quorvane 6: its archive is damaged, or another component's");
  }
}

TEST_F(InstallComponent, ThatDoesNotSayWhatItIsIsRefused) {
  expectRefused(install("Demo", "4", putSigned(Installer::applicationRecords("4"))),
                EXIT_STATUS_ARCHIVE_REFUSED, kDamaged);
}

TEST_F(InstallComponent, WithoutALaunchFileIsRefused) {
  const std::string records = fileRecord("demo.jar", "application 4") + identity("Demo", "4");
  expectRefused(install("Demo", "4", putSigned(records)), EXIT_STATUS_ARCHIVE_REFUSED, kDamaged);
}

TEST_F(InstallComponent, FromALinkIsRefused) {
  fs::create_symlink(putSigned(application4()), installer_ / "link");
  expectRefused(install("Demo", "4", installer_ / "link"), EXIT_STATUS_ARCHIVE_REFUSED, kNoFile);
}

TEST_F(InstallComponent, FromWhatIsNoFileIsRefusedWithoutAWait) {
  ASSERT_EQ(0, mkfifo((installer_ / "pipe").c_str(), 0600));
  for (const std::string& path :
       {installer_ / "pipe", installer_ / "missing", installer_.home.path(),
        std::string("/dev/zero"), std::string(6000, 'x')}) {
    SCOPED_TRACE(path);
    expectRefused(install("Demo", "4", path), EXIT_STATUS_ARCHIVE_REFUSED, kNoFile);
  }
}

TEST_F(InstallComponent, OfAnEqualOrOlderVersionIsRefused) {
  for (const char* version : {"3", "2", "0"}) {
    SCOPED_TRACE(version);
    const std::string records = Installer::applicationRecords(version) + identity("Demo", version);
    expectRefused(install("Demo", version, putSigned(records)), EXIT_STATUS_NOT_NEWER,
                  std::string("Demo ") + version + kNotNewer);
  }
}

TEST_F(InstallComponent, OfAnEqualOrOlderRuntimeIsRefused) {
  for (const char* version : {"1407", "1300"}) {
    SCOPED_TRACE(version);
    const std::string records = Installer::runtimeRecords() + identity("Mac64JRE", version);
    expectRefused(install("Mac64JRE", version, putSigned(records)), EXIT_STATUS_NOT_NEWER,
                  std::string("Mac64JRE ") + version + kNotNewer);
  }
}

TEST_F(InstallComponent, OfAnEqualVersionReplacesOneThatIsIncomplete) {
  test::writeFile(installer_.master(kNewApp) + "/demo.jar", "half of it");
  expectInstalled(install("Demo", "4", putSigned(application4())));
}

TEST_F(InstallComponent, OfAnEqualApplicationReplacesOneThatIsDamagedAndKeepsTheUsersFiles) {
  installer_.installApplication("4");
  const std::string folder = installer_.master(kNewApp);
  const std::string launchFile = Installer::applicationLaunchFile();
  test::writeFile(folder + "/QuorvaneLaunch", launchFile.substr(0, launchFile.size() / 2));
  test::writeFile(folder + "/user-settings.ini", "of the user's");
  const test::Result result = install("Demo", "4", putSigned(application4()));
  EXPECT_EQ(0, result.status) << result.out;
  EXPECT_EQ("Installed Demo 4", lastLine(result));
  EXPECT_TRUE(logs(result,
                   "[Install] Quorvane-Demo-4-complete does not count: its launch file is "
                   "cut short or damaged"))
      << result.out;
  EXPECT_EQ(launchFile, test::readFile(folder + "/QuorvaneLaunch"));
  EXPECT_EQ("of the user's", test::readFile(folder + "/user-settings.ini"));
}

TEST_F(InstallComponent, OfAnEqualUpdaterReplacesOneThatIsDamagedAndKeepsTheUsersFiles) {
  const std::string folder = installer_.master("Quorvane-Quorvane-5-complete");
  test::writeFile(folder + "/QuorvaneLaunch", "");
  test::writeFile(folder + "/user-settings.ini", "of the user's");
  const std::string archive =
      putSigned(Installer::updaterRecords() + fileRecord("lzma64", "the tool") +
                fileRecord("version.txt", "5") + identity("Quorvane", "5 for Demo"));
  const test::Result result = install("Quorvane", "5", archive);
  EXPECT_EQ(0, result.status) << result.out;
  EXPECT_TRUE(logs(result,
                   "[Install] Quorvane-Quorvane-5-complete does not count: its launch file "
                   "is empty or no file"))
      << result.out;
  EXPECT_EQ(Installer::updaterLaunchFile(), test::readFile(folder + "/QuorvaneLaunch"));
  EXPECT_EQ("of the user's", test::readFile(folder + "/user-settings.ini"));
  EXPECT_EQ(0, installer_.run().status);
  EXPECT_TRUE(installer_.launched());
}

TEST_F(InstallComponent, OfAnEqualRuntimeReplacesOneThatIsDamagedAndKeepsTheUsersFiles) {
  const std::string folder = installer_.runtimeFolder();
  fs::remove(folder + "/" + test::jvmLibraryPlace());
  test::writeFile(folder + "/user-settings.ini", "of the user's");
  const std::string archive = putSigned(Installer::runtimeRecords() + identity("Mac64JRE", "1407"));
  const test::Result result = install("Mac64JRE", "1407", archive);
  EXPECT_EQ(0, result.status) << result.out;
  EXPECT_TRUE(logs(result,
                   "[Install] Quorvane-Mac64JRE-1407-complete does not count: its JVM "
                   "library is missing or empty"))
      << result.out;
  EXPECT_TRUE(fs::exists(folder + "/" + test::jvmLibraryPlace()));
  EXPECT_EQ("of the user's", test::readFile(folder + "/user-settings.ini"));
  EXPECT_EQ(0, installer_.run().status);
  EXPECT_TRUE(installer_.launched());
}

TEST_F(InstallComponent, OfAnOlderVersionIsRefusedBesideADamagedNewerOne) {
  installer_.installApplication("9");
  test::writeFile(installer_.master("Quorvane-Demo-9-complete/QuorvaneLaunch"), "");
  const std::string records = Installer::applicationRecords("3") + identity("Demo", "3");
  EXPECT_EQ(EXIT_STATUS_NOT_NEWER, install("Demo", "3", putSigned(records)).status);
  EXPECT_EQ(EXIT_STATUS_NOT_NEWER, install("Demo", "2", put("")).status);
  EXPECT_EQ("application 3", test::readFile(installer_.master(kOldApp) + "/demo.jar"));
}

TEST_F(InstallComponent, OfAnEqualVersionIsRefusedWhereItsDamageIsNotCertain) {
  if (!Installer::isReachableForOrdinary()) {
    return test::unavailable("another account cannot reach the checkout");
  }
  const std::string library = installer_.runtimeFolder() + "/lib/server";
  installer_.becomeOrdinary();
  fs::permissions(library, fs::perms::none);
  const std::string archive = putSigned(Installer::runtimeRecords() + identity("Mac64JRE", "1407"));
  EXPECT_EQ(EXIT_STATUS_NOT_NEWER, install("Mac64JRE", "1407", archive).status);
  fs::permissions(library, fs::perms::owner_all);
}

TEST_F(InstallComponent, ComparesVersionsAsNumbersOfEighteenDigits) {
  installer_.installApplication("999999999999999998");
  const std::string version = "999999999999999999";
  const std::string records = Installer::applicationRecords("x") + identity("Demo", version);
  EXPECT_EQ(0, install("Demo", version, putSigned(records)).status);
  EXPECT_EQ(EXIT_STATUS_NOT_NEWER, install("Demo", "999999999999999998", put("")).status);
}

TEST_F(InstallComponent, WithWrongWordsSaysHowAndWritesNothing) {
  const std::string archive = putSigned(application4());
  fs::remove_all(installer_.master("logs"));
  const std::vector<std::vector<std::string>> wrong = {
      {},
      {"Demo"},
      {"Demo", "4"},
      {"Demo", "4", archive, "more"},
      {"", "4", archive},
      {"Demo", "4", ""},
      {"Demo", "", archive},
      {"Demo", "04", archive},
      {"Demo", "-4", archive},
      {"Demo", "+4", archive},
      {"Demo", " 4", archive},
      {"Demo", "4 ", archive},
      {"Demo", "4.0", archive},
      {"Demo", "4/../5", archive},
      {"Demo", "0x4", archive},
      {"Demo", "1000000000000000000", archive},
  };
  for (std::vector<std::string> words : wrong) {
    words.insert(words.begin(), "--install");
    const test::Result result = test::run(installer_.command(words));
    EXPECT_EQ(EXIT_STATUS_WRONG_USAGE, result.status) << words.size() << result.out;
    EXPECT_EQ("Not installed: usage: --install COMPONENT VERSION ARCHIVE\n", result.out);
  }
  EXPECT_FALSE(fs::exists(installer_.master("logs")));
  expectUntouched();
}

TEST_F(InstallComponent, OfAComponentThatItDoesNotKnowIsRefused) {
  const std::string archive = putSigned(application4());
  for (const char* name : {"demo", "Other", "..", "Demo/../Demo", "Demo-3", "Demo\n", "%s%n",
                           "Mac64JRE.plugin", "quorvane"}) {
    SCOPED_TRACE(name);
    expectRefused(install(name, "4", archive), EXIT_STATUS_WRONG_USAGE,
                  "this installer has no such component");
  }
}

TEST_F(InstallComponent, IsOnlyAskedForByTheFirstWord) {
  const test::Result result = installer_.run({"x", "--install"});
  EXPECT_EQ(0, result.status) << result.out;
  EXPECT_TRUE(installer_.launched());
}

TEST_F(InstallComponent, WaitsForAnotherInstallerAndThenInstalls) {
  Descriptor lock = holdLock();
  std::thread other([&lock] {
    std::this_thread::sleep_for(std::chrono::seconds(3));
    lock.reset(-1);
  });
  const test::Result result = install("Demo", "4", putSigned(application4()));
  other.join();
  EXPECT_TRUE(logs(result, "[Extractor] Another installer is at work, waiting for it"));
  expectInstalled(result);
}

TEST_F(InstallComponent, GivesUpWhenAnotherInstallerDoesNotEndWithinAMinute) {
  const Descriptor lock = holdLock();
  test::Command command = request("Demo", "4", putSigned(application4()));
  command.seconds = 120;
  const auto start = std::chrono::steady_clock::now();
  const test::Result result = test::run(command);
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::seconds(60));
  expectRefused(result, EXIT_STATUS_BUSY, "Demo 4: another installer is at work");
}

TEST_F(InstallComponent, EightAtOnceInstallItOnce) {
  const test::Command command = request("Demo", "4", putSigned(application4()));
  std::vector<test::Result> results(8);
  std::vector<std::thread> threads;
  for (test::Result& result : results) {
    threads.emplace_back([&] { result = test::run(command); });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  int installed = 0;
  for (const test::Result& result : results) {
    installed += result.status == 0 ? 1 : 0;
    EXPECT_TRUE(result.status == 0 || result.status == EXIT_STATUS_NOT_NEWER) << result.out;
  }
  EXPECT_EQ(1, installed);
  expectApplication4();
  EXPECT_TRUE(installer_.tempFolders().empty());
}

// An application that takes a while to decompress and to extract.
static std::string largeApplication4() {
  return application4() + fileRecord("large", test::noise(6 << 20));
}

TEST_F(InstallComponent, ThatIsKilledAtAnyMomentIsMadeUpForByTheNext) {
  const std::string archive = putSigned(largeApplication4());
  const test::Command command = request("Demo", "4", archive);
  int killed = 0;
  for (int milliseconds = 5; !fs::exists(installer_.master(kNewApp));
       milliseconds += milliseconds / 2 + 20) {
    const pid_t child = test::start(command, installer_ / "out", installer_ / "err");
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
    killed += kill(-child, SIGKILL) == 0 ? 1 : 0;
    test::waitForChild(child, 10);
    if (fs::exists(installer_.master(kNewApp))) {
      EXPECT_EQ(6u << 20, fs::file_size(installer_.master(kNewApp) + "/large"));
      break;
    }
    EXPECT_EQ("application 3", test::readFile(installer_.master(kOldApp) + "/demo.jar"));
  }
  EXPECT_GT(killed, 2);
  fs::remove_all(installer_.master(kNewApp));
  EXPECT_EQ(0, test::run(command).status);
  EXPECT_TRUE(installer_.tempFolders().empty());
  EXPECT_EQ(6u << 20, fs::file_size(installer_.master(kNewApp) + "/large"));
}

TEST_F(InstallComponent, WhoseReaderWentAwayIsInstalledAllTheSame) {
  const std::string archive = putSigned(application4());
  test::Command command = request("Demo", "4", archive);
  const std::string program = command.arguments[0];
  command.arguments = {"/bin/sh", "-c", "\"$@\" | true", "sh", program, "--install",
                       "Demo",    "4",  archive};
  test::run(command);
  for (int i = 0; i < 200 && !fs::exists(installer_.master(kNewApp)); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  expectApplication4();
}

TEST_F(InstallComponent, OnAFullDiskLeavesTheInstalledVersionAndNothingElse) {
  if (!test::mayMount()) {
    return test::unavailable("this account may not mount anything");
  }
  const std::string archive = putSigned(largeApplication4());
  for (const char* size : {"400k", "2m", "7m", "12m"}) {
    SCOPED_TRACE(size);
    test::Command command = request("Demo", "4", archive);
    // The account on a small disk, with what is installed.
    const std::string support = installer_.home.applicationSupport();
    const std::string copy = installer_ / (std::string("copy") + size);
    fs::copy(installer_.master(), copy, fs::copy_options::recursive);
    const std::string report = installer_ / "left";
    const std::string program = command.arguments[0];
    command.prepare = [=] { test::mountSmallDisk(support, size); };
    command.arguments = {"/bin/sh",
                         "-c",
                         "cp -R '" + copy + "' '" + support +
                             "/Quorvane-Demo' || exit 50; "
                             "\"$@\"; status=$?; ls '" +
                             support + "/Quorvane-Demo' > '" + report + "'; exit $status",
                         "sh",
                         program,
                         "--install",
                         "Demo",
                         "4",
                         archive};
    const test::Result result = test::run(command);
    EXPECT_EQ(EXIT_STATUS_FAILURE, result.status) << result.out << result.err;
    EXPECT_EQ("Not installed: Demo 4: the disk is full", lastLine(result));
    const std::string left = test::readFile(report);
    EXPECT_EQ(std::string::npos, left.find("QuorvaneTemp")) << left;
    EXPECT_EQ(std::string::npos, left.find(kNewApp)) << left;
    EXPECT_NE(std::string::npos, left.find(kOldApp)) << left;
  }
}
