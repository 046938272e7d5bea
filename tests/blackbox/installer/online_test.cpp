// Installations without a carried runtime: one of the system is adopted, or one is downloaded from
// a local update site. Through the real executable.

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/blackbox/installer/online.h"
#include "tests/support/own_root.h"
#include "tests/support/product_system.h"
#include "tests/support/unavailable.h"

namespace fs = std::filesystem;
using test::Installer;

namespace {

const char kOnlineUpdater[] = "Quorvane-Quorvane-5-complete";
const char kAdopted[] = "Quorvane-Mac64JRE-00000000000-complete";
const char kDownloaded[] = "Quorvane-Mac64JRE-1500-complete";
const char kWillDownload[] =
    "[JREDownload] Failed to pick up any existing system JRE, will download";

class Online : public testing::Test {
 protected:
  Online() {
    // The first java on the path: one that no tool lies beside.
    test::writeFile(installer_ / "bin/java", javaScript(72), 0755);
  }

  // Serves the site and makes the installer use it.
  void serve() { installer_.makeOnline(site_.serve()); }

  // Makes a Java home that an installer adopts, with this script as its java.
  static void writeJavaHome(const std::string& home, const std::string& java) {
    test::writeFile(home + "/bin/java", java, 0755);
    test::writeFile(home + "/bin/unpack200", "#!/bin/sh\n", 0755);
    test::writeFile(home + "/" + test::jvmLibraryPlace(), test::readFile(QUORVANE_FAKE_JVM));
  }

  // Puts a runtime in front of the path that could be adopted; returns its folder.
  std::string offerSystemRuntime(const std::string& java) {
    const std::string home = installer_ / "jdk1.8.0_151.jdk";
    writeJavaHome(home, java);
    fs::remove(installer_ / "bin/java");
    fs::create_symlink(home + "/bin/java", installer_ / "bin/java");
    return home;
  }

  test::Result install(const std::vector<std::string>& words = {}) {
    installer_.write();
    return installer_.run(words, {{"PATH", (installer_ / "bin") + ":/usr/bin:/bin"}});
  }

  // The run ended with status 1 and nothing but the updater is installed.
  void expectNoRuntime(const test::Result& result) {
    EXPECT_EQ(1, result.status) << result.out;
    EXPECT_EQ(std::vector<std::string>{kOnlineUpdater}, installer_.versionFolders());
    EXPECT_TRUE(installer_.tempFolders().empty());
    EXPECT_FALSE(installer_.launched());
  }

  void expectDownloaded(const test::Result& result) {
    EXPECT_EQ(0, result.status) << result.out;
    EXPECT_TRUE(mentions(result, kWillDownload));
    EXPECT_TRUE(fs::exists(installer_.master(kDownloaded) + "/bin/java"));
    EXPECT_TRUE(installer_.launched());
    EXPECT_TRUE(installer_.tempFolders().empty());
  }

  Installer installer_;
  UpdateSite site_;
};

}  // namespace

TEST_F(Online, DownloadedRuntimeIsInstalledAndLaunched) {
  site_.publishGoodSite();
  serve();
  const test::Result result = install();
  expectDownloaded(result);
  for (const char* line :
       {"[Extractor] Online installer - no stored JRE, will check for compatible system JRE\n",
        "[JRESearch] A JRE does not seem to exist here.\n",
        "[JRESearch] JRE does not exist or does not have unpack200\n",
        "[JREDownload] JRE Version is 1500\n", "[JREDownload] Downloading JRE\n",
        "[JREDownload] JRE Downloaded OK, will extract\n",
        "[JREDownload] Decompressing JRE archive\n", "[JREDownload] Done extracting JRE archive\n",
        "[JREDownload] Regenerating jsa...\n", "[JREDownload] Downloaded JRE is now ready.\n",
        "[JREDownload] Finalising setup of new JRE 1500\n",
        "[Extractor] Online installer - no app to extract\n"}) {
    EXPECT_TRUE(mentions(result, line)) << line;
  }
}

