#include "launcher/jvm/java_thread.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cstring>

#include "tests/support/capture.h"

static const size_t kMegabyte = size_t{1} << 20;

// Touches one megabyte of stack in each of `argument` calls.
static size_t touch(size_t count) {
  volatile char room[kMegabyte];
  room[0] = static_cast<char>(count);
  return count == 0 ? 0 : touch(count - 1) + static_cast<size_t>(room[0] != 0);
}

static void* touchStack(void* argument) {
  auto* count = static_cast<size_t*>(argument);
  *count = touch(*count - 1) + 1;
  return nullptr;
}

// Runs in a process in which a second thread gets half a megabyte by default, as on macOS.
static test::Result touchInThread(size_t stackSize, size_t megabytes) {
  return test::runInChild([stackSize, megabytes] {
    rlimit limit{};
    getrlimit(RLIMIT_STACK, &limit);
    limit.rlim_cur = kMegabyte / 2;
    setrlimit(RLIMIT_STACK, &limit);
    size_t count = megabytes;
    pthread_t thread;
    if (!startJavaThread(&thread, stackSize, touchStack, &count)) {
      _exit(1);
    }
    pthread_join(thread, nullptr);
    _exit(count == megabytes ? 0 : 2);
  });
}

TEST(JavaThread, HasTheStackThatIsAskedFor) {
  EXPECT_EQ(0, touchInThread(8 * kMegabyte, 7).status);
  EXPECT_EQ(0, touchInThread(64 * kMegabyte, 62).status);
}

TEST(JavaThread, MayAskForASizeThatIsNotOfWholePages) {
  EXPECT_EQ(0, touchInThread(8 * kMegabyte + 1, 7).status);
}

TEST(JavaThread, StartsWhereTheSystemRefusesSoLargeAStack) {
  EXPECT_EQ(0, touchInThread(size_t{1} << 60, 1).status);
}
