// Temporary folders that cannot be created: a file stands where the master folder was.

#include <gtest/gtest.h>

#include <string>

#include "extractor/installation/install_app.h"
#include "extractor/run/run.h"
#include "extractor/runtime/provision_jre.h"
#include "extractor/runtime/version_file.h"
#include "formats/names.h"
#include "support/process/exit_status.h"
#include "tests/support/background.h"
#include "tests/support/capture.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

namespace {

ExtractorRun tempRun{};

class TempFolderThatCannotBeCreated : public testing::Test {
 protected:
  TempFolderThatCannotBeCreated() {
    test::writeFile(folder_ / "master", "a file");
    setPath(tempRun.masterFolder, (folder_ / "master").c_str());
    setPath(tempRun.appTemp, (folder_ / "master/QuorvaneTemp-1-1-app").c_str());
    setPath(tempRun.guFolder, folder_.path().c_str());
    setPath(tempRun.jreName, "Mac64JRE");
    tempRun.tail.appVersion = version_.data();
    tempRun.tail.jreVersion = version_.data();
    tempRun.silent = true;
  }

  // The step ends the process with status 1 and the line, and leaves the file as it was.
  void expectEnd(void (*step)(ExtractorRun&), std::string url, const char* line) {
    tempRun.updateURL = url.data();
    const test::Result result = test::runInChild([&] { step(tempRun); });
    EXPECT_EQ(EXIT_STATUS_FAILURE, result.status);
    EXPECT_TRUE(test::containsInOrder(test::logLinesOf(result.out), {line})) << result.out;
    EXPECT_EQ("a file", test::readFile(folder_ / "master"));
  }

  test::TempFolder folder_;
  std::string version_ = "3";
};

}  // namespace

TEST_F(TempFolderThatCannotBeCreated, ForTheApplicationEndsTheRun) {
  expectEnd(extractApp, "", "Unable to create App Temp folder");
}

TEST_F(TempFolderThatCannotBeCreated, ForACarriedRuntimeEndsTheRun) {
  expectEnd(extractCarriedJre, INVALID_UPDATE_URL, "Unable to create JRE Temp folder");
}

TEST_F(TempFolderThatCannotBeCreated, ForADownloadedRuntimeEndsTheRunBeforeTheDownload) {
  // This page is a word, which passes for a version.
  const test::Background server({{QUORVANE_SOURCE "/tests/fakes/web_server.py"}});
  const std::string site = "http://127.0.0.1:" + server.waitForLine("listening ") + "/agent?";
  expectEnd(downloadJre, site, "Unable to create JRE Temp folder");
  EXPECT_EQ(std::string::npos, server.out().find("archive"));
}
