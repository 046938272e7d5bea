// Installations without a carried runtime: one of the system is adopted, or one is downloaded from
// a local update site. Through the real executable.

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "tests/installer/installer.h"
#include "tests/support/background.h"
#include "tests/support/files.h"

namespace fs = std::filesystem;
using test::Installer;

namespace {

const char kUpdaterFolder[] = "Quorvane-Quorvane-5-complete";
const char kAdopted[] = "Quorvane-Mac64JRE-00000000000-complete";
const char kDownloaded[] = "Quorvane-Mac64JRE-1500-complete";
const char kWillDownload[] =
    "[JREDownload] Failed to pick up any existing system JRE, will download";

// What a system's java does when the compatibility class is run and when it is asked its version.
std::string javaScript(int probeStatus, int versionStatus = 0) {
  return "#!/bin/sh\ncase \"$*\" in *updater.Probe*) exit " + std::to_string(probeStatus) +
         ";; *-version*) exit " + std::to_string(versionStatus) + ";; esac\nexit 0\n";
}

bool mentions(const test::Result& result, const std::string& text) {
  return result.out.find(text) != std::string::npos;
}

class Online : public testing::Test {
 protected:
  Online() {
    fs::create_directories(site_.path());
    // The first java on the path: one that no tool lies beside.
    test::writeFile(installer_ / "bin/java", javaScript(72), 0755);
  }

  // Serves the site and makes the installer use it.
  void serve() {
    test::Command command;
    command.arguments = {"/usr/bin/env", "python3",   "-u", "-m",          "http.server",
                         "--bind",       "127.0.0.1", "0",  "--directory", site_.path()};
    server_ = std::make_unique<test::Background>(command);
    const std::string line = server_->waitForLine("Serving HTTP on 127.0.0.1 port ");
    installer_.makeOnline("http://127.0.0.1:" + line.substr(0, line.find(' ')));
  }

  void publishVersion(const std::string& text) {
    test::writeFile(site_ / "Quorvane-Mac64JRE-version.txt", text);
  }

  void publishArchive(const std::string& bytes, const std::string& version = "1500") {
    test::writeFile(site_ / ("Quorvane-Mac64JRE-" + version + "-archive.p2.l2"), bytes);
  }

  void publishGoodSite() {
    publishVersion("1500\n");
    publishArchive(test::compressed(Installer::runtimeRecords()));
  }