// On a Mac the system's encoding is Mac Roman, which has all of these letters.
TEST_F(Online, NamesBeyondAsciiAreUsedWhateverTheSystemsEncoding) {
  site_.publishGoodSite();
  serve();
  installer_.tail.appName = "Zo\xC3\xAB";
  installer_.write();
  const std::string home = installer_ / "\xC3\xA4 \xC3\xB6";
  fs::create_directories(home);
  test::writeFile(installer_ / "passwd", "tester:x:" + std::to_string(getuid()) + ":" +
                                             std::to_string(getgid()) + ":Tester:" + home +
                                             ":/bin/sh\n");
  const test::Result result =
      installer_.run({}, {{"PATH", (installer_ / "bin") + ":/usr/bin:/bin"},
                          {"NSS_WRAPPER_PASSWD", installer_ / "passwd"},
                          {"GNUSTEP_STRING_ENCODING", "NSMacOSRomanStringEncoding"}});
  EXPECT_EQ(0, result.status) << result.out << result.err;
  EXPECT_TRUE(test::exists(home + "/Library/Application Support/Quorvane-Zo\xC3\xAB/" +
                           kDownloaded + "/bin/java"));
  EXPECT_TRUE(installer_.launched());
}

TEST_F(Online, TheSecondTimeLaunchesWithoutTheNetwork) {
  site_.publishGoodSite();
  serve();
  install();
  site_.stop();
  fs::remove(installer_.jvmReport());
  const test::Result result = install();
  EXPECT_EQ(0, result.status);
  EXPECT_TRUE(mentions(result, "[Extractor] Running without extraction now\n"));
  EXPECT_TRUE(installer_.launched());
}

TEST_F(Online, VersionEndsAtABlank) {
  site_.publishGoodSite();
  site_.publishVersion("1500 and more");
  serve();
  expectDownloaded(install());
}

TEST_F(Online, VersionIsWhatStandsBeforeTheBlank) {
  site_.publishVersion("1.8.0_151 and more text");
  site_.publishArchive(test::compressed(Installer::runtimeRecords()), "1.8.0_151");
  serve();
  const test::Result result = install();
  EXPECT_EQ(0, result.status) << result.out;
  EXPECT_TRUE(mentions(result, "[JREDownload] JRE Version is 1.8.0_151\n"));
  EXPECT_TRUE(fs::exists(installer_.master("Quorvane-Mac64JRE-1.8.0_151-complete/bin/java")));
  EXPECT_TRUE(installer_.launched());
}

TEST_F(Online, VersionOfExactly50CharactersIsInstalled) {
  const std::string version = "1" + std::string(49, '0');
  site_.publishVersion(version);
  site_.publishArchive(test::compressed(Installer::runtimeRecords()), version);
  serve();
  const test::Result result = install();
  EXPECT_EQ(0, result.status) << result.out;
  EXPECT_TRUE(fs::exists(installer_.master("Quorvane-Mac64JRE-" + version + "-complete/bin/java")));
}

TEST_F(Online, VersionThatIsTooLongEndsTheRun) {
  site_.publishVersion(std::string(51, '1'));
  // What is left of it when it is cut is not asked for.
  site_.publishArchive(test::compressed(Installer::runtimeRecords()), std::string(50, '1'));
  serve();
  const test::Result result = install();
  expectNoRuntime(result);
  EXPECT_TRUE(mentions(result, "[JREDownload] Version invalid (too long)\n"));
}

TEST_F(Online, VersionFileOf64KilobytesIsTaken) {
  site_.publishGoodSite();
  site_.publishVersion("1500 " + std::string(64 * 1024 - 5, 'x'));
  serve();
  expectDownloaded(install());
}

