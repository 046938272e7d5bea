#include "extractor/versions/folders.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

#include "extractor/run/run.h"
#include "extractor/versions/copied_folder.h"
#include "extractor/versions/temp_marks.h"
#include "launch/launch_file.h"
#include "platform/exchange_folders.h"
#include "support/files/file_kind.h"
#include "support/files/file_operations.h"
#include "support/files/missing_entries.h"
#include "support/files/paths.h"
#include "support/log/logging.h"

void nameTempFolder(const char* masterFolder, char* dst) {
  constexpr int kTries = 20;
  constexpr useconds_t kPauseMicroseconds = 100000;
  makeAppTempFolder(dst, masterFolder);
  for (int i = 0; i < kTries && exists(dst); ++i) {
    usleep(kPauseMicroseconds);
    makeAppTempFolder(dst, masterFolder);
  }
}

static int createNewFolder(const char* path) {
  const int result = mkdir(path, 0777);
  if (result == 0 || errno != EEXIST) {
    chmod777(path);
    markTempFolder(path);
    return result;
  }
  return EEXIST;
}

int createTempFolder(const char* masterFolder, char* path) {
  const int result = createNewFolder(path);
  if (result != EEXIST) {
    return result;
  }
  nameTempFolder(masterFolder, path);
  return createNewFolder(path);
}

void requireLaunchFile(const char* component, const char* temp) {
  if (!isRegularFile(childPath(temp, LAUNCH_FILE_NAME).c_str())) {
    removeTree(temp);
    failRun(Failure::ArchiveDamaged,
            "[Extractor] The archives of the %s hold no launch file, nothing of it is installed\n",
            component);
  }
}

namespace {

// The result of a replacement. Kept: the earlier folder is complete and in its place. Stuck: it
// could not be put back.
enum class Outcome { Replaced, Kept, Stuck };

struct Placing {
  const char* masterFolder;
  const char* temp;
  const char* target;
  const std::vector<std::string>& leftOut;
  ByCopy byCopy;
  Failure failure = Failure::FolderNotWritable;  // why it went wrong
};

}  // namespace

// Called before anything is removed: removing frees space, which hides a full disk.
static void noteFailureOfPlacing(Placing* placing) {
  if (placing->failure != Failure::DiskFull) {
    placing->failure = failureOfWriting(0, placing->masterFolder);
  }
}

static bool moveOrCopy(const char* from, const char* target) {
  doRename(from, target);
  return isDefinitelyMissing(from) || completeCopy(from, target);
}

// Moves `from` to the target, which does not exist. Returns whether all of it arrived; otherwise
// the target does not exist afterwards.
static bool moveToFreePlace(Placing* placing, const char* from) {
  const bool isMoved = placing->byCopy == ByCopy::Allowed ? moveOrCopy(from, placing->target)
                                                          : renameFolder(from, placing->target);
  if (isMoved) {
    return true;
  }
  noteFailureOfPlacing(placing);
  removeTree(placing->target);
  return false;
}

// Writes the name of a folder of the master folder that no later run removes.
static void nameKeptFolder(const char* masterFolder, char* dst) {
  char temp[PATH_BUFFER_SIZE];
  nameTempFolder(masterFolder, temp);
  setPath(dst, masterFolder, "QuorvaneKept-");
  appendToPath(dst, pathToFile(temp) + strlen("QuorvaneTemp-"));
}

static void logKept(const char* kept) {
  logMessage("[Extractor] The earlier folder is kept as %s\n", kept);
}

// Moves the earlier folder back from `aside`.
static Outcome takeBack(Placing* placing, const char* aside) {
  if (rename(aside, placing->target) == 0) {
    return Outcome::Kept;
  }
  // A copy lacks some entries.
  if (!moveToFreePlace(placing, aside) || !addMissingEntries(aside, placing->target)) {
    logKept(aside);
    return Outcome::Stuck;
  }
  removeTree(aside);
  return Outcome::Kept;
}

// Sets the earlier folder aside, moves the temporary one into place, and restores the earlier one
// if that fails. The name used aside is one that no later run removes.
static Outcome replaceInTwoSteps(Placing* placing) {
  char aside[PATH_BUFFER_SIZE];
  nameKeptFolder(placing->masterFolder, aside);
  if (rename(placing->target, aside) != 0) {
    noteFailureOfPlacing(placing);
    return Outcome::Kept;
  }
  if (!moveToFreePlace(placing, placing->temp)) {
    return takeBack(placing, aside);
  }
  if (!addMissingEntries(aside, placing->target, placing->leftOut)) {
    noteFailureOfPlacing(placing);
    removeTree(placing->target);
    return takeBack(placing, aside);
  }
  removeTree(aside);
  return Outcome::Replaced;
}

// The earlier folder has the temporary one's name and cannot be exchanged back.
static Outcome keepUnderAnotherName(const Placing& placing) {
  char kept[PATH_BUFFER_SIZE];
  nameKeptFolder(placing.masterFolder, kept);
  logKept(rename(placing.temp, kept) == 0 ? kept : placing.temp);
  return Outcome::Stuck;
}

// Entries written into the earlier folder just before the exchange are added after it. If that
// fails, the folders are exchanged back.
static Outcome replaceFolder(Placing* placing) {
  const char* temp = placing->temp;
  const char* target = placing->target;
  logMessage("[Extractor] Replacing existing folder %s\n", target);
  const Descriptor mark = markFolder(target);  // it will have the temporary folder's name
  if (!addMissingEntries(target, temp, placing->leftOut)) {
    noteFailureOfPlacing(placing);
    return Outcome::Kept;
  }
  if (!exchangeFolders(temp, target)) {
    return replaceInTwoSteps(placing);
  }
  if (!addMissingEntries(temp, target, placing->leftOut)) {
    noteFailureOfPlacing(placing);
    return exchangeFolders(temp, target) ? Outcome::Kept : keepUnderAnotherName(*placing);
  }
  printWorkingDir();
  logRenamed(temp, target);
  return Outcome::Replaced;
}

static Outcome place(Placing* placing) {
  // If the system cannot tell whether the target exists, it is replaced: moving to a target that
  // does exist would copy into an installed version.
  if (!isDefinitelyMissing(placing->target)) {
    return replaceFolder(placing);
  }
  return moveToFreePlace(placing, placing->temp) ? Outcome::Replaced : Outcome::Kept;
}

void requireTempFolder(const char* component, const char* temp) {
  if (!isFolder(temp)) {
    failRun("[Extractor] The folder of the %s is gone, nothing of it is installed\n", component);
  }
}

// A version folder must be a directory. A copy would follow a link in its place.
void removeObstacle(const char* masterFolder, const char* component, const char* target) {
  if (!exists(target) || isFolder(target)) {
    return;
  }
  logMessage("[Extractor] Removing %s, which is no folder\n", target);
  if (remove(target) != 0) {
    failRun(failureOfWriting(0, masterFolder),
            "[Extractor] The folder of the %s could not be put into place\n", component);
  }
}

void moveIntoPlace(const char* masterFolder, const char* component, const char* temp,
                   const char* target, const std::vector<std::string>& leftOut, ByCopy byCopy) {
  requireTempFolder(component, temp);
  removeObstacle(masterFolder, component, target);
  Placing placing{masterFolder, temp, target, leftOut, byCopy};
  const Outcome outcome = place(&placing);
  if (outcome != Outcome::Stuck) {
    removeTree(temp);  // the source of a copy, or the earlier folder after an exchange
  }
  if (outcome != Outcome::Replaced) {
    failRun(placing.failure, "[Extractor] The folder of the %s could not be put into place\n",
            component);
  }
}
