#include "support/process/spawner.h"

#include <gtest/gtest.h>
#include <limits.h>
#include <signal.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/capture.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"

using Lines = std::vector<std::string>;

namespace {

// A spawner with its own argument texts, which have to live until the program has started.
class FilledSpawner {
 public:
  FilledSpawner() : spawner_(createSpawner()) {}
  explicit FilledSpawner(std::vector<std::string> arguments)
      : arguments_(std::move(arguments)), spawner_(createSpawner()) {
    setSpawnerExe(spawner_, arguments_[0].c_str());
    for (size_t i = 1; i < arguments_.size(); ++i) {
      addSpawnerArg(spawner_, arguments_[i].c_str());
    }
  }
  ~FilledSpawner() { deleteSpawner(spawner_); }
  FilledSpawner(const FilledSpawner&) = delete;
  FilledSpawner& operator=(const FilledSpawner&) = delete;

  Spawner* get() const { return spawner_; }

 private:
  std::vector<std::string> arguments_;
  Spawner* spawner_;
};

struct Outcome {
  int result = 0;
  Lines lines;
};

}  // namespace

static Outcome runAndWait(const std::vector<std::string>& arguments, const char* folder = nullptr) {
  Outcome outcome;
  outcome.lines = test::logLinesOf([&] {
    const FilledSpawner spawner(arguments);
    outcome.result = runSpawnerAndWait(spawner.get(), folder);
  });
  return outcome;
}

static std::string workingFolder() {
  char path[PATH_MAX];
  return getcwd(path, sizeof path);
}

// The line that ends with the child's number and the raw wait status.
static std::string doneLine(const Lines& lines) {
  for (const std::string& line : lines) {
    if (line.rfind("Spawn call done ", 0) == 0) {
      return line;
    }
  }
  return "";
}

TEST(Spawner, StoresTheCallersPointersAndNotCopies) {
  char text[] = "first";
  const FilledSpawner spawner;
  addSpawnerArg(spawner.get(), text);
  EXPECT_EQ(text, spawner.get()->slots[0]);
  EXPECT_EQ(nullptr, spawner.get()->slots[1]);
}

TEST(Spawner, LogsItsCreationTheExecutableAndEveryArgument) {
  EXPECT_EQ((Lines{"[Spawner] Creating spawner", "[Spawner] Setting spawner exe to /bin/true",
                   "[Spawner] Appended argument /bin/true", "[Spawner] Appended argument a b"}),
            test::logLinesOf([] {
              const FilledSpawner spawner({"/bin/true", "a b"});
            }));
}

TEST(Spawner, SetSpawnerExeOnAFilledTableOnlyAppends) {
  const FilledSpawner spawner;
  addSpawnerArg(spawner.get(), "first");
  setSpawnerExe(spawner.get(), "second");
  EXPECT_STREQ("first", spawner.get()->slots[0]);
  EXPECT_STREQ("second", spawner.get()->slots[1]);
}

TEST(RunSpawnerAndWait, ReturnsEveryExitStatus) {
  test::capture([] {
    for (int status = 0; status <= 255; ++status) {
      const std::string code = "exit " + std::to_string(status);
      const FilledSpawner spawner({"/bin/sh", "-c", code});
      EXPECT_EQ(status, runSpawnerAndWait(spawner.get()));
    }
  });
}

TEST(RunSpawnerAndWait, LogsTheCallItsEndAndTheRawStatus) {
  const std::vector<std::string> arguments{"/bin/sh", "-c", "echo pid $$; exit 3"};
  Lines lines;
  lines = test::logLinesOf([&] {
    const FilledSpawner spawner(arguments);
    EXPECT_EQ(3, runSpawnerAndWait(spawner.get()));
  });
  ASSERT_EQ(8u, lines.size());
  const auto own = lines[6].rfind("pid ", 0) == 0 ? lines.begin() + 6 : lines.begin() + 5;
  const std::string child = own->substr(4);
  lines.erase(own);
  EXPECT_EQ("Spawn call returned 0.", lines[5]);
  EXPECT_EQ("Spawn call done " + child + " " + std::to_string(3 << 8) + ".", lines[6]);
}

TEST(RunSpawnerAndWait, TakesAChildThatASignalKilledForSuccess) {
  const std::vector<std::string> arguments{"/bin/sh", "-c", "kill -KILL $$"};
  const Outcome outcome = runAndWait(arguments);
  EXPECT_EQ(0, outcome.result);
  EXPECT_EQ("[Spawner] runSpawnerAndWait returned 0", outcome.lines.back());
  const std::string done = doneLine(outcome.lines);
  EXPECT_EQ(" 9.", done.substr(done.rfind(' ')));
}

static SpawnEnd runToItsEnd(const std::vector<std::string>& arguments) {
  SpawnEnd end{};
  test::capture([&] {
    const FilledSpawner spawner(arguments);
    end = runSpawnerToItsEnd(spawner.get());
  });
  return end;
}