TEST_F(Online, VersionFileOfMoreThan64KilobytesEndsTheRunAndIsNotKept) {
  site_.publishGoodSite();
  site_.publishVersion("1500 " + std::string(64 * 1024 - 4, 'x'));
  serve();
  const test::Result result = install();
  expectNoRuntime(result);
  EXPECT_TRUE(mentions(result, "[JREDownload] Failed to download JRE version file\n"));
  for (const auto& entry : fs::recursive_directory_iterator(installer_.master())) {
    EXPECT_EQ(std::string::npos, entry.path().filename().string().find("Mac64JRE-version"))
        << entry.path();
  }
}

TEST_F(Online, VersionOfAnotherFolderEndsTheRun) {
  site_.publishVersion("../../x\n");
  serve();
  const test::Result result = install();
  expectNoRuntime(result);
  EXPECT_TRUE(
      mentions(result, "[JREDownload] Version invalid (characters that are not allowed)\n"));
}

TEST_F(Online, EmptyVersionEndsTheRun) {
  site_.publishVersion("\n");
  serve();
  const test::Result result = install();
  expectNoRuntime(result);
  EXPECT_TRUE(
      mentions(result, "[JREDownload] Failed to detect or download a JRE (no jre version)\n"));
}

TEST_F(Online, MissingVersionFileEndsTheRun) {
  serve();
  const test::Result result = install();
  expectNoRuntime(result);
  EXPECT_TRUE(mentions(result, "[JREDownload] Failed to download JRE version file\n"));
}

TEST_F(Online, PlaceholderUrlIsNotAsked) {
  installer_.makeOnline("http://192.0.2.10/");
  const test::Result result = install();
  expectNoRuntime(result);
  EXPECT_TRUE(mentions(result, "[Extractor] Invalid Update URL. Skipping...\n"));
}

TEST_F(Online, PlaceholderUrlIsNotAskedForTheVersionOfAnEarlierDownload) {
  installer_.makeOnline("http://192.0.2.10/");
  test::writeFile(installer_.master(kOnlineUpdater) + "/Quorvane-Mac64JRE-version.txt", "1500\n");
  const test::Result result = install();
  expectNoRuntime(result);
  EXPECT_TRUE(mentions(result, "[JREDownload] Failed to download JRE version file\n"));
  EXPECT_FALSE(mentions(result, "[JREDownload] Downloading JRE\n"));
}

TEST_F(Online, MissingArchiveEndsTheRun) {
  site_.publishVersion("1500\n");
  serve();
  const test::Result result = install();
  expectNoRuntime(result);
  EXPECT_TRUE(mentions(result, "[JREDownload] Failed to download JRE\n"));
}

TEST_F(Online, ArchiveThatIsNoLzmaEndsTheRun) {
  site_.publishVersion("1500\n");
  site_.publishArchive("this is no LZMA data");
  serve();
  const test::Result result = install();
  expectNoRuntime(result);
  EXPECT_TRUE(mentions(result, "[JREDownload] Failed to decompress JRE archive\n"));
}

TEST_F(Online, CompressedArchiveThatIsCutShortEndsTheRun) {
  const std::string bytes = test::compressed(Installer::runtimeRecords());
  site_.publishVersion("1500\n");
  site_.publishArchive(bytes.substr(0, bytes.size() / 2));
  serve();
  expectNoRuntime(install());
}

TEST_F(Online, ArchiveThatIsCutShortInsideEndsTheRunAndTheNextOneRepairs) {
  const std::string records = Installer::runtimeRecords();
  site_.publishVersion("1500\n");
  site_.publishArchive(test::compressed(records.substr(0, records.size() / 2)));
  serve();
  const test::Result result = install();
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(mentions(result, "Unable to read til end of archive file "));
  EXPECT_EQ(std::vector<std::string>{kOnlineUpdater}, installer_.versionFolders());
  EXPECT_FALSE(installer_.launched());
  site_.publishArchive(test::compressed(records));
  const test::Result next = install();
  EXPECT_EQ(0, next.status) << next.out;
  EXPECT_TRUE(fs::exists(installer_.master(kDownloaded) + "/bin/java"));
  EXPECT_TRUE(installer_.launched());
}

