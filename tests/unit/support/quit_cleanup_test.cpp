#include "support/events/quit_cleanup.h"

#include <gtest/gtest.h>

#include <string>

static std::string calls;

static void first() {
  calls += "first ";
}
static void second() {
  calls += "second ";
}

TEST(QuitCleanup, RunsEachFunctionOnce) {
  addQuitCleanup(first);
  addQuitCleanup(second);
  addQuitCleanup(first);
  calls.clear();
  runQuitCleanup();
  EXPECT_EQ("first second ", calls);
  runQuitCleanup();
  EXPECT_EQ("first second ", calls);
}

TEST(QuitCleanup, LeavesOutWhatWasTakenBack) {
  addQuitCleanup(first);
  addQuitCleanup(second);
  removeQuitCleanup(first);
  calls.clear();
  runQuitCleanup();
  EXPECT_EQ("second ", calls);
}