TEST(RunSpawnerToItsEnd, TellsAKilledChildFromOneThatSucceeded) {
  const SpawnEnd killed = runToItsEnd({"/bin/sh", "-c", "kill -KILL $$"});
  const SpawnEnd succeeded = runToItsEnd({"/bin/true"});
  EXPECT_EQ(0, killed.status);
  EXPECT_TRUE(killed.isBySignal);
  EXPECT_EQ(0, succeeded.status);
  EXPECT_FALSE(succeeded.isBySignal);
}

TEST(RunSpawnerToItsEnd, SaysOfAStartThatFailedThatNoSignalEndedIt) {
  const SpawnEnd end = runToItsEnd({"/absent"});
  EXPECT_EQ(-1, end.status);
  EXPECT_FALSE(end.isBySignal);
}

TEST(RunSpawnerAndWait, SaysNothingMoreOfAChildThatEndedNormally) {
  const Outcome outcome = runAndWait({"/bin/true"});
  EXPECT_EQ(0, outcome.result);
  EXPECT_EQ(doneLine(outcome.lines), outcome.lines.back());
}

TEST(RunSpawnerAndWait, LogsTheErrorNumberOfAMissingExecutable) {
  const test::TempFolder folder;
  const Outcome outcome = runAndWait({folder / "absent"});
  EXPECT_EQ(-1, outcome.result);
  EXPECT_EQ("Launch Error " + std::to_string(ENOENT) + ".", outcome.lines.back());
}

TEST(RunSpawnerAndWait, LogsTheErrorNumberOfAFileThatIsNotExecutable) {
  const test::TempFolder folder;
  test::writeFile(folder / "plain", "#!/bin/sh\n", 0644);
  const Outcome outcome = runAndWait({folder / "plain"});
  EXPECT_EQ(-1, outcome.result);
  EXPECT_EQ("Launch Error " + std::to_string(EACCES) + ".", outcome.lines.back());
}

TEST(RunSpawnerAndWait, DoesNotSearchPathForTheExecutable) {
  const test::TempFolder empty;
  EXPECT_EQ(-1, runAndWait({"true"}, empty.path().c_str()).result);
}

TEST(RunSpawnerAndWait, RefusesAnEmptyTable) {
  const Lines lines = test::logLinesOf([] {
    const FilledSpawner spawner;
    EXPECT_EQ(-1, runSpawnerAndWait(spawner.get()));
  });
  EXPECT_EQ("Launch Error " + std::to_string(ENOENT) + ".", lines.back());
}

TEST(RunSpawnerAndWait, StartsTheChildInTheGivenFolderAndComesBack) {
  const test::TempFolder folder;
  const std::string before = workingFolder();
  EXPECT_EQ(0, runAndWait({"/bin/sh", "-c", "echo here > mark"}, folder.path().c_str()).result);
  EXPECT_TRUE(test::exists(folder / "mark"));
  EXPECT_EQ(before, workingFolder());
}

TEST(RunSpawnerAndWait, StartsTheChildInTheCurrentFolderWhenNoneIsGiven) {
  const Outcome outcome = runAndWait({"/bin/pwd", "-P"});
  EXPECT_TRUE(test::containsInOrder(outcome.lines, {workingFolder()}));
}

TEST(RunSpawnerAndWait, ComesBackToItsFolderWhenTheExecutableIsMissing) {
  const test::TempFolder folder;
  const std::string before = workingFolder();
  EXPECT_EQ(-1, runAndWait({folder / "absent"}, folder.path().c_str()).result);
  EXPECT_EQ(before, workingFolder());
}

TEST(RunSpawnerAndWait, StaysInItsFolderWhenTheGivenOneIsMissing) {
  const test::TempFolder folder;
  const std::string before = workingFolder();
  EXPECT_EQ(0, runAndWait({"/bin/true"}, (folder / "absent").c_str()).result);
  EXPECT_EQ(before, workingFolder());
}

TEST(RunSpawnerAndWait, PassesTheEnvironmentOn) {
  setenv("QUORVANE_SPAWNER_TEST", "one two=3", 1);
  const Outcome outcome = runAndWait({"/bin/sh", "-c", "echo \"<$QUORVANE_SPAWNER_TEST>\""});
  EXPECT_TRUE(test::containsInOrder(outcome.lines, {"<one two=3>"}));
}

TEST(RunSpawnerAndWait, PassesArgumentsUntouchedByAnyShell) {
  const std::vector<std::string> odd{"a b", "\"", "$HOME", "`id`", "line\nbreak", ""};
  std::vector<std::string> arguments{"/usr/bin/printf", "[%s]"};
  arguments.insert(arguments.end(), odd.begin(), odd.end());
  const std::string out = test::capture([&] {
                            const FilledSpawner spawner(arguments);
                            EXPECT_EQ(0, runSpawnerAndWait(spawner.get()));
                          }).out;
  EXPECT_NE(std::string::npos, out.find("[a b][\"][$HOME][`id`][line\nbreak][]"));
}