TEST_F(Online, ArchiveWithoutJavaEndsTheRun) {
  site_.publishVersion("1500\n");
  site_.publishArchive(test::compressed(test::fileRecord("Contents/Home/release", "x")));
  serve();
  expectNoRuntime(install());
}

TEST_F(Online, SignedArchiveIsVerified) {
  const auto key = test::testKey("first");
  site_.publishVersion("1500\n");
  site_.publishArchive(test::compressed(test::signedBy(key, Installer::runtimeRecords())));
  serve();
  installer_.sign(key);
  installer_.properties = {{"require_signature", "true"}};
  expectDownloaded(install());
}

TEST_F(Online, ArchiveSignedWithAnotherKeyEndsTheRun) {
  site_.publishVersion("1500\n");
  site_.publishArchive(
      test::compressed(test::signedBy(test::testKey("second"), Installer::runtimeRecords())));
  serve();
  installer_.sign(test::testKey("first"));
  expectNoRuntime(install());
}

TEST_F(Online, UnsignedArchiveEndsTheRunWhereSignaturesAreRequired) {
  site_.publishGoodSite();
  serve();
  installer_.sign(test::testKey("first"));
  installer_.properties = {{"require_signature", "true"}};
  expectNoRuntime(install());
}

TEST_F(Online, UnsignedArchiveIsAcceptedByDefault) {
  site_.publishGoodSite();
  serve();
  installer_.sign(test::testKey("first"));
  expectDownloaded(install());
}

TEST_F(Online, SystemRuntimeThatPassesTheProbeIsAdopted) {
  installer_.makeOnline("http://192.0.2.10/");
  const std::string home = offerSystemRuntime(javaScript(72));
  const test::Result result = install();
  EXPECT_EQ(0, result.status) << result.out;
  EXPECT_TRUE(fs::exists(installer_.master(kAdopted) + "/bin/java"));
  EXPECT_TRUE(fs::exists(installer_.master(kAdopted) + ".plugin/Contents/Home/bin/unpack200"));
  EXPECT_TRUE(installer_.launched());
  for (const std::string& line :
       {"[JRESearch] 'which java' returned '" + (installer_ / "bin/java") + "'\n",
        "[JRESearch] Followed link " + (installer_ / "bin/java") + " -> " + home + "/bin/java\n",
        "[JRESearch] Trimmed possibleJavaExe is " + home + "/\n",
        "[JRESearch] Removed final slash: possibleJavaExe is " + home + "\n",
        std::string("[JRESearch] JRE is valid, copying...\n"),
        std::string("[JREDownload] Finalising setup of new JRE 00000000000\n")}) {
    EXPECT_TRUE(mentions(result, line)) << line;
  }
}

TEST_F(Online, AdoptedRuntimeIsUsedTheSecondTime) {
  installer_.makeOnline("http://192.0.2.10/");
  offerSystemRuntime(javaScript(72));
  install();
  fs::remove(installer_.jvmReport());
  const test::Result result = install();
  EXPECT_EQ(0, result.status);
  EXPECT_TRUE(mentions(result, "[Extractor] Running without extraction now\n"));
  EXPECT_TRUE(installer_.launched());
}

TEST_F(Online, RuntimeThatIsAdoptedAgainKeepsWhatTheUserPutIntoBothItsFolders) {
  installer_.makeOnline("http://192.0.2.10/");
  offerSystemRuntime(javaScript(72));
  EXPECT_EQ(0, install().status);
  const std::string plain = installer_.master(kAdopted);
  test::writeFile(plain + "/settings.ini", "of the runtime");
  test::writeFile(plain + ".plugin/settings.ini", "of the bundle");
  installer_.tail.guVersion = "6";
  const test::Result result = install();
  EXPECT_EQ(0, result.status) << result.out;
  EXPECT_TRUE(mentions(result, "[JRESearch] JRE is valid, copying...\n"));
  EXPECT_EQ("of the runtime", test::readFile(plain + "/settings.ini"));
  EXPECT_EQ("of the bundle", test::readFile(plain + ".plugin/settings.ini"));
  EXPECT_TRUE(fs::exists(plain + ".plugin/Contents/Home/bin/java"));
}

