// downloadFile() against a real server: what the file system holds afterwards, and what was logged.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>

#include "support/network/downloader.h"
#include "tests/support/background.h"
#include "tests/support/capture.h"
#include "tests/support/files.h"

using test::exists;
using test::readFile;
using test::TempFolder;
using test::writeFile;
using testing::HasSubstr;
using testing::Not;

static const char kServer[] = QUORVANE_SOURCE "/tests/fakes/web_server.py";

// The bytes that the server's pages are made of.
static std::string pattern(size_t size) {
  std::string bytes(size, '\0');
  for (size_t i = 0; i < size; ++i) {
    bytes[i] = static_cast<char>(i % 251);
  }
  return bytes;
}

class DownloadFileTest : public testing::Test {
 protected:
  DownloadFileTest() : server_({{kServer}}), port_(server_.waitForLine("listening ")) {}

  std::string url(const std::string& page) const {
    return "http://127.0.0.1:" + port_ + "/" + page;
  }

  // Downloads a page to `target_`; returns the system log.
  std::string download(const std::string& page) { return downloadUrl(url(page)); }

  std::string downloadUrl(const std::string& url) {
    int result = 0;
    const std::string log =
        test::capture([&] { result = downloadFile(url.c_str(), target_.c_str()); }).err;
    EXPECT_EQ(result, 1);
    return log;
  }

  // Nothing may be left, neither the target nor anything beside it.
  void expectNothingLeft() const { EXPECT_THAT(test::namesIn(folder_.path()), testing::IsEmpty()); }

  void expectOnlyTarget(const std::string& bytes) const {
    EXPECT_THAT(test::namesIn(folder_.path()), testing::ElementsAre("file"));
    ASSERT_TRUE(exists(target_));
    EXPECT_TRUE(readFile(target_) == bytes) << readFile(target_).size() << " bytes came";
  }

  TempFolder folder_;
  std::string target_ = folder_ / "file";
  test::Background server_;
  std::string port_;
};

TEST_F(DownloadFileTest, AFileWithALengthArrivesWhole) {
  const std::string log = download("length?size=1000000");
  expectOnlyTarget(pattern(1000000));
  EXPECT_THAT(log, HasSubstr("Starting download from = " + url("length?size=1000000") + "\n"));
  EXPECT_THAT(log, HasSubstr("Set destination file to " + target_ + "\n"));
  EXPECT_THAT(log, HasSubstr("Percent complete - 100.000000\n"));
  EXPECT_THAT(log, HasSubstr("downloadDidFinish\n"));
  EXPECT_THAT(log, Not(HasSubstr("Bytes received")));
}

TEST_F(DownloadFileTest, AFileWithoutALengthYieldsOnlyByteCounts) {
  const std::string log = download("close?size=70000");
  expectOnlyTarget(pattern(70000));
  EXPECT_THAT(log, HasSubstr("Bytes received - 70000\n"));
  EXPECT_THAT(log, Not(HasSubstr("Percent complete")));
}

TEST_F(DownloadFileTest, AFileInChunksYieldsOnlyByteCounts) {
  const std::string log = download("chunked?size=3000000");
  expectOnlyTarget(pattern(3000000));
  EXPECT_THAT(log, HasSubstr("Bytes received - 3000000\n"));
  EXPECT_THAT(log, Not(HasSubstr("Percent complete")));
}

TEST_F(DownloadFileTest, AnEmptyFileArrives) {
  const std::string log = download("empty");
  expectOnlyTarget("");
  EXPECT_THAT(log, HasSubstr("downloadDidFinish\n"));
}

TEST_F(DownloadFileTest, ASlowFileShowsItsProgress) {
  const std::string log = download("drip?count=4&pause=0.1");
  expectOnlyTarget("dddd");
  EXPECT_THAT(log, HasSubstr("Percent complete - 25.000000\n"));
  EXPECT_THAT(log, HasSubstr("Percent complete - 75.000000\n"));
}

TEST_F(DownloadFileTest, TheNewFileHasOrdinaryPermissions) {
  umask(022);
  download("length?size=5");
  EXPECT_EQ(test::modeOf(target_), 0644U);
}

TEST_F(DownloadFileTest, ATargetWithBlanksQuotesAndUtf8IsTakenAsItIs) {
  target_ = folder_ / "a \"b\" 'c' $d \xC3\xA4\xE2\x82\xAC %s";
  download("length?size=5");
  EXPECT_TRUE(exists(target_));
  EXPECT_EQ(test::namesIn(folder_.path()).size(), 1U);
}

TEST_F(DownloadFileTest, AnAbsoluteRedirectIsFollowed) {
  download("redirect?to=http%3A//127.0.0.1%3A" + port_ + "/length%3Fsize=99");
  expectOnlyTarget(pattern(99));
}

TEST_F(DownloadFileTest, ARelativeRedirectIsFollowed) {
  download("redirect?to=/length%3Fsize=99");
  expectOnlyTarget(pattern(99));
}

