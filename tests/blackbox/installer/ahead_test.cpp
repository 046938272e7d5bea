// Installations whose application is decompressed while the runtime before it is.

#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <regex>
#include <string>
#include <vector>

#include "extractor/archives/decompress_ahead.h"
#include "tests/installer/installer.h"
#include "tests/support/files.h"
#include "tests/support/product_system.h"

namespace fs = std::filesystem;
using test::fileRecord;
using test::Installer;
using test::nestedRecord;

namespace {

const char kAheadName[] = "1.p2.l2";
const char kTurnsName[] = "application.p2.l2";

const std::string& largeFile() {
  static const std::string kBytes = test::noise(static_cast<size_t>(SMALLEST_AHEAD) + 1000);
  return kBytes;
}

std::string largeRecords() {
  return Installer::applicationRecords("3") + fileRecord("noise", largeFile());
}

std::string toolThatDoes(const std::string& whatAhead, const std::string& report) {
  return "#!/bin/sh\nprintf '%s\\n' \"$2\" >> '" + report + "'\ncase \"$2\" in */[0-9].p2.l2) " +
         whatAhead + ";; esac\nexec '" + test::product("lzma64") + "' \"$@\"\n";
}

std::string withoutPaths(std::string text, const std::string& path, const std::string& name) {
  for (size_t at = text.find(path); at != std::string::npos; at = text.find(path)) {
    text.replace(at, path.size(), name);
  }
  return text;
}

class Ahead : public testing::Test {
 protected:
  void SetUp() override {
    if (sysconf(_SC_NPROCESSORS_ONLN) < 2) {
      GTEST_SKIP() << "nothing is done ahead on one processor";
    }
  }

  // Installs with a tool that does this with an archive before its turn, and then the real tool's
  // work.
  test::Result installWith(const std::string& whatAhead) {
    installer_.updater[0] = fileRecord("lzma64", toolThatDoes(whatAhead, report()));
    if (installer_.application[0].size() < largeFile().size()) {
      installer_.application[0] = nestedRecord("application", largeRecords());
    }
    installer_.write();
    return installer_.run();
  }

  std::string report() const { return installer_ / "given"; }

  // How often the tool was given an archive of this name.
  size_t timesGiven(const std::string& name) const {
    size_t times = 0;
    for (const std::string& line : test::linesOf(test::readFile(report()))) {
      times += fs::path(line).filename() == name ? 1 : 0;
    }
    return times;
  }

  void expectInstalled(const test::Result& result) {
    EXPECT_EQ(0, result.status) << result.out;
    EXPECT_TRUE(installer_.launched());
    const std::string folder = installer_.master("Quorvane-Demo-3-complete");
    EXPECT_TRUE(largeFile() == test::readFile(folder + "/noise"));
    EXPECT_TRUE(installer_.tempFolders().empty());
  }

  void expectDoneInTurn(const test::Result& result) {
    expectInstalled(result);
    EXPECT_EQ(1U, timesGiven(kAheadName));
    EXPECT_EQ(1U, timesGiven(kTurnsName));
  }

  // The log lines without what differs between any two installations.
  std::vector<std::string> comparableLines(const test::Result& result) const {
    const std::regex changing(
        "QuorvaneTemp-[0-9]+-[0-9]+|QVLaunchProperties-[0-9]+|Wrapper-[-0-9]+|"
        "Spawn call done [0-9]+|pid=[0-9]+|\\+[0-9]+ +");
    std::vector<std::string> lines;
    for (const std::string& line : test::logLinesOf(result.out)) {
      const std::string ownPath = withoutPaths(line, installer_.home.path(), "HOME");
      lines.push_back(
          std::regex_replace(withoutPaths(ownPath, installer_ / "", "FOLDER/"), changing, "#"));
    }
    return lines;
  }

  Installer installer_;
};

}  // namespace

TEST_F(Ahead, RunsTheToolOnceForALargeApplication) {
  expectInstalled(installWith("true"));
  EXPECT_EQ(1U, timesGiven(kAheadName));
  EXPECT_EQ(0U, timesGiven(kTurnsName));
}

TEST_F(Ahead, LogsWhatIsLoggedWhereTheToolRunsInTurn) {
  const std::vector<std::string> inTurn = comparableLines(installWith("exit 1"));
  fs::remove_all(installer_.home / "Library");
  fs::remove(report());
  const test::Result ahead = installWith("true");
  expectInstalled(ahead);
  EXPECT_EQ(0U, timesGiven(kTurnsName));
  const std::vector<std::string> lines = comparableLines(ahead);
  ASSERT_EQ(inTurn.size(), lines.size());
  for (size_t i = 0; i < lines.size(); ++i) {
    EXPECT_EQ(inTurn[i], lines[i]);
  }
}

TEST_F(Ahead, RunsTheToolAgainInTurnWhereItFailed) {
  expectDoneInTurn(installWith("exit 1"));
}

TEST_F(Ahead, RunsTheToolAgainInTurnWhereItWasKilled) {
  expectDoneInTurn(installWith("printf half > \"$3\"; kill -KILL $$"));
}

TEST_F(Ahead, RunsTheToolAgainInTurnWhereItMadeNothing) {
  expectDoneInTurn(installWith("exit 0"));
}

TEST_F(Ahead, RunsTheToolAgainInTurnWhereItMadeALink) {
  expectDoneInTurn(installWith("ln -s /etc/passwd \"$3\"; exit 0"));
}

TEST_F(Ahead, LeavesItToTheTurnToSayThatAnArchiveCannotBeDecompressed) {
  const std::string broken = fileRecord("application.p2.l2", std::string(1 << 21, 'x'));
  installer_.application[0] = broken;
  const test::Result result = installWith("true");
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(result.out.find("application.p2.l2 could not be decompressed") != std::string::npos);
  EXPECT_EQ(1U, timesGiven(kTurnsName));
  EXPECT_EQ(1U, installer_.tempFolders().size()) << "that of the application alone";
}

TEST_F(Ahead, LeavesItToTheTurnToSayThatAnArchiveIsCut) {
  std::string cut = nestedRecord("application", largeRecords());
  cut.resize(cut.size() - 10);
  installer_.application = {cut};
  const test::Result result = installWith("true");
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(result.out.find("Unable to read til end of archive file application.p2.l2") !=
              std::string::npos);
  EXPECT_EQ(0U, timesGiven(kAheadName));
}

TEST_F(Ahead, EndsTheToolWhereTheArchiveBeforeIsRejected) {
  installer_.sign(test::testKey("first"));
  installer_.runtime =
      nestedRecord("runtime", test::signedBy(test::testKey("second"), Installer::runtimeRecords()));
  installer_.application[0] = nestedRecord("application", largeRecords());
  const std::string number = installer_ / "number";
  // The runtime is not looked at before the tool for the application is at work.
  const test::Result result =
      installWith("echo $$ > '" + number + "'; exec sleep 600 ;; */runtime.p2.l2) while [ ! -s '" +
                  number + "' ]; do sleep 0.01; done");
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(installer_.tempFolders().empty());
  const pid_t child = static_cast<pid_t>(std::stol(test::readFile(number)));
  EXPECT_EQ(-1, kill(child, 0));
  EXPECT_EQ(ESRCH, errno);
}

TEST_F(Ahead, LeavesASmallApplicationToItsTurn) {
  installer_.updater[0] = fileRecord("lzma64", toolThatDoes("true", report()));
  installer_.write();
  EXPECT_EQ(0, installer_.run().status);
  EXPECT_EQ(0U, timesGiven(kAheadName));
  EXPECT_EQ(1U, timesGiven(kTurnsName));
}
