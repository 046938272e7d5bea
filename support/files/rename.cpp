#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "support/files/file_operations.h"
#include "support/files/move_item.h"
#include "support/log/logging.h"

static const int kRenameRounds = 10;
static const useconds_t kPauseMicroseconds = 300000;

void logRenamed(const char* from, const char* to) {
  logMessage("[Rename] File '%s' renamed to '%s'\n", from, to);
}

// One retry: the Cocoa file manager first, then, after a pause, another rename. *lastError is the
// errno of the last rename that failed.
static bool retryRename(const char* from, const char* to, int* lastError) {
  logMessage("[Rename] Could not rename '%s' to '%s' [%d]\n", from, to, *lastError);
  if (moveItem(from, to)) {
    logMessage("[Rename] OSX Rename worked.\n");
    return true;
  }
  usleep(kPauseMicroseconds);
  if (rename(from, to) == 0) {
    return true;
  }
  *lastError = errno;
  return false;
}

// Returns 0, or the errno of the last rename that failed.
static int renameStubbornly(const char* from, const char* to) {
  printWorkingDir();
  int lastError = rename(from, to) == 0 ? 0 : errno;
  bool isRenamed = lastError == 0;
  for (int round = 1; round <= kRenameRounds && !isRenamed; ++round) {
    isRenamed = retryRename(from, to, &lastError);
  }
  if (!isRenamed) {
    return lastError;
  }
  logRenamed(from, to);
  return 0;
}

static void copyInstead(const char* from, const char* to, int lastError) {
  logMessage("[Rename] [FAIL] Could not rename '%s' to '%s' [%d]\n", from, to, lastError);
  logMessage("[Rename] Can do no better than a copy on this filesystem\n");
  makeDir(to);
  logMessage("[Rename] Created folder %s\n", to);
  if (copyFolder(from, to) == 0) {
    logMessage("[Rename] Copied %s to %s\n", from, to);
  } else {
    logMessage("[Rename] Copy failed too! Severe filesystem issues.\n");
  }
}

bool renameFolder(const char* from, const char* to) {
  return renameStubbornly(from, to) == 0;
}

void doRename(const char* from, const char* to) {
  const int lastError = renameStubbornly(from, to);
  if (lastError != 0) {
    copyInstead(from, to, lastError);
  }
}
