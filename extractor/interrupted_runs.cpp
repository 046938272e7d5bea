#include "extractor/interrupted_runs.h"

#include <sys/stat.h>

#include <cstring>
#include <ctime>
#include <string>
#include <vector>

#include "extractor/folders.h"
#include "extractor/install_lock.h"
#include "extractor/lay_out_runtime.h"
#include "extractor/run.h"
#include "support/file_kind.h"
#include "support/file_operations.h"
#include "support/folder_walk.h"
#include "support/logging.h"
#include "support/paths.h"

static const char kTempPrefix[] = "QuorvaneTemp-";
static const time_t kOneDay = 24 * 60 * 60;

static bool endsIn(const std::string& name, const std::string& end) {
  return name.size() >= end.size() && name.compare(name.size() - end.size(), end.size(), end) == 0;
}

static std::vector<std::string> pathsIn(const char* masterFolder) {
  std::vector<std::string> paths;
  for (const std::string& name : namesToWalk(openFolder(masterFolder))) {
    paths.push_back(childPath(masterFolder, name));
  }
  return paths;
}

static bool hasFolder(const std::string& path, const char* name) {
  return isFolder(childPath(path, name).c_str());
}

static std::string plainFolderOf(const std::string& bundle) {
  return bundle.substr(0, bundle.size() - strlen(".plugin"));
}

// Whether Contents/Home is there, as a folder or as the link of a prepared bundle.
static bool hasHomeOrLink(const std::string& bundle) {
  return isThere((bundle + "/Contents/Home").c_str());
}

// Whether the bundle still holds a Java home of its own: in Contents/Home or, where there is none,
// as a plain Java home does. A prepared bundle may have a "bin" that is no Java's.
static bool holdsHome(const std::string& bundle) {
  const bool isHomeReal = hasFolder(bundle, "Contents/Home");
  return (isHomeReal && hasFolder(bundle, "Contents/Home/bin")) ||
         (!hasHomeOrLink(bundle) && hasFolder(bundle, "bin"));
}

static bool mayHave(const std::string& path, const char* name) {
  return !isKnownMissing(childPath(path, name).c_str());
}

// The plain folder beside an unfinished bundle that holds a home is an earlier runtime of the same
// version. A move that was cut short has "bin" in one of the two only. Where the system cannot
// tell, it counts as an earlier one: otherwise the two would be mixed.
static bool mayHaveEarlierHome(const std::string& bundle) {
  const std::string home = mayHave(bundle, "Contents/Home") ? bundle + "/Contents/Home" : bundle;
  return mayHave(home, "bin") && mayHave(plainFolderOf(bundle), "bin");
}

// A bundle that no installer made: what its links lead to must not be moved, or be removed.
static bool leadsElsewhere(const std::string& bundle) {
  return isLink((bundle + "/Contents").c_str()) || isLink((bundle + "/Contents/MacOS").c_str());
}

// A prepared bundle's Java home is a link to the plain folder.
static bool isUnfinished(const std::string& bundle) {
  if (leadsElsewhere(bundle)) {
    return false;
  }
  return holdsHome(bundle) || isMoveCutShort(bundle.c_str()) ||
         (!hasHomeOrLink(bundle) && hasFolder(plainFolderOf(bundle), "bin"));
}

static std::vector<std::string> unfinishedRuntimesIn(const char* masterFolder) {
  std::vector<std::string> unfinished;
  for (const std::string& path : pathsIn(masterFolder)) {
    if (endsIn(path, "-complete.plugin") && isFolder(path.c_str()) && isUnfinished(path)) {
      unfinished.push_back(path);
    }
  }
  return unfinished;
}

void finishInterruptedRuntimes(const ExtractorRun& run) {
  if (unfinishedRuntimesIn(run.masterFolder).empty()) {
    return;
  }
  const InstallLock lock(run.masterFolder);
  if (lock.isHeldByAnother()) {
    return;
  }
  for (const std::string& path : unfinishedRuntimesIn(run.masterFolder)) {
    logMessage("[Extractor] Finishing the interrupted setup of %s\n", path.c_str());
    if (!hasFolder(path, "bin")) {
      // It may have been created, and died, before that.
      mkdir((path + "/Contents").c_str(), 0777);
    }
    const std::string earlier = mayHaveEarlierHome(path) ? plainFolderOf(path) : "";
    if (!layOutRuntime(run, path.c_str(), earlier.empty() ? nullptr : earlier.c_str())) {
      logMessage("[Extractor] %s stays as it was before\n", earlier.c_str());
    }
  }
}

static bool isOld(const std::string& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0 && time(nullptr) - status.st_mtime > kOneDay;
}

void removeOldTempFolders(const ExtractorRun& run) {
  for (const std::string& path : pathsIn(run.masterFolder)) {
    const bool isTemp = strncmp(pathToFile(path.c_str()), kTempPrefix, strlen(kTempPrefix)) == 0;
    if (isTemp && isFolder(path.c_str()) && isOld(path)) {
      logMessage("[Extractor] Removing old temporary folder %s\n", path.c_str());
      removeTree(path.c_str());
    }
  }
}
