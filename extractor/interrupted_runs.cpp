#include "extractor/interrupted_runs.h"

#include <sys/stat.h>

#include <cstring>
#include <ctime>
#include <string>
#include <vector>

#include "extractor/folders.h"
#include "extractor/install_lock.h"
#include "extractor/run.h"
#include "launcher/jre_layout.h"
#include "support/folder_walk.h"
#include "support/logging.h"
#include "support/paths.h"

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

// A prepared bundle's Java home is a link. One that still holds a home of its own, as a bundle or
// as a plain Java home does, was not finished; nor was one that is not linked to its plain folder
// yet.
static bool isUnfinished(const std::string& bundle) {
  const std::string plain = bundle.substr(0, bundle.size() - strlen(".plugin"));
  struct stat home {};
  const bool isLinked =
      lstat((bundle + "/Contents/Home").c_str(), &home) == 0 && S_ISLNK(home.st_mode);
  return !isLinked && (hasFolder(bundle, "Contents/Home") || hasFolder(bundle, "bin") ||
                       hasFolder(plain, "bin"));
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
  for (const std::string& path : unfinishedRuntimesIn(run.masterFolder)) {
    logMessage("[Extractor] Finishing the interrupted setup of %s\n", path.c_str());
    if (!hasFolder(path, "bin")) {
      mkdir((path + "/Contents").c_str(), 0777);
    }
    initOSXJRE(path.c_str());
  }
}

static bool isOld(const std::string& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0 && time(nullptr) - status.st_mtime > kOneDay;
}

void removeOldTempFolders(const ExtractorRun& run) {
  for (const std::string& path : pathsIn(run.masterFolder)) {
    const bool isTemp = strncmp(pathToFile(path.c_str()), "QuorvaneTemp-", 13) == 0;
    if (isTemp && isFolder(path.c_str()) && isOld(path)) {
      logMessage("[Extractor] Removing old temporary folder %s\n", path.c_str());
      removeFolder(path.c_str());
    }
  }
}
