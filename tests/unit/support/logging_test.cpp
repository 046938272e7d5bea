#include "support/log/logging.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "support/files/paths.h"
#include "tests/support/capture.h"
#include "tests/support/fake_clock.h"
#include "tests/support/files.h"
#include "tests/support/slow_file.h"
#include "tests/support/temp_folder.h"

using Lines = std::vector<std::string>;

// Some moment: 2016-03-01 13:05:09.042 UTC.
static const int64_t kMoment = 1456837509042;
static const std::string kRule(43, '*');

// Read before main() runs.
static const uint64_t timestampAtStart = lastTimestamp;
static FILE* const fileAtStart = fileToLogTo;

static std::string outputOf(const std::function<void()>& code) {
  return test::capture(code).out;
}

namespace {

// A log file in a folder of its own, set for as long as this object lives.
class LogFile {
 public:
  LogFile() : file_(fopen(path().c_str(), "w")) { setFileToLogTo(file_); }
  ~LogFile() {
    if (fileToLogTo == file_) {
      setFileToLogTo(nullptr);
      fclose(file_);
    }
  }
  std::string path() const { return folder_ / "log"; }
  FILE* stream() const { return file_; }

 private:
  test::TempFolder folder_;
  FILE* file_;
};

}  // namespace

TEST(LogMessage, StartsWithoutALogFileAndWithoutATimestamp) {
  EXPECT_EQ(nullptr, fileAtStart);
  EXPECT_EQ(0u, timestampAtStart);
}

TEST(LogMessage, GivesTheVeryFirstLineAPrefixOfZeroAndEightBlanks) {
  lastTimestamp = 0;
  EXPECT_EQ("+0        [Utils] first\n", outputOf([] { logMessage("[Utils] first\n"); }));
}

TEST(LogMessage, PrefixesALineWithTheMillisecondsSinceThePreviousCallEnded) {
  test::FakeClock clock(kMoment);
  EXPECT_EQ("+1500     [Utils] second\n", outputOf([&] {
              test::capture([] {});
              lastTimestamp = kMoment;
              clock.advance(1500);
              logMessage("[Utils] second\n");
            }));
}

TEST(LogMessage, KeepsTheBlankAfterAnElapsedTimeOfMoreThanEightDigits) {
  const test::FakeClock clock(kMoment);
  lastTimestamp = kMoment - 123456789;
  EXPECT_EQ("+123456789 x\n", outputOf([] { logMessage("x\n"); }));
}

TEST(LogMessage, StoresTheWallClockOfItsEnd) {
  const test::FakeClock clock(kMoment);
  outputOf([] { logMessage("x\n"); });
  EXPECT_EQ(static_cast<uint64_t>(kMoment), lastTimestamp);
}

TEST(LogMessage, LeavesTheTimeThatWritingTookOutOfTheNextPrefix) {
  test::FakeClock clock(kMoment);
  FILE* file = test::slowFile(&clock);
  setFileToLogTo(file);
  const std::string out = outputOf([&] {
    logMessage("one\n");
    clock.advance(7);
    logMessage("two\n");
  });
  setFileToLogTo(nullptr);
  fclose(file);
  EXPECT_NE(std::string::npos, out.find("\n+7        two\n"));
}

TEST(LogMessage, GivesEverySinkTheSameValues) {
  const LogFile log;
  lastTimestamp = 0;  // so that the prefix has its usual width
  const test::Captured captured = test::capture(
      [] { logMessage("[Utils] %s %d %.1f %c %ld\n", "text", -5, 2.5, 'x', 1L << 40); });
  const std::string wanted = "[Utils] text -5 2.5 x 1099511627776\n";
  EXPECT_EQ(wanted, captured.out.substr(10));
  EXPECT_EQ(captured.out, test::readFile(log.path()));
  EXPECT_NE(std::string::npos, captured.err.find(wanted));
}

TEST(LogMessage, GivesTheSystemLogNoElapsedTime) {
  const test::Captured captured = test::capture([] { logMessage("[Utils] plain\n"); });
  EXPECT_EQ(std::string::npos, captured.err.find("+"));
}