TEST_F(DownloadFileTest, ARedirectRelativeToItsFolderIsFollowed) {
  download("redirect?to=length%3Fsize=99");
  expectOnlyTarget(pattern(99));
}

TEST_F(DownloadFileTest, ARedirectWithoutEndFails) {
  const std::string log = download("loop");
  expectNothingLeft();
  EXPECT_THAT(log, HasSubstr("Download failed! Error - Too many redirects " + url("loop") + "\n"));
  EXPECT_EQ(test::linesOf(server_.out()).size(), 1 + 21U);
}

TEST_F(DownloadFileTest, ARedirectToALocalFileFails) {
  writeFile(folder_ / "secret", "kept");
  const std::string log = download("redirect?to=file%3A//" + folder_ / "secret");
  EXPECT_FALSE(exists(target_));
  EXPECT_THAT(log, HasSubstr("Download failed! Error - "));
}

TEST_F(DownloadFileTest, ALocalFileFails) {
  writeFile(folder_ / "secret", "kept");
  const std::string log = downloadUrl("file://" + folder_ / "secret");
  EXPECT_FALSE(exists(target_));
  EXPECT_THAT(log, HasSubstr("Download failed! Error - Only HTTP URLs can be downloaded"));
}

TEST_F(DownloadFileTest, AnUnknownSchemeFails) {
  EXPECT_THAT(downloadUrl("gopher://127.0.0.1/"), HasSubstr("Download failed! Error - "));
  EXPECT_THAT(downloadUrl("nonsense"), HasSubstr("Download failed! Error - "));
  expectNothingLeft();
}

TEST_F(DownloadFileTest, AMissingPageLeavesNoFile) {
  const std::string log = download("status?code=404");
  expectNothingLeft();
  EXPECT_THAT(log, HasSubstr("Download failed! Error - The server answered with status 404 " +
                             url("status?code=404") + "\n"));
}

TEST_F(DownloadFileTest, AFailingServerLeavesNoFile) {
  download("status?code=500");
  expectNothingLeft();
}

TEST_F(DownloadFileTest, ARedirectWithoutATargetLeavesNoFile) {
  download("status?code=302");
  expectNothingLeft();
}

TEST_F(DownloadFileTest, ARefusedConnectionLeavesNoFile) {
  const std::string log = downloadUrl("http://127.0.0.1:1/file");
  expectNothingLeft();
  EXPECT_THAT(log, HasSubstr("Download failed! Error - "));
  EXPECT_THAT(log, HasSubstr(" http://127.0.0.1:1/file\n"));
}

TEST_F(DownloadFileTest, AnUnknownHostLeavesNoFile) {
  setenv("RES_OPTIONS", "timeout:1 attempts:1", 1);  // where no name server answers
  const std::string log = downloadUrl("http://no-such-host.invalid/file");
  expectNothingLeft();
  EXPECT_THAT(log, HasSubstr("Download failed! Error - "));
}

TEST_F(DownloadFileTest, AConnectionResetMidwayLeavesNoFile) {
  const std::string log = download("reset?size=2000000");
  expectNothingLeft();
  EXPECT_THAT(log, HasSubstr("Download failed! Error - "));
}

TEST_F(DownloadFileTest, AnOrderlyEndBeforeTheLengthLeavesNoFile) {
  const std::string log = download("short?size=2000000");
  expectNothingLeft();
  EXPECT_THAT(log, HasSubstr("Download failed! Error - "));
  EXPECT_THAT(log, Not(HasSubstr("downloadDidFinish")));
}

TEST_F(DownloadFileTest, AHeadWithoutEndLeavesNoFile) {
  const std::string log = download("endless-head");
  expectNothingLeft();
  EXPECT_THAT(log, HasSubstr("Download failed! Error - "));
}

TEST_F(DownloadFileTest, AServerThatSendsNextToNothingIsGivenUpAndLeavesNoFile) {
  EXPECT_EQ(60, slowTransferSeconds);
  slowTransferSeconds = 1;
  const auto start = std::chrono::steady_clock::now();
  const std::string log = download("drip?count=100&pause=0.1&size=50");
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(8));
  expectNothingLeft();
  EXPECT_THAT(log, HasSubstr("Download failed! Error - The server sends next to nothing " +
                             url("drip?count=100&pause=0.1&size=50") + "\n"));
  EXPECT_THAT(log, Not(HasSubstr("downloadDidFinish")));
}

TEST_F(DownloadFileTest, AServerThatSendsAHeadWithoutABodyIsGivenUpAndLeavesNoFile) {
  slowTransferSeconds = 1;
  EXPECT_THAT(download("stall-body"), HasSubstr("The server sends next to nothing"));
  expectNothingLeft();
}

TEST_F(DownloadFileTest, ASlowServerThatSendsEnoughIsWaitedFor) {
  slowTransferSeconds = 1;
  const std::string log = download("drip?count=6&pause=0.4&size=1024");
  expectOnlyTarget(std::string(6 * 1024, 'd'));
  EXPECT_THAT(log, HasSubstr("downloadDidFinish\n"));
}

