// How the process finds out whether the desktop started it: the rule of this system, and macOS's
// from its own source, with stand-ins for the two calls that it makes.

#include "platform/desktop_start.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>

#include "support/process/process_start.h"

static pid_t standInParent = 0;
static bool standInTerminal = false;
static int askedDescriptor = -1;

static pid_t parentOf() {
  return standInParent;
}

static int isTerminal(int descriptor) {
  askedDescriptor = descriptor;
  return standInTerminal ? 1 : 0;
}

#define getppid parentOf
#define isatty isTerminal
#define looksStartedByDesktop looksStartedByFinder
#include "platform/macos/desktop_start.cpp"
#undef looksStartedByDesktop
#undef isatty
#undef getppid

static bool looksStartedByFinderWith(pid_t parent, bool terminal) {
  standInParent = parent;
  standInTerminal = terminal;
  return looksStartedByFinder();
}

TEST(MacDesktopStart, IsAChildOfLaunchdWithoutATerminal) {
  EXPECT_TRUE(looksStartedByFinderWith(1, false));
  EXPECT_EQ(STDERR_FILENO, askedDescriptor);
}

TEST(MacDesktopStart, IsNoChildOfLaunchdWithATerminal) {
  EXPECT_FALSE(looksStartedByFinderWith(1, true));
}

TEST(MacDesktopStart, IsNoChildOfAnotherProcess) {
  EXPECT_FALSE(looksStartedByFinderWith(4711, false));
  EXPECT_FALSE(looksStartedByFinderWith(4711, true));
}

TEST(LinuxDesktopStart, HasAStartupId) {
  setenv("DESKTOP_STARTUP_ID", "files-1-host_TIME5", 1);
  EXPECT_TRUE(looksStartedByDesktop());
  setenv("DESKTOP_STARTUP_ID", "", 1);
  EXPECT_FALSE(looksStartedByDesktop());
  unsetenv("DESKTOP_STARTUP_ID");
  EXPECT_FALSE(looksStartedByDesktop());
}

TEST(DesktopStart, IsJudgedOnceWhenTheProcessBegins) {
  setenv("DESKTOP_STARTUP_ID", "files-1-host_TIME5", 1);
  EXPECT_FALSE(isStartedByDesktop());
  beginProcess();
  unsetenv("DESKTOP_STARTUP_ID");
  EXPECT_TRUE(isStartedByDesktop());
}
