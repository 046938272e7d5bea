#include "extractor/installation/interrupted_runs.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "extractor/runtime/jre_layout.h"
#include "extractor/runtime/publish_runtime.h"
#include "extractor/versions/install_lock.h"
#include "extractor/versions/temp_marks.h"
#include "support/files/file_kind.h"
#include "support/files/file_operations.h"
#include "support/files/folder_walk.h"
#include "support/files/paths.h"
#include "support/log/logging.h"

static const char kTempPrefix[] = "QuorvaneTemp-";

namespace {

struct Move {
  std::string from;
  std::string to;
};

}  // namespace

static bool endsIn(const std::string& name, const std::string& end) {
  return name.size() >= end.size() && name.compare(name.size() - end.size(), end.size(), end) == 0;
}

// Sorted.
static std::vector<std::string> pathsIn(const char* masterFolder) {
  std::vector<std::string> paths;
  for (const std::string& name : namesToWalk(openFolder(masterFolder))) {
    paths.push_back(childPath(masterFolder, name));
  }
  std::sort(paths.begin(), paths.end());
  return paths;
}

static bool isAbandonedTemp(const std::string& path) {
  return strncmp(pathToFile(path.c_str()), kTempPrefix, strlen(kTempPrefix)) == 0 &&
         isFolder(path.c_str()) && isAbandoned(path.c_str());
}

// The home that a waiting bundle in the folder `temp` links to.
static std::string homeOfWaitingBundleIn(const std::string& temp) {
  char target[PATH_BUFFER_SIZE] = "";
  const std::string link = childPath(temp, WAITING_BUNDLE) + "/Contents/Home";
  return readlink(link.c_str(), target, sizeof target - 1) < 0 ? "" : target;
}

// Where the system cannot exchange folders, a home may be missing while its bundle is there: the
// run died after it had put the earlier one aside. The new one is whole, with a bundle in it.
static void addMissingHome(const std::vector<std::string>& paths, const std::string& home,
                           std::vector<Move>* moves) {
  if (std::binary_search(paths.begin(), paths.end(), home) || !isDefinitelyMissing(home.c_str())) {
    return;
  }
  for (const std::string& path : paths) {
    if (isAbandonedTemp(path) && homeOfWaitingBundleIn(path) == home) {
      moves->push_back({path, home});
    }
  }
}

static void addWaitingBundle(const std::string& home, std::vector<Move>* moves) {
  const std::string waiting = childPath(home, WAITING_BUNDLE);
  const std::string bundle = home + ".plugin";
  if (isFolder(waiting.c_str()) && isFolder(home.c_str()) && isDefinitelyMissing(bundle.c_str())) {
    moves->push_back({waiting, bundle});
  }
}

static std::vector<Move> movesLeftIn(const char* masterFolder) {
  const std::vector<std::string> paths = pathsIn(masterFolder);
  std::vector<Move> moves;
  for (const std::string& path : paths) {
    if (endsIn(path, "-complete.plugin")) {
      addMissingHome(paths, plainFolderOf(path), &moves);
    } else if (endsIn(path, "-complete")) {
      addWaitingBundle(path, &moves);
    }
  }
  return moves;
}

void finishInterruptedRuntimes(const char* masterFolder) {
  if (movesLeftIn(masterFolder).empty()) {
    return;
  }
  const InstallLock lock(masterFolder, InstallLock::Wait::Never);
  if (lock.isHeldByAnother()) {
    logMessage("[Extractor] Another installer is at work, unfinished runtimes are left to it\n");
    return;
  }
  finishRuntimesUnderLock(masterFolder);
}

void finishRuntimesUnderLock(const char* masterFolder) {
  for (const Move& move : movesLeftIn(masterFolder)) {
    logMessage("[Extractor] Finishing the interrupted setup of %s\n", move.to.c_str());
    if (rename(move.from.c_str(), move.to.c_str()) != 0) {
      logMessage("[Extractor] Unable to move %s there\n", move.from.c_str());
    }
  }
}

void removeAbandonedTempFolders(const char* masterFolder) {
  for (const std::string& path : pathsIn(masterFolder)) {
    if (isAbandonedTemp(path)) {
      logMessage("[Extractor] Removing old temporary folder %s\n", path.c_str());
      removeTree(path.c_str());
    }
  }
}
