#include "extractor/folders.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "extractor/copied_folder.h"
#include "extractor/run.h"
#include "platform/exchange_folders.h"
#include "support/file_operations.h"
#include "support/folder_walk.h"
#include "support/logging.h"
#include "support/paths.h"

bool isFolder(const char* path) {
  struct stat status {};
  return lstat(path, &status) == 0 && S_ISDIR(status.st_mode);
}

bool isExecutable(const char* path) {
  struct stat status {};
  return stat(path, &status) == 0 && S_ISREG(status.st_mode) && access(path, X_OK) == 0;
}

void requireLaunchFile(const char* component, const char* temp) {
  char path[PATH_BUFFER_SIZE];
  struct stat status {};
  if (lstat(setPath(path, temp, "QuorvaneLaunch"), &status) != 0 || !S_ISREG(status.st_mode)) {
    removeFolder(temp);
    failRun("[Extractor] The archives of the %s hold no launch file, nothing of it is installed\n",
            component);
  }
}

// Removes what deleteFolder() leaves: the folder itself and two-character dot names.
static void removeRest(const char* path) {
  for (const std::string& name : allNames(openFolderWithoutLink(path))) {
    removeRest(childPath(path, name).c_str());
  }
  remove(path);
}

void removeFolder(const char* path) {
  if (!isFolder(path)) {
    return;
  }
  deleteFolder(path);
  removeRest(path);
}

static bool exists(const char* path) {
  struct stat status {};
  return lstat(path, &status) == 0;
}

void nameTempFolder(const ExtractorRun& run, char* dst) {
  constexpr int kTries = 20;
  constexpr useconds_t kPauseMicroseconds = 100000;
  makeAppTempFolder(dst, run.masterFolder);
  for (int i = 0; i < kTries && exists(dst); ++i) {
    usleep(kPauseMicroseconds);
    makeAppTempFolder(dst, run.masterFolder);
  }
}

int createTempFolder(const ExtractorRun& run, char* path) {
  if (exists(path)) {
    nameTempFolder(run, path);
  }
  return makeDir(path);
}

// Puts `temp` where a version folder stands already; what stood there is then removed.
static void replaceFolder(const ExtractorRun& run, char* temp, const char* target) {
  logMessage("[Extractor] Replacing existing folder %s\n", target);
  if (exchangeFolders(temp, target)) {
    removeFolder(temp);
    return;
  }
  char old[PATH_BUFFER_SIZE];
  nameTempFolder(run, old);
  if (rename(target, old) == 0) {
    doRename(temp, target);
    removeFolder(old);
  } else {
    doRename(temp, target);
  }
}

void moveIntoPlace(const ExtractorRun& run, const char* component, char* temp, const char* target) {
  if (!isFolder(temp)) {
    failRun("[Extractor] The folder of the %s is gone, nothing of it is installed\n", component);
  }
  if (isFolder(target)) {
    replaceFolder(run, temp, target);
  } else {
    doRename(temp, target);
  }
  if (isFolder(temp) && !completeCopy(temp, target)) {
    removeFolder(target);
    removeFolder(temp);
    failRun("[Extractor] The folder of the %s could not be put into place\n", component);
  }
  removeFolder(temp);
}