TEST(LogMessage, FlushesTheLogFileAndStandardOutputAtOnce) {
  const test::TempFolder folder;
  const test::Result result = test::runInChild([&] {
    setFileToLogTo(fopen((folder / "log").c_str(), "w"));
    logMessage("[Utils] last words\n");
    _exit(3);
  });
  EXPECT_EQ(3, result.status);
  EXPECT_EQ((Lines{"[Utils] last words"}), test::logLinesOf(result.out));
  EXPECT_EQ((Lines{"[Utils] last words"}), test::logLinesOf(test::readFile(folder / "log")));
}

TEST(LogMessage, CarriesAMessageOfAnyLength) {
  const std::string text(200000, 'x');
  const test::Captured captured = test::capture([&] { logMessage("%s\n", text.c_str()); });
  EXPECT_EQ(text + "\n", captured.out.substr(10));
  EXPECT_NE(std::string::npos, captured.err.find(text));
}

TEST(LogMessage, CarriesBytesThatAreNotUtf8) {
  const test::Captured captured = test::capture([] { logMessage("[Utils] %s\n", "\xFF\xFE!"); });
  EXPECT_EQ("[Utils] \xFF\xFE!\n", captured.out.substr(10));
  EXPECT_NE(std::string::npos, captured.err.find("[Utils] "));
  EXPECT_NE(std::string::npos, captured.err.find("!\n"));
}

TEST(LogMessage, AddsNoLineEndOfItsOwn) {
  const std::string out = outputOf([] {
    logMessage("no end");
    logMessage("\n");
  });
  EXPECT_EQ(1, std::count(out.begin(), out.end(), '\n'));
}

TEST(LogMessage, GoesOnWhenTheSystemLogCannotBeWritten) {
  const test::Result result = test::runInChild([] {
    close(STDERR_FILENO);
    logMessage("[Utils] one\n");
    logMessage("[Utils] two\n");
  });
  EXPECT_EQ(test::CODE_RETURNED, result.status);
  EXPECT_EQ((Lines{"[Utils] one", "[Utils] two"}), test::logLinesOf(result.out));
}

TEST(LogMessage, GoesOnWhenStandardOutputCannotBeWritten) {
  const test::TempFolder folder;
  const test::Result result = test::runInChild([&] {
    setFileToLogTo(fopen((folder / "log").c_str(), "w"));
    close(STDOUT_FILENO);
    logMessage("[Utils] one\n");
  });
  EXPECT_EQ(test::CODE_RETURNED, result.status);
  EXPECT_EQ((Lines{"[Utils] one"}), test::logLinesOf(test::readFile(folder / "log")));
}

TEST(LogMessage, GoesOnWhenTheLogFileCannotBeWritten) {
  FILE* full = fopen("/dev/full", "w");
  setFileToLogTo(full);
  EXPECT_EQ((Lines{"[Utils] one"}), test::logLinesOf([] { logMessage("[Utils] one\n"); }));
  setFileToLogTo(nullptr);
  fclose(full);
}

TEST(LogMessage, MayInterleaveButLosesNothingBetweenThreads) {
  const std::string out = outputOf([] {
    std::vector<std::thread> threads;
    for (int number = 0; number < 4; ++number) {
      threads.emplace_back([number] {
        for (int i = 0; i < 50; ++i) {
          logMessage("<%d-%d>\n", number, i);
        }
      });
    }
    for (std::thread& thread : threads) {
      thread.join();
    }
  });
  for (int i = 0; i < 200; ++i) {
    const std::string wanted = "<" + std::to_string(i / 50) + "-" + std::to_string(i % 50) + ">\n";
    EXPECT_NE(std::string::npos, out.find(wanted)) << wanted;
  }
}

TEST(LogError, FramesTheMessageWithTwoPrefixedRulesInFileAndOnStandardOutput) {
  const test::FakeClock clock(kMoment);
  const LogFile log;
  lastTimestamp = kMoment;
  const std::string out = outputOf([] { logError("%s\n", "x"); });
  const std::string prefix = "+0        ";
  EXPECT_EQ(prefix + kRule + "\n" + prefix + "x\n" + prefix + kRule + "\n", out);
  EXPECT_EQ(out, test::readFile(log.path()));
}

TEST(LogStartSection, WritesTheNameBetweenTwoRulesOf48PlusSigns) {
  const std::string rule(48, '+');
  EXPECT_EQ((Lines{rule, "+++ Start: Layout 100%", rule}),
            test::logLinesOf([] { logStartSection("Layout 100%"); }));
}