TEST_F(Online, SystemRuntimeThatFailsTheProbeIsNotAdopted) {
  site_.publishGoodSite();
  serve();
  offerSystemRuntime(javaScript(3));
  const test::Result result = install();
  expectDownloaded(result);
  EXPECT_TRUE(mentions(result, "[JRESearch] JRE failed compatibility test\n"));
}

TEST_F(Online, SystemRuntimeOfALowerVersionIsNotAdopted) {
  site_.publishGoodSite();
  serve();
  offerSystemRuntime(javaScript(72));
  installer_.tail.requiredJavaVersion = "9";
  const test::Result result = install();
  expectDownloaded(result);
  EXPECT_TRUE(mentions(result, "[Extractor] Checking JRE version requirements: 8 vs required 9\n"));
}

TEST_F(Online, SystemRuntimeWhoseCopyDoesNotRunIsNotAdopted) {
  site_.publishGoodSite();
  serve();
  offerSystemRuntime(javaScript(72, 1));
  const test::Result result = install();
  expectDownloaded(result);
  EXPECT_TRUE(mentions(result, "[JRESearch] The copied JRE does not run\n"));
}

TEST_F(Online, SystemRuntimeKilledByASignalInTheProbeIsNotAdopted) {
  site_.publishGoodSite();
  serve();
  offerSystemRuntime("#!/bin/sh\nkill -9 $$\n");
  const test::Result result = install();
  expectDownloaded(result);
  EXPECT_TRUE(mentions(result, "[JRESearch] JRE failed compatibility test\n"));
}

TEST_F(Online, SystemRuntimeWithoutUnpack200IsNotAdopted) {
  site_.publishGoodSite();
  serve();
  fs::remove(offerSystemRuntime(javaScript(72)) + "/bin/unpack200");
  const test::Result result = install();
  expectDownloaded(result);
  EXPECT_TRUE(mentions(result, "[JRESearch] A JRE does not seem to exist here.\n"));
}

TEST_F(Online, SystemRuntimeWithoutAJvmLibraryIsNotAdopted) {
  site_.publishGoodSite();
  serve();
  const std::string home = offerSystemRuntime(javaScript(72));
  fs::remove_all(home + "/lib");
  const test::Result result = install();
  expectDownloaded(result);
  EXPECT_TRUE(mentions(
      result, "[JRESearch] No JVM library in " + home + " where a launch would find it\n"));
  EXPECT_TRUE(mentions(result, "[JRESearch] A JRE does not seem to exist here.\n"));
}

TEST_F(Online, SystemRuntimeWhoseJvmLibraryNoLaunchWouldFindIsNotAdopted) {
  site_.publishGoodSite();
  serve();
  const std::string home = offerSystemRuntime(javaScript(72));
  fs::create_directories(home + "/jre");
  fs::rename(home + "/lib", home + "/jre/lib");
  expectDownloaded(install());
}

TEST_F(Online, UsersHomeIsNotAdopted) {
  site_.publishGoodSite();
  serve();
  const std::string home = offerSystemRuntime(javaScript(72));
  for (const char* name : {"bin", "lib"}) {
    fs::rename(home + "/" + name, installer_.home / name);
  }
  fs::remove(installer_ / "bin/java");
  // By another path than the password database has.
  fs::create_symlink("/" + installer_.home.path() + "/./bin/java", installer_ / "bin/java");
  const test::Result result = install();
  expectDownloaded(result);
  EXPECT_TRUE(mentions(result, "[JRESearch] /" + installer_.home.path() +
                                   "/. holds more than a JRE, it is not copied\n"));
  EXPECT_TRUE(mentions(result, "[JRESearch] A JRE does not seem to exist here.\n"));
}

