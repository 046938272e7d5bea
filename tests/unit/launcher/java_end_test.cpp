#include "launcher/shell/java_end.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <thread>

#include "tests/support/stand_in_vm.h"

// The process ends in each of these, so that each runs in a process of its own.
class JavaEndDeathTest : public testing::Test {
 protected:
  JavaEndDeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

  // Quits, and lets only the orderly end or the bound end the process.
  static void quitAndStay() {
    if (!endJavaInOrder()) {
      _exit(70);
    }
    while (true) {
      pause();
    }
  }
};

static const unsigned kForEver = 3600;

static std::atomic<bool> isExiting{false};

static void neverReturn(int) {
  isExiting = true;
  while (true) {
    pause();
  }
}

// Ends the process with 40 more than the status that System.exit was given.
static void endWithMark(int status) {
  _exit(40 + status);
}

static void refuse(int) {}

TEST(JavaEnd, WithoutAJvmNothingHasToBeWaitedFor) {
  EXPECT_FALSE(endJavaInOrder());
}

TEST(JavaEnd, AfterTheJvmIsGoneNothingHasToBeWaitedFor) {
  setRunningJava(test::standInVm({true, endWithMark}));
  setRunningJava(nullptr);
  EXPECT_FALSE(endJavaInOrder());
}

TEST_F(JavaEndDeathTest, CallsSystemExitWithZero) {
  EXPECT_EXIT(
      {
        javaEndSeconds = kForEver;
        setRunningJava(test::standInVm({true, endWithMark}));
        quitAndStay();
      },
      testing::ExitedWithCode(40), "");
}

TEST_F(JavaEndDeathTest, HooksThatNeverEndAreWaitedForNoLongerThanTheBound) {
  EXPECT_EXIT(
      {
        javaEndSeconds = 1;
        setRunningJava(test::standInVm({true, neverReturn}));
        quitAndStay();
      },
      testing::ExitedWithCode(0), "");
}

TEST_F(JavaEndDeathTest, ASecondQuitDuringTheWaitEndsTheProcessAtOnce) {
  EXPECT_EXIT(
      {
        javaEndSeconds = kForEver;
        setRunningJava(test::standInVm({true, neverReturn}));
        const bool begun = endJavaInOrder();
        while (begun && !isExiting) {
          std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        quitAndStay();
      },
      testing::ExitedWithCode(0), "");
}

TEST_F(JavaEndDeathTest, AJvmThatTakesNoThreadAnyMoreIsNotWaitedFor) {
  EXPECT_EXIT(
      {
        javaEndSeconds = kForEver;
        setRunningJava(test::standInVm({false, neverReturn}));
        quitAndStay();
      },
      testing::ExitedWithCode(0), "");
}

TEST_F(JavaEndDeathTest, ASystemExitThatIsRefusedEndsTheProcessAllTheSame) {
  EXPECT_EXIT(
      {
        javaEndSeconds = kForEver;
        setRunningJava(test::standInVm({true, refuse}));
        quitAndStay();
      },
      testing::ExitedWithCode(0), "");
}
