#include "extractor/folders.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
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

static int createNewFolder(const char* path) {
  const int result = mkdir(path, 0777);
  if (result == 0 || errno != EEXIST) {
    chmod777(path);
    return result;
  }
  return EEXIST;
}

int createTempFolder(const ExtractorRun& run, char* path) {
  const int result = createNewFolder(path);
  if (result != EEXIST) {
    return result;
  }
  nameTempFolder(run, path);
  return createNewFolder(path);
}

// Moves `temp` to `target`, where nothing stands. Returns whether all of it arrived; otherwise
// nothing stands there.
static bool moveToFreePlace(const char* temp, const char* target) {
  doRename(temp, target);
  if (isKnownMissing(temp) || completeCopy(temp, target)) {
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
    if (rename(aside, target) != 0) {
      static_cast<void>(moveToFreePlace(aside, target));
    }
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

// What is no folder cannot be a version folder; a copy would follow a link that stands there.
static void removeObstacle(const char* component, const char* target) {
  if (!isThere(target) || isFolder(target)) {
    return;
  }
  logMessage("[Extractor] Removing %s, which is no folder\n", target);
  if (remove(target) != 0) {
    failRun("[Extractor] The folder of the %s could not be put into place\n", component);
  }
}

void moveIntoPlace(const ExtractorRun& run, const char* component, const char* temp,
                   const char* target) {
  if (!isFolder(temp)) {
    failRun("[Extractor] The folder of the %s is gone, nothing of it is installed\n", component);
  }
  removeObstacle(component, target);
  // Where the system cannot tell what stands there, it is replaced, which needs no look: what is
  // moved to a place taken for free would be copied into an installed version.
  const bool isInPlace =
      isKnownMissing(target) ? moveToFreePlace(temp, target) : replaceFolder(run, temp, target);
  // The source of a copy, or what stood there before an exchange.
  removeTree(temp);
  if (!isInPlace) {
    failRun("[Extractor] The folder of the %s could not be put into place\n", component);
  }
}