TEST_F(Online, FolderThatHoldsTheUsersHomeIsNotAdopted) {
  site_.publishGoodSite();
  serve();
  const std::string home = offerSystemRuntime(javaScript(72));
  const std::string above = fs::path(installer_.home.path()).parent_path();
  for (const char* name : {"bin", "lib"}) {
    fs::rename(home + "/" + name, above + "/" + name);
  }
  fs::remove(installer_ / "bin/java");
  fs::create_symlink(above + "/bin/java", installer_ / "bin/java");
  const test::Result result = install();
  expectDownloaded(result);
  EXPECT_TRUE(mentions(result, "[JRESearch] " + above + " holds more than a JRE"));
}

TEST_F(Online, SystemRuntimeThroughTwoLinksIsAdopted) {
  installer_.makeOnline("http://192.0.2.10/");
  const std::string home = offerSystemRuntime(javaScript(72));
  fs::remove(installer_ / "bin/java");
  fs::create_symlink(home + "/bin/java", installer_ / "alternative");
  fs::create_symlink(installer_ / "alternative", installer_ / "bin/java");
  const test::Result result = install();
  EXPECT_EQ(0, result.status) << result.out;
  EXPECT_TRUE(fs::exists(installer_.master(kAdopted) + "/bin/java"));
}

TEST_F(Online, SystemRuntimeThroughFortyLinksIsAdopted) {
  installer_.makeOnline("http://192.0.2.10/");
  std::string target = offerSystemRuntime(javaScript(72)) + "/bin/java";
  fs::create_directories(installer_ / "links");
  for (int i = 0; i < 39; ++i) {
    const std::string link = installer_ / ("links/" + std::to_string(i));
    fs::create_symlink(target, link);
    target = link;
  }
  fs::remove(installer_ / "bin/java");
  fs::create_symlink(target, installer_ / "bin/java");
  const test::Result result = install();
  EXPECT_EQ(0, result.status) << result.out;
  EXPECT_TRUE(fs::exists(installer_.master(kAdopted) + "/bin/java"));
}

// The shell takes a relative link from the folder of the link, the search from the folder that the
// installer runs in: there it may lead to itself.
TEST_F(Online, SystemRuntimeWhoseLinksLeadToThemselvesIsNotAdoptedAfterFortyOfThem) {
  site_.publishGoodSite();
  serve();
  test::writeFile(installer_ / "bin/here", javaScript(72), 0755);
  fs::remove(installer_ / "bin/java");
  fs::create_symlink("here", installer_ / "bin/java");
  fs::create_directories(installer_ / "run");
  fs::create_symlink("here", installer_ / "run/here");
  installer_.write();
  test::Command command = installer_.command();
  command.environment["PATH"] = (installer_ / "bin") + ":/usr/bin:/bin";
  command.folder = installer_ / "run";
  const test::Result result = test::run(command);
  EXPECT_EQ(0, result.status) << result.out;
  EXPECT_TRUE(fs::exists(installer_.master(kDownloaded) + "/bin/java"));
  size_t followed = 0;
  for (const std::string& line : test::logLinesOf(result.out)) {
    followed += line.rfind("[JRESearch] Followed link ", 0) == 0 ? 1 : 0;
  }
  EXPECT_EQ(40u, followed);
  EXPECT_TRUE(mentions(result, "[JRESearch] Followed 40 links, will not follow any more\n"));
}

