#include "extractor/folders.h"

#include <unistd.h>

#include <cstdio>
#include <string>

#include "extractor/copied_folder.h"
#include "extractor/run.h"
#include "platform/exchange_folders.h"
#include "support/file_kind.h"
#include "support/file_operations.h"
#include "support/folder_walk.h"
#include "support/logging.h"
#include "support/paths.h"

void nameTempFolder(const ExtractorRun& run, char* dst) {
  constexpr int kTries = 20;
  constexpr useconds_t kPauseMicroseconds = 100000;
  makeAppTempFolder(dst, run.masterFolder);
  for (int i = 0; i < kTries && isThere(dst); ++i) {
    usleep(kPauseMicroseconds);
    makeAppTempFolder(dst, run.masterFolder);
  }
}

int createTempFolder(const ExtractorRun& run, char* path) {
  if (isThere(path)) {
    nameTempFolder(run, path);
  }
  return makeDir(path);
}

// Moves `temp` to `target`, where nothing stands. Returns whether all of it arrived; otherwise
// nothing stands there.
static bool moveToFreePlace(const char* temp, const char* target) {
  doRename(temp, target);
  if (!isFolder(temp) || completeCopy(temp, target)) {
    return true;
  }
  removeTree(target);
  return false;
}

// Moves `temp` to `target` while what stood there waits aside, to come back when that fails.
static bool replaceInTwoSteps(const ExtractorRun& run, const char* temp, const char* target) {
  char aside[PATH_BUFFER_SIZE];
  nameTempFolder(run, aside);
  if (rename(target, aside) != 0) {
    return false;
  }
  if (!moveToFreePlace(temp, target)) {
    doRename(aside, target);
    return false;
  }
  removeTree(aside);
  return true;
}

static bool replaceFolder(const ExtractorRun& run, const char* temp, const char* target) {
  logMessage("[Extractor] Replacing existing folder %s\n", target);
  if (!exchangeFolders(temp, target)) {
    return replaceInTwoSteps(run, temp, target);
  }
  printWorkingDir();
  logRenamed(temp, target);
  return true;
}

void moveIntoPlace(const ExtractorRun& run, const char* component, const char* temp,
                   const char* target) {
  if (!isFolder(temp)) {
    failRun("[Extractor] The folder of the %s is gone, nothing of it is installed\n", component);
  }
  const bool isInPlace =
      isFolder(target) ? replaceFolder(run, temp, target) : moveToFreePlace(temp, target);
  // The source of a copy, or what stood there before an exchange.
  removeTree(temp);
  if (!isInPlace) {
    failRun("[Extractor] The folder of the %s could not be put into place\n", component);
  }
}