TEST(LogEndSection, WritesTheNameBetweenTwoRulesOf48Hyphens) {
  const std::string rule(48, '-');
  EXPECT_EQ((Lines{rule, "--- End: Layout 100%", rule}),
            test::logLinesOf([] { logEndSection("Layout 100%"); }));
}

TEST(SetFileToLogTo, LeavesThePreviousFileOpen) {
  const LogFile first;
  const LogFile second;
  EXPECT_EQ(second.stream(), fileToLogTo);
  EXPECT_NE(EOF, fputs("still open", first.stream()));
  EXPECT_EQ(0, fclose(first.stream()));
  EXPECT_EQ("still open", test::readFile(first.path()));
}

TEST(CloseLoggedFile, LogsItsLineToTheFileAndThenLogsWithoutIt) {
  const LogFile log;
  const Lines lines = test::logLinesOf([] {
    closeLoggedFile();
    EXPECT_EQ(nullptr, fileToLogTo);
    logMessage("[Utils] after\n");
  });
  EXPECT_EQ((Lines{"[Utils] Closing logging file.", "[Utils] after"}), lines);
  EXPECT_EQ((Lines{"[Utils] Closing logging file."}), test::logLinesOf(test::readFile(log.path())));
}

TEST(CloseLoggedFile, LogsItsLineAgainAndClosesNothingTheSecondTime) {
  const LogFile log;
  const Lines lines = test::logLinesOf([] {
    closeLoggedFile();
    closeLoggedFile();
  });
  EXPECT_EQ((Lines{"[Utils] Closing logging file.", "[Utils] Closing logging file."}), lines);
  EXPECT_EQ(1u, test::linesOf(test::readFile(log.path())).size());
}

TEST(CloseLoggedFile, KeepsLaterMessagesForARevealWhereTheFileIsTheOnlySink) {
  const test::TempFolder folder;
  const std::string path = folder / "log";
  const test::Result result = test::runInChild([&] {
    keepEarlyLines();
    logToFileAlone();
    setFileToLogTo(fopen(path.c_str(), "w"));
    logMessage("[Utils] before\n");
    closeLoggedFile();
    logMessage("[Utils] after\n");
    closeLoggedFile();
    revealKeptLines();
  });
  EXPECT_EQ((Lines{"[Utils] after", "[Utils] Closing logging file."}),
            test::logLinesOf(result.err));
  EXPECT_EQ((Lines{"[Utils] before", "[Utils] Closing logging file."}),
            test::logLinesOf(test::readFile(path)));
}

TEST(RevealKeptLines, WritesWhatFollowsAZeroByteToo) {
  const test::Result result = test::runInChild([&] {
    keepEarlyLines();
    logToFileAlone();
    logMessage("[Utils] a zero byte:%c\n", 0);
    logMessage("[Utils] after\n");
    revealKeptLines();
  });
  EXPECT_EQ("[Utils] after", test::logLinesOf(result.err).back());
}

namespace {

class SetupFileLogging : public testing::Test {
 protected:
  SetupFileLogging() {
    setenv("TZ", "UTC-1", 1);
    tzset();
  }
  ~SetupFileLogging() override {
    if (fileToLogTo != nullptr) {
      fclose(fileToLogTo);
      setFileToLogTo(nullptr);
    }
  }
  Lines setUp(const std::string& base) {
    return test::logLinesOf([&] { setupFileLogging(base.c_str()); });
  }

  test::TempFolder folder_;
};

}  // namespace

TEST_F(SetupFileLogging, NamesTheFileByTheLocalTimeWithMilliseconds) {
  const test::FakeClock clock(kMoment);
  const std::string base = folder_ / "base";
  const std::string path = base + "/logs/Wrapper-2016-03-01-14-05-09-042.log";
  EXPECT_EQ((Lines{"[ChMod] Executing chmod 777 \"" + base + "\"",
                   "[ChMod] Executing chmod 777 \"" + base + "/logs\"",
                   "[Extractor] Logging to " + path}),
            setUp(base));
  EXPECT_EQ((Lines{"Wrapper-2016-03-01-14-05-09-042.log"}), test::namesIn(base + "/logs"));
  test::logLinesOf([] { logMessage("[Extractor] in it\n"); });
  EXPECT_EQ((Lines{"[Extractor] in it"}), test::logLinesOf(test::readFile(path)));
}