TEST_F(Online, CarriedRuntimeCountsAsNewerThanAnAdoptedOne) {
  Installer offline;
  const std::string runtime = offline.runtime;
  installer_.makeOnline("http://192.0.2.10/");
  offerSystemRuntime(javaScript(72));
  EXPECT_EQ(0, install().status);
  installer_.tail.guVersion = "6";
  installer_.tail.jreVersion = "1";
  installer_.runtime = runtime;
  const test::Result result = install();
  EXPECT_EQ(0, result.status) << result.out;
  EXPECT_TRUE(mentions(result, "[PickFolder] Set latest to 1 Quorvane-Mac64JRE-1-complete"));
  EXPECT_TRUE(mentions(result, "[Extractor] JRE folder is " +
                                   installer_.master("Quorvane-Mac64JRE-1-complete") + "\n"));
}

TEST_F(Online, RelativeLinkToTheSystemRuntimeIsNotResolved) {
  site_.publishGoodSite();
  serve();
  offerSystemRuntime(javaScript(72));
  fs::remove(installer_ / "bin/java");
  fs::create_symlink("../jdk1.8.0_151.jdk/bin/java", installer_ / "bin/java");
  const test::Result result = install();
  expectDownloaded(result);
  EXPECT_TRUE(mentions(result, "[JRESearch] Looking at JRE ../jdk1.8.0_151.jdk/bin/java\n"));
}

TEST_F(Online, AutotestLooksForItsOwnRuntime) {
  site_.publishGoodSite();
  serve();
  offerSystemRuntime(javaScript(72));
  installer_.properties = {{"wrapper_autotest", ""}};
  const test::Result result = install();
  expectDownloaded(result);
  EXPECT_TRUE(mentions(result,
                       "AutoTesting - will fake possible jave exe to "
                       "'/opt/JRE_QVAutoTest/bin/java'\n"));
}

// Runs in which /opt and /Library are the test's own.
class OnlineWithOwnRoot : public Online {
 protected:
  void SetUp() override {
    if (!test::mayMount()) {
      return test::unavailable("this account may not mount anything");
    }
    for (const char* name : {"opt", "Library", "root"}) {
      fs::create_directories(installer_ / name);
    }
  }

  // Writes a runtime into `home`, a path as the program will see it.
  void offer(const std::string& home, const std::string& java) {
    writeJavaHome(installer_ / home.substr(1), java);
  }

  test::Result installThere() {
    installer_.write();
    test::Command command = installer_.command();
    command.environment["PATH"] = (installer_ / "bin") + ":/usr/bin:/bin";
    command.prepare = [this] {
      test::enterOwnRoot(installer_ / "root",
                         {{"opt", installer_ / "opt"}, {"Library", installer_ / "Library"}});
    };
    return test::run(command);
  }
};

TEST_F(OnlineWithOwnRoot, AutotestAdoptsItsOwnRuntime) {
  installer_.makeOnline("http://192.0.2.10/");
  installer_.properties = {{"wrapper_autotest", ""}};
  offer("/opt/JRE_QVAutoTest", javaScript(72));
  const test::Result result = installThere();
  EXPECT_EQ(0, result.status) << result.out;
  EXPECT_TRUE(mentions(result, "[JRESearch] Looking at JRE /opt/JRE_QVAutoTest/bin/java\n"));
  EXPECT_TRUE(mentions(result, "[JRESearch] JRE is valid, copying...\n"));
  EXPECT_TRUE(fs::exists(installer_.master(kAdopted) + "/bin/java"));
}

TEST_F(OnlineWithOwnRoot, OptIsNotAdoptedThroughALinkToIt) {
  site_.publishGoodSite();
  serve();
  installer_.properties = {{"wrapper_autotest", ""}};
  offer("/opt", javaScript(72));
  fs::create_symlink("/opt/.", installer_ / "opt/JRE_QVAutoTest");
  const test::Result result = installThere();
  expectDownloaded(result);
  EXPECT_TRUE(mentions(
      result, "[JRESearch] /opt/JRE_QVAutoTest holds more than a JRE, it is not copied\n"));
}