  // Puts a runtime in front of the path that could be adopted; returns its folder.
  std::string offerSystemRuntime(const std::string& java) {
    const std::string home = installer_ / "jdk1.8.0_151.jdk";
    test::writeFile(home + "/bin/java", java, 0755);
    test::writeFile(home + "/bin/unpack200", "#!/bin/sh\n", 0755);
    test::writeFile(home + "/lib/server/libjvm.so", test::readFile(QUORVANE_FAKE_JVM));
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
    EXPECT_EQ(std::vector<std::string>{kUpdaterFolder}, installer_.versionFolders());
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
  test::TempFolder site_;
  std::unique_ptr<test::Background> server_;
};

}  // namespace

TEST_F(Online, DownloadedRuntimeIsInstalledAndLaunched) {
  publishGoodSite();
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

TEST_F(Online, TheSecondTimeLaunchesWithoutTheNetwork) {
  publishGoodSite();
  serve();
  install();
  server_.reset();
  fs::remove(installer_.jvmReport());
  const test::Result result = install();
  EXPECT_EQ(0, result.status);
  EXPECT_TRUE(mentions(result, "[Extractor] Running without extraction now\n"));
  EXPECT_TRUE(installer_.launched());
}

TEST_F(Online, VersionEndsAtABlank) {
  publishGoodSite();
  publishVersion("1500 and more");
  serve();
  expectDownloaded(install());
}

TEST_F(Online, VersionThatIsTooLongEndsTheRun) {
  publishVersion(std::string(51, '1'));
  serve();
  const test::Result result = install();
  expectNoRuntime(result);
  EXPECT_TRUE(mentions(result, "[JREDownload] Version invalid (too long)\n"));
}

TEST_F(Online, VersionOfAnotherFolderEndsTheRun) {
  publishVersion("../../x\n");
  serve();
  const test::Result result = install();
  expectNoRuntime(result);
  EXPECT_TRUE(
      mentions(result, "[JREDownload] Version invalid (characters that are not allowed)\n"));
}

TEST_F(Online, EmptyVersionEndsTheRun) {
  publishVersion("\n");
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

TEST_F(Online, MissingArchiveEndsTheRun) {
  publishVersion("1500\n");
  serve();
  const test::Result result = install();
  expectNoRuntime(result);
  EXPECT_TRUE(mentions(result, "[JREDownload] Failed to download JRE\n"));
}

TEST_F(Online, ArchiveThatIsNoLzmaEndsTheRun) {
  publishVersion("1500\n");
  publishArchive("this is no LZMA data");
  serve();
  const test::Result result = install();
  expectNoRuntime(result);
  EXPECT_TRUE(mentions(result, "[JREDownload] Failed to decompress JRE archive\n"));
}

TEST_F(Online, ArchiveWithoutJavaEndsTheRun) {
  publishVersion("1500\n");
  publishArchive(test::compressed(test::fileRecord("Contents/Home/release", "x")));
  serve();
  expectNoRuntime(install());
}

TEST_F(Online, SignedArchiveIsVerified) {
  const auto key = tools::SigningKey::generate(2048);
  publishVersion("1500\n");
  publishArchive(test::compressed(test::signedBy(key, Installer::runtimeRecords())));
  serve();
  installer_.sign(key);
  installer_.properties = {{"require_signature", "true"}};
  expectDownloaded(install());
}

TEST_F(Online, ArchiveSignedWithAnotherKeyEndsTheRun) {
  publishVersion("1500\n");
  publishArchive(test::compressed(
      test::signedBy(tools::SigningKey::generate(2048), Installer::runtimeRecords())));
  serve();
  installer_.sign(tools::SigningKey::generate(2048));
  expectNoRuntime(install());
}

TEST_F(Online, UnsignedArchiveEndsTheRunWhereSignaturesAreRequired) {
  publishGoodSite();
  serve();
  installer_.sign(tools::SigningKey::generate(2048));
  installer_.properties = {{"require_signature", "true"}};
  expectNoRuntime(install());
}

TEST_F(Online, UnsignedArchiveIsAcceptedByDefault) {
  publishGoodSite();
  serve();
  installer_.sign(tools::SigningKey::generate(2048));
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

TEST_F(Online, SystemRuntimeThatFailsTheProbeIsNotAdopted) {
  publishGoodSite();
  serve();
  offerSystemRuntime(javaScript(3));
  const test::Result result = install();
  expectDownloaded(result);
  EXPECT_TRUE(mentions(result, "[JRESearch] JRE failed compatibility test\n"));
}

TEST_F(Online, SystemRuntimeOfALowerVersionIsNotAdopted) {
  publishGoodSite();
  serve();
  offerSystemRuntime(javaScript(72));
  installer_.tail.requiredJavaVersion = "9";
  const test::Result result = install();
  expectDownloaded(result);
  EXPECT_TRUE(mentions(result, "[Extractor] Checking JRE version requirements: 8 vs required 9\n"));
}

TEST_F(Online, SystemRuntimeWhoseCopyDoesNotRunIsNotAdopted) {
  publishGoodSite();
  serve();
  offerSystemRuntime(javaScript(72, 1));
  const test::Result result = install();
  expectDownloaded(result);
  EXPECT_TRUE(mentions(result, "[JRESearch] The copied JRE does not run\n"));
}

TEST_F(Online, RelativeLinkToTheSystemRuntimeIsNotResolved) {
  publishGoodSite();
  serve();
  offerSystemRuntime(javaScript(72));
  fs::remove(installer_ / "bin/java");
  fs::create_symlink("../jdk1.8.0_151.jdk/bin/java", installer_ / "bin/java");
  const test::Result result = install();
  expectDownloaded(result);
  EXPECT_TRUE(mentions(result, "[JRESearch] Looking at JRE ../jdk1.8.0_151.jdk/bin/java\n"));
}

TEST_F(Online, AutotestLooksForItsOwnRuntime) {
  publishGoodSite();
  serve();
  offerSystemRuntime(javaScript(72));
  installer_.properties = {{"wrapper_autotest", ""}};
  const test::Result result = install();
  expectDownloaded(result);
  EXPECT_TRUE(mentions(result,
                       "AutoTesting - will fake possible jave exe to "
                       "'/opt/JRE_QVAutoTest/bin/java'\n"));
}