TEST_F(SetupFileLogging, OpensThePermissionsOfTheFoldersThatItCreates) {
  setUp(folder_ / "base");
  EXPECT_EQ(0777u, test::modeOf(folder_ / "base"));
  EXPECT_EQ(0777u, test::modeOf(folder_ / "base/logs"));
}

TEST_F(SetupFileLogging, GivesTheFileThePermissionsThatTheMaskLeaves) {
  const mode_t mask = umask(0002);
  setUp(folder_ / "base");
  umask(mask);
  const Lines names = test::namesIn(folder_ / "base/logs");
  ASSERT_EQ(1u, names.size());
  EXPECT_EQ(0664u, test::modeOf(folder_ / ("base/logs/" + names[0])));
}

TEST_F(SetupFileLogging, NamesMillisecond0WhenTheClockCannotBeRead) {
  test::FakeClock clock(kMoment);
  clock.fail();
  setUp(folder_.path());
  const Lines names = test::namesIn(folder_ / "logs");
  ASSERT_EQ(1u, names.size());
  EXPECT_EQ("-000.log", names[0].substr(names[0].size() - 8));
}

TEST_F(SetupFileLogging, TellsThePathToAFileThatWasSetBefore) {
  const LogFile before;
  setUp(folder_.path());
  const Lines lines = test::logLinesOf(test::readFile(before.path()));
  EXPECT_EQ(0u, lines.back().find("[Extractor] Logging to " + folder_.path() + "/logs/Wrapper-"));
  EXPECT_NE(before.stream(), fileToLogTo);
  fclose(before.stream());
}

TEST_F(SetupFileLogging, TruncatesTheFileOfAStartWithinTheSameMillisecond) {
  const test::FakeClock clock(kMoment);
  setUp(folder_.path());
  test::logLinesOf([] {
    logMessage("[Extractor] first start\n");
    closeLoggedFile();
  });
  setUp(folder_.path());
  const Lines names = test::namesIn(folder_ / "logs");
  ASSERT_EQ(1u, names.size());
  EXPECT_EQ("", test::readFile(folder_ / "logs/" + names[0]));
}

TEST_F(SetupFileLogging, KeepsTheFilesOfEarlierStarts) {
  test::FakeClock clock(kMoment);
  setUp(folder_.path());
  test::logLinesOf(closeLoggedFile);
  clock.advance(1);
  setUp(folder_.path());
  EXPECT_EQ(2u, test::namesIn(folder_ / "logs").size());
}

TEST_F(SetupFileLogging, ReturnsWithoutALogFileWhenTheFolderCannotBeCreated) {
  test::writeFile(folder_ / "file", "in the way");
  setUp(folder_ / "file/base");
  EXPECT_EQ(nullptr, fileToLogTo);
  EXPECT_EQ((Lines{"[Utils] goes on"}), test::logLinesOf([] { logMessage("[Utils] goes on\n"); }));
}

TEST_F(SetupFileLogging, ReturnsWithoutALogFileWhenThePathDoesNotFit) {
  setUp("/" + std::string(PATH_BUFFER_SIZE, 'x'));
  EXPECT_EQ(nullptr, fileToLogTo);
}

TEST(PrintWorkingDir, LogsTheWorkingFolderBetweenQuotes) {
  const test::TempFolder folder;
  const test::Result result = test::runInChild([&] {
    if (chdir(folder.path().c_str()) == 0) {
      printWorkingDir();
    }
  });
  EXPECT_EQ((Lines{"[Extractor] Working dir is '" + folder.path() + "'"}),
            test::logLinesOf(result.out));
}

TEST(PrintWorkingDir, LogsAnEmptyFolderWhenItsPathDoesNotFit1024Bytes) {
  const test::TempFolder folder;
  const test::Result result = test::runInChild([&] {
    bool inside = chdir(folder.path().c_str()) == 0;
    const std::string name(200, 'd');
    for (int i = 0; i < 6; ++i) {
      inside = inside && mkdir(name.c_str(), 0777) == 0 && chdir(name.c_str()) == 0;
    }
    if (inside) {
      printWorkingDir();
    }
  });
  EXPECT_EQ((Lines{"[Extractor] Working dir is ''"}), test::logLinesOf(result.out));
}