TEST_F(OnlineWithOwnRoot, BrowserPluginWithoutAJvmLibraryIsNotAdopted) {
  site_.publishGoodSite();
  serve();
  const std::string plugin = "/Library/Internet Plug-Ins/JavaAppletPlugin.plugin";
  offer(plugin + "/Contents/Home", javaScript(72));
  fs::remove_all((installer_ / plugin.substr(1)) + "/Contents/Home/lib");
  const test::Result result = installThere();
  expectDownloaded(result);
  EXPECT_TRUE(mentions(
      result, "[JRESearch] No JVM library in " + plugin + " where a launch would find it\n"));
  EXPECT_TRUE(mentions(result, "[JRESearch] JRE does not exist or does not have unpack200\n"));
}

TEST_F(OnlineWithOwnRoot, BrowserPluginIsAdoptedWhereTheShellFindsNoRuntime) {
  installer_.makeOnline("http://192.0.2.10/");
  const std::string plugin = "/Library/Internet Plug-Ins/JavaAppletPlugin.plugin";
  offer(plugin + "/Contents/Home", javaScript(72));
  const test::Result result = installThere();
  EXPECT_EQ(0, result.status) << result.out;
  EXPECT_TRUE(mentions(result, "[JRESearch] A JRE does not seem to exist here.\n"));
  EXPECT_TRUE(
      mentions(result, "[JRESearch] Looking at JRE " + plugin + "/Contents/Home/bin/java\n"));
  EXPECT_TRUE(mentions(result, "[JRESearch] JRE is valid, copying...\n"));
  EXPECT_TRUE(fs::exists(installer_.master(kAdopted) + "/bin/java"));
}

TEST_F(OnlineWithOwnRoot, RequirementOf7RefusesARuntimeWithoutAVersionInItsPath) {
  site_.publishGoodSite();
  serve();
  installer_.properties = {{"wrapper_autotest", ""}};
  installer_.tail.requiredJavaVersion = "7";
  offer("/opt/JRE_QVAutoTest", javaScript(72));
  const test::Result result = installThere();
  expectDownloaded(result);
  EXPECT_TRUE(mentions(result, "[Extractor] Checking JRE version requirements: 0 vs required 7\n"));
}

TEST_F(OnlineWithOwnRoot, SharedInstallationGoesBelowTheRootsLibrary) {
  installer_.makeOnline("http://192.0.2.10/");
  installer_.tail.installType = "perm_all";
  installer_.properties = {{"wrapper_autotest", ""}};
  offer("/opt/JRE_QVAutoTest", javaScript(72));
  fs::create_directories(installer_ / "Library/Application Support");
  const test::Result result = installThere();
  EXPECT_EQ(0, result.status) << result.out;
  EXPECT_TRUE(logs(result, "[Extractor] Shared dir is /Library/Application Support"));
  EXPECT_TRUE(fs::exists(installer_ / "Library/Application Support/Quorvane-Demo/" + kAdopted));
  EXPECT_EQ(0777u, test::modeOf(installer_ / "Library/Application Support/Quorvane-Demo"));
}

TEST_F(OnlineWithOwnRoot, SharedInstallationOfAnOrdinaryUserNeedsElevation) {
  if (!Installer::isReachableForOrdinary()) {
    return test::unreachable();
  }
  installer_.makeOnline("http://192.0.2.10/");
  installer_.tail.installType = "perm_all";
  fs::create_directories(installer_ / "Library/Application Support");
  installer_.write();
  installer_.becomeOrdinary();
  ASSERT_EQ(0, chown((installer_ / "Library/Application Support").c_str(), 0, 0));
  test::Command command = installer_.command();
  const auto become = command.prepare;
  command.prepare = [this, become] {
    test::enterOwnRoot(installer_ / "root",
                       {{"opt", installer_ / "opt"}, {"Library", installer_ / "Library"}});
    become();
  };
  const test::Result result = test::run(command);
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(
      logs(result, "[Extractor] Unable to create GU Temp folder - assuming elevation required"));
  EXPECT_TRUE(test::namesIn(installer_ / "Library/Application Support").empty());
}
