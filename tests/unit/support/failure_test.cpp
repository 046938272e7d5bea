#include "support/failure/failure.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/statvfs.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <set>
#include <string>

#include "support/failure/failure_texts.h"
#include "support/process/process_start.h"
#include "tests/support/capture.h"
#include "tests/support/temp_folder.h"

static const int kFailures = static_cast<int>(Failure::NotStarted) + 1;

// The size of a block, and the number of free ones, of the file system that is asked about; 0 for
// what the system says.
static unsigned long blockSize = 0;
static unsigned long freeBlocks = 0;

// This takes the place of the C library's function in this executable.
extern "C" int statvfs(const char* path, struct statvfs* space) {
  static const auto next =
      reinterpret_cast<int (*)(const char*, struct statvfs*)>(dlsym(RTLD_NEXT, "statvfs"));
  const int result = next(path, space);
  if (blockSize != 0) {
    space->f_frsize = blockSize;
    space->f_bavail = freeBlocks;
  }
  return result;
}

static bool isOneSentence(const std::string& text) {
  return std::count(text.begin(), text.end(), '.') == 1 && text.back() == '.' &&
         text.find('%') == std::string::npos;
}

TEST(FailureTexts, HaveASentenceOfTheirOwnForEveryFailureThatNamesTheApplication) {
  std::set<std::string> messages;
  for (int i = 0; i < kFailures; ++i) {
    const std::string message = failureMessage(static_cast<Failure>(i), "Größe 100%");
    EXPECT_NE(std::string::npos, message.find("Größe 100%")) << message;
    EXPECT_EQ('.', message.back()) << message;
    messages.insert(message);
  }
  EXPECT_EQ(static_cast<size_t>(kFailures), messages.size());
}

TEST(FailureTexts, AreOneSentenceEach) {
  for (int i = 0; i < kFailures; ++i) {
    const Failure failure = static_cast<Failure>(i);
    EXPECT_TRUE(isOneSentence(failureMessage(failure, "Demo"))) << failureMessage(failure, "Demo");
    EXPECT_TRUE(isOneSentence(failureAdvice(failure, "Demo", "")))
        << failureAdvice(failure, "Demo", "");
  }
}

TEST(FailureTexts, SayWhereTheLogFileIs) {
  EXPECT_EQ("Install Demo again.\n\nThe log file is /logs/50%.log",
            failureAdvice(Failure::NoRuntime, "Demo", "/logs/50%.log"));
}

TEST(FailureOfWriting, IsTheDiskWhereThatIsFull) {
  const test::TempFolder folder;
  const char* path = folder.path().c_str();
  EXPECT_EQ(Failure::DiskFull, failureOfWriting(ENOSPC, path));
  EXPECT_EQ(Failure::DiskFull, failureOfWriting(EDQUOT, path));
  EXPECT_EQ(Failure::FolderNotWritable, failureOfWriting(EACCES, path));
  EXPECT_EQ(Failure::FolderNotWritable, failureOfWriting(0, path));
  EXPECT_EQ(Failure::FolderNotWritable, failureOfWriting(0, "/no such folder"));
}

TEST(FailureOfWriting, IsTheDiskWhereLessThan64KbAreFreeWhateverTheSizeOfABlock) {
  const test::TempFolder folder;
  for (const unsigned long size : {512ul, 4096ul, 65536ul, 131072ul}) {
    blockSize = size;
    freeBlocks = (65536 - 1) / size;
    EXPECT_EQ(Failure::DiskFull, failureOfWriting(0, folder.path().c_str())) << size;
    freeBlocks += 1;
    EXPECT_EQ(Failure::FolderNotWritable, failureOfWriting(0, folder.path().c_str())) << size;
  }
  blockSize = 0;
}

TEST(FailProcess, EndsWithItsStatusAndWithoutAWord) {
  const test::Result result = test::runInChild([] { failProcess(99, Failure::FolderNotWritable); });
  EXPECT_EQ(99, result.status);
  EXPECT_EQ("", result.out + result.err);
}

TEST(FailProcess, CallsNothingBeforeAnAlertThatIsNotShown) {
  const test::Result result = test::runInChild([] {
    setBeforeAlert([] { _exit(7); });
    failProcess(1, Failure::NotStarted);
  });
  EXPECT_EQ(1, result.status);
}

TEST(FailProcess, CallsThatBeforeAnAlert) {
  const test::Result result = test::runInChild([] {
    setenv("DESKTOP_STARTUP_ID", "files-1-host_TIME5", 1);
    beginProcess();
    setBeforeAlert([] { _exit(7); });
    failProcess(1, Failure::NotStarted);
  });
  EXPECT_EQ(7, result.status);
}

TEST(FailProcess, EndsWithTheStatusThatIsChosenForTheFailure) {
  const test::Result result = test::runInChild([] {
    setEndOfFailures(
        [](int status, Failure failure) { return failure == Failure::DiskFull ? status + 1 : 50; });
    failProcess(41, Failure::DiskFull);
  });
  EXPECT_EQ(42, result.status);
}

TEST(EndWithResult, EndsWithTheResult) {
  EXPECT_EQ(0, test::runInChild([] { endWithResult(0); }).status);
  EXPECT_EQ(1, test::runInChild([] { endWithResult(1); }).status);
}

TEST(EndWithZeroAfter, EndsWithZero) {
  EXPECT_EQ(0, test::runInChild([] { endWithZeroAfter(0); }).status);
  EXPECT_EQ(0, test::runInChild([] { endWithZeroAfter(13); }).status);
}
