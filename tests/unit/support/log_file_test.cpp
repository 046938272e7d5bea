// Log files: what is kept for one, and which old ones go.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "support/log/logging.h"
#include "support/log_file/old_logs.h"
#include "tests/support/capture.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

static const char kOldest[] = "Launcher-2016-03-01-14-05-09-042.log";
static const char kOlder[] = "Launcher-2017-03-01-14-05-09-042.log";
static const char kNew[] = "Launcher-2018-03-01-14-05-09-042.log";

namespace {

class LogFolder : public testing::Test {
 protected:
  void add(const std::string& name) { test::writeFile(folder_ / name, "log"); }
  Texts names() const {
    Texts names = test::namesIn(folder_.path());
    std::sort(names.begin(), names.end());
    return names;
  }
  void removeAllBut(int count, const char* current = kNew) {
    removeOldLogs(folder_.path().c_str(), "Launcher-", current, count);
  }

  test::TempFolder folder_;
};

// The lines of the one log file in `base`.
Texts linesOfLog(const std::string& base) {
  const Texts logs = test::namesIn(base + "/logs");
  EXPECT_EQ(1u, logs.size());
  return logs.empty() ? Texts() : test::logLinesOf(test::readFile(base + "/logs/" + logs[0]));
}

}  // namespace

TEST_F(LogFolder, KeepsTheNewestAndTheCurrentLog) {
  add(kOldest);
  add(kOlder);
  add(kNew);
  removeAllBut(2);
  EXPECT_EQ((Texts{kOlder, kNew}), names());
}

TEST_F(LogFolder, KeepsTheCurrentLogWhenTheClockWasSetBack) {
  add(kOldest);
  add(kOlder);
  add(kNew);
  removeAllBut(2, kOldest);
  EXPECT_EQ((Texts{kOldest, kNew}), names());
}

TEST_F(LogFolder, LosesNothingThatIsNoLogOfTheLauncher) {
  const Texts others = {
      "Launcher-2016-03-01-14-05-09-042.log.gz", "Launcher-notes.log",
      "Launcher-2016-03-01-14-05-09-042.txt",    "Wrapper-2016-03-01-14-05-09-042.log",
      "launcher-2016-03-01-14-05-09-042.log",    "xLauncher-2016-03-01-14-05-09-042.log"};
  for (const std::string& name : others) {
    add(name);
  }
  fs::create_directory(folder_ / "Launcher-2015-03-01-14-05-09-042.log");
  fs::create_symlink(folder_ / others[0], folder_ / "Launcher-2014-03-01-14-05-09-042.log");
  add(kNew);
  removeAllBut(1);
  EXPECT_EQ(others.size() + 3, names().size());
}

TEST_F(LogFolder, ThatIsALinkIsLeftAlone) {
  add(kOldest);
  add(kNew);
  fs::create_directory_symlink(folder_.path(), folder_ / "link");
  removeOldLogs((folder_ / "link").c_str(), "Launcher-", kNew, 1);
  EXPECT_EQ(3u, names().size());
}

TEST_F(LogFolder, ThatIsMissingIsNoMatter) {
  removeOldLogs((folder_ / "missing").c_str(), "Launcher-", kNew, 1);
}

TEST(EarlyLines, AreTheFirstInTheFile) {
  const test::TempFolder base;
  test::capture([&] {
    keepEarlyLines();
    logMessage("[Launcher] first\n");
    logMessage("[Launcher] second\n");
    setupLauncherLogging(base.path().c_str());
    logMessage("[Launcher] later\n");
    closeLoggedFile();
    logMessage("[Launcher] after\n");
  });
  const Texts lines = linesOfLog(base.path());
  ASSERT_GE(lines.size(), 4u);
  EXPECT_EQ("[Launcher] first", lines[0]);
  EXPECT_EQ("[Launcher] second", lines[1]);
  EXPECT_EQ("[Launcher] later", lines[lines.size() - 2]);
  EXPECT_EQ("[Utils] Closing logging file.", lines.back());
  EXPECT_TRUE(std::any_of(lines.begin(), lines.end(), [&](const std::string& line) {
    return line == std::string("[Launcher] Logging to ") + loggedFilePath();
  }));
  EXPECT_TRUE(std::none_of(lines.begin(), lines.end(), [](const std::string& line) {
    return line.find("did not fit") != std::string::npos;
  }));
}

TEST(EarlyLines, AreNotKeptUnlessThatIsAskedFor) {
  const test::TempFolder base;
  test::capture([&] {
    logMessage("[Extractor] first\n");
    setupFileLogging(base.path().c_str());
    logMessage("[Extractor] later\n");
    closeLoggedFile();
  });
  EXPECT_EQ((Texts{"[Extractor] later", "[Utils] Closing logging file."}), linesOfLog(base.path()));
}

TEST(EarlyLines, ThatDoNotFitAreCounted) {
  const test::TempFolder base;
  const std::string large(200 * 1024, 'x');
  test::capture([&] {
    keepEarlyLines();
    logMessage("%s\n", large.c_str());
    logMessage("%s\n", large.c_str());
    logMessage("[Launcher] last\n");
    setupLauncherLogging(base.path().c_str());
    closeLoggedFile();
  });
  const Texts lines = linesOfLog(base.path());
  EXPECT_EQ(large, lines[0]);
  EXPECT_EQ("[Launcher] last", lines[1]);
  EXPECT_EQ(1, std::count(lines.begin(), lines.end(), "(1 messages did not fit here)"));
}

TEST(LoggedFilePath, IsEmptyWithoutAFileAndStaysWhenItIsClosed) {
  const test::TempFolder base;
  EXPECT_STREQ("", loggedFilePath());
  test::capture([&] {
    test::writeFile(base / "file", "");
    setupFileLogging((base / "file").c_str());
    EXPECT_STREQ("", loggedFilePath());
    setupFileLogging(base.path().c_str());
    closeLoggedFile();
  });
  EXPECT_TRUE(test::exists(loggedFilePath()));
}

// The launch thread closes the file while the main thread logs.
TEST(CloseLoggedFile, IsSafeWhileAnotherThreadLogs) {
  const test::TempFolder folder;
  test::capture([&] {
    for (int i = 0; i < 200; ++i) {
      setFileToLogTo(fopen((folder / "log").c_str(), "w"));
      std::thread other([] {
        for (int line = 0; line < 5; ++line) {
          logMessage("[Launcher] line %d\n", line);
        }
      });
      closeLoggedFile();
      other.join();
    }
  });
  EXPECT_EQ(nullptr, fileToLogTo);
}