TEST_F(DownloadFileTest, AFileOfTheLargestSizeArrivesAndALargerOneLeavesNoFile) {
  const std::string path = target_;
  test::capture([&] { downloadFile(url("length?size=65536").c_str(), path.c_str(), 65536); });
  expectOnlyTarget(pattern(65536));
  const std::string log = test::capture([&] {
                            downloadFile(url("length?size=65537").c_str(), path.c_str(), 65536);
                          }).err;
  expectNothingLeft();
  EXPECT_THAT(log, HasSubstr("Download failed! Error - The file is too large "));
}

TEST_F(DownloadFileTest, AFileWithoutEndIsGivenUpAtTheLargestSizeAndLeavesNoFile) {
  const std::string log =
      test::capture([&] { downloadFile(url("endless").c_str(), target_.c_str(), 65536); }).err;
  expectNothingLeft();
  EXPECT_THAT(log, HasSubstr("Download failed! Error - The file is too large "));
}

TEST_F(DownloadFileTest, WhatADeadProcessLeftOfTheFileGoesWithTheNextDownload) {
  const pid_t dead = fork();
  if (dead == 0) {
    _exit(0);
  }
  waitpid(dead, nullptr, 0);
  const std::string living = "file.part-" + std::to_string(getppid()) + "-0";
  const std::string other = "files.part-" + std::to_string(dead) + "-0";
  writeFile(folder_ / ("file.part-" + std::to_string(dead) + "-0"), "half");
  writeFile(folder_ / living, "half");
  writeFile(folder_ / other, "half");
  download("length?size=20");
  EXPECT_THAT(test::namesIn(folder_.path()), testing::ElementsAre("file", living, other));
}

TEST_F(DownloadFileTest, AnExistingTargetIsOverwritten) {
  writeFile(target_, std::string(500, 'o'));
  download("length?size=20");
  expectOnlyTarget(pattern(20));
}

TEST_F(DownloadFileTest, AFailedTransferRemovesAnOldTargetToo) {
  writeFile(target_, "from before");
  download("short?size=100");
  expectNothingLeft();
}

TEST_F(DownloadFileTest, ALinkAsTargetIsReplacedAndWhatItNamesIsKept) {
  writeFile(folder_ / "precious", "kept");
  ASSERT_EQ(symlink((folder_ / "precious").c_str(), target_.c_str()), 0);
  download("length?size=20");
  EXPECT_EQ(readFile(folder_ / "precious"), "kept");
  EXPECT_EQ(readFile(target_), pattern(20));
}

TEST_F(DownloadFileTest, AMissingFolderFails) {
  target_ = folder_ / "missing/file";
  const std::string log = download("length?size=20");
  expectNothingLeft();
  EXPECT_THAT(log, HasSubstr("The file could not be created: No such file or directory"));
}

TEST_F(DownloadFileTest, AFolderAsTargetFailsAndIsKept) {
  ASSERT_EQ(mkdir(target_.c_str(), 0755), 0);
  writeFile(target_ + "/inside", "kept");
  const std::string log = download("length?size=20");
  EXPECT_THAT(test::namesIn(folder_.path()), testing::ElementsAre("file"));
  EXPECT_EQ(readFile(target_ + "/inside"), "kept");
  EXPECT_THAT(log, HasSubstr("The file could not be put in place: "));
}

TEST_F(DownloadFileTest, AnUnwritableFolderFailsAndKeepsWhatIsInIt) {
  writeFile(target_, "from before");
  chmod(folder_.path().c_str(), 0555);
  const uid_t user = geteuid();
  const std::string log = test::capture([&] {
                            // Nothing is unwritable for root.
                            ASSERT_TRUE(user != 0 || seteuid(65534) == 0);
                            downloadFile(url("length?size=20").c_str(), target_.c_str());
                            ASSERT_TRUE(user != 0 || seteuid(0) == 0);
                          }).err;
  expectOnlyTarget("from before");
  EXPECT_THAT(log, HasSubstr("The file could not be created: Permission denied"));
}

TEST_F(DownloadFileTest, AFileThatCannotGrowAnyFurtherLeavesNoFile) {
  signal(SIGXFSZ, SIG_IGN);
  const rlimit limit{100000, 100000};
  setrlimit(RLIMIT_FSIZE, &limit);
  const std::string log = download("length?size=3000000");
  expectNothingLeft();
  EXPECT_THAT(log, HasSubstr("Download failed! Error - The file could not be written"));
}

TEST_F(DownloadFileTest, AProxyFromTheEnvironmentIsUsed) {
  setenv("http_proxy", ("http://127.0.0.1:" + port_).c_str(), 1);
  unsetenv("no_proxy");
  unsetenv("NO_PROXY");
  downloadUrl("http://updates.invalid/file");
  expectOnlyTarget("proxied http://updates.invalid/file");
}

TEST_F(DownloadFileTest, AHostNamedInNoProxyIsReachedDirectly) {
  setenv("http_proxy", "http://127.0.0.1:1", 1);
  setenv("no_proxy", "127.0.0.1", 1);
  download("length?size=20");
  expectOnlyTarget(pattern(20));
}