TEST(RunSpawnerAndWait, CanRunTheSameSpawnerAgain) {
  test::capture([] {
    const FilledSpawner spawner({"/bin/sh", "-c", "exit 7"});
    EXPECT_EQ(7, runSpawnerAndWait(spawner.get()));
    EXPECT_EQ(7, runSpawnerAndWait(spawner.get()));
  });
}

// Runs a shell with `slots` arguments in all, which says how many of them it got as its own.
static Outcome runWithSlots(int slots) {
  std::vector<std::string> arguments{"/bin/sh", "-c", "echo \"count $#, last ${496-}\"", "name"};
  while (static_cast<int>(arguments.size()) < slots) {
    arguments.push_back("argument " + std::to_string(arguments.size()));
  }
  return runAndWait(arguments);
}

TEST(Spawner, HandsOn499ArgumentsWhichLeaveItsLastSlotEmpty) {
  const Outcome outcome = runWithSlots(499);
  EXPECT_EQ(0, outcome.result);
  EXPECT_TRUE(test::containsInOrder(outcome.lines, {"count 495, last "}));
}

TEST(Spawner, HandsOnATableFilledTo500ArgumentsWithATerminatorOfItsOwn) {
  const Outcome outcome = runWithSlots(500);
  EXPECT_EQ(0, outcome.result);
  EXPECT_TRUE(test::containsInOrder(
      outcome.lines, {"[Spawner] Appended argument argument 499", "count 496, last argument 499"}));
}

TEST(Spawner, RefusesThe501stArgumentWithAWarningAndRunsTheOthers) {
  const Outcome outcome = runWithSlots(501);
  EXPECT_EQ(0, outcome.result);
  EXPECT_TRUE(test::containsInOrder(outcome.lines,
                                    {"[Spawner] Appended argument argument 499",
                                     "[Spawner] WARNING: couldn't append argument argument 500",
                                     "count 496, last argument 499"}));
}

// Interrupts the calls of this process every few milliseconds for as long as it lives.
class Interruptions {
 public:
  Interruptions() {
    struct sigaction action {};
    action.sa_handler = [](int) { ++count; };
    sigaction(SIGALRM, &action, &before_);
    setTimer(5000);
  }
  ~Interruptions() {
    setTimer(0);
    sigaction(SIGALRM, &before_, nullptr);
  }
  Interruptions(const Interruptions&) = delete;
  Interruptions& operator=(const Interruptions&) = delete;

  static volatile sig_atomic_t count;

 private:
  static void setTimer(suseconds_t microseconds) {
    const itimerval timer{{0, microseconds}, {0, microseconds}};
    setitimer(ITIMER_REAL, &timer, nullptr);
  }
  struct sigaction before_ {};
};
volatile sig_atomic_t Interruptions::count = 0;

TEST(RunSpawnerAndWait, WaitsOnWhenASignalInterruptsIt) {
  const Interruptions interruptions;
  EXPECT_EQ(7, runAndWait({"/bin/sh", "-c", "sleep 0.3; exit 7"}).result);
  EXPECT_GT(Interruptions::count, 5);
}

TEST(RunSpawnerAndContinue, ReturnsBeforeTheChildEnds) {
  const test::TempFolder folder;
  const std::string release = folder / "release";
  const std::string mark = folder / "mark";
  const Lines lines = test::logLinesOf([&] {
    // The child waits for a file that is only written after the call came back.
    const FilledSpawner spawner(
        {"/bin/sh", "-c",
         "n=0; while [ ! -e release ] && [ $n -lt 1000 ]; do n=$((n+1)); sleep 0.02; "
         "done; echo done > mark"});
    EXPECT_EQ(0, runSpawnerAndContinue(spawner.get(), folder.path().c_str()));
    EXPECT_FALSE(test::exists(mark));
    test::writeFile(release, "");
    EXPECT_GT(wait(nullptr), 0);
    EXPECT_TRUE(test::exists(mark));
  });
  EXPECT_EQ("[Spawner] Appended argument -c", lines[3]);
  EXPECT_EQ("", doneLine(lines));
}

TEST(RunSpawnerAndContinue, LogsTheErrorNumberOfAMissingExecutableAndComesBackToItsFolder) {
  const test::TempFolder folder;
  const std::string before = workingFolder();
  const std::string absent = folder / "absent";
  for (const char* workingDir : {static_cast<const char*>(nullptr), folder.path().c_str()}) {
    const Lines lines = test::logLinesOf([&] {
      const FilledSpawner spawner({absent});
      EXPECT_EQ(-1, runSpawnerAndContinue(spawner.get(), workingDir));
    });
    EXPECT_EQ("Launch Error " + std::to_string(ENOENT) + ".", lines.back());
    EXPECT_EQ(before, workingFolder());
  }
}
