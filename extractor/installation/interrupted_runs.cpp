#include "extractor/installation/interrupted_runs.h"

#include <sys/stat.h>

#include <cstring>
#include <string>
#include <vector>

#include "extractor/run/run.h"
#include "extractor/runtime/jre_layout.h"
#include "extractor/runtime/lay_out_runtime.h"
#include "extractor/versions/folders.h"
#include "extractor/versions/install_lock.h"
#include "extractor/versions/temp_marks.h"
#include "support/files/file_kind.h"
#include "support/files/file_operations.h"
#include "support/files/folder_walk.h"
#include "support/files/paths.h"
#include "support/log/logging.h"

static const char kTempPrefix[] = "QuorvaneTemp-";

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

enum class Sight { Nothing, Something, Unknown };

static Sight lookAt(const std::string& path) {
  if (isThere(path.c_str())) {
    return Sight::Something;
  }
  return isKnownMissing(path.c_str()) ? Sight::Nothing : Sight::Unknown;
}

// An earlier runtime in the plain folder's place, or what is no folder.
static Sight lookAtPlace(const std::string& plain) {
  const bool isNoFolder = isLink(plain.c_str()) || isPlainFile(plain.c_str());
  return isNoFolder ? Sight::Something : lookAt(plain + "/bin");
}

// What has to make way for an unfinished bundle's home. An earlier runtime of the same version has
// its own "bin"; a move that was cut short has "bin" in one of the two only. Where one passed for
// the other, two runtimes would be mixed, or half of one removed.
static Sight lookForObstacle(const std::string& bundle, const std::string& plain) {
  const std::string home = bundle + "/Contents/Home";
  if (isLink(home.c_str())) {
    return Sight::Unknown;  // a prepared bundle: the look that found it unfinished failed
  }
  const Sight homeSight = lookAt(home);
  const Sight bin = lookAt((homeSight == Sight::Nothing ? bundle : home) + "/bin");
  const Sight place = lookAtPlace(plain);
  if (homeSight == Sight::Unknown || bin == Sight::Unknown || place == Sight::Unknown) {
    return Sight::Unknown;
  }
  return bin == Sight::Something ? place : Sight::Nothing;
}

// A bundle that no installer made: what its links lead to must not be moved, or be removed.
static bool leadsElsewhere(const std::string& bundle) {
  return isLink((bundle + "/Contents").c_str()) || isLink((bundle + "/Contents/MacOS").c_str());
}

// A prepared bundle's Java home is a link to the plain folder.
static bool isMoveUnfinished(const std::string& bundle) {
  return holdsHome(bundle) || isMoveCutShort(bundle.c_str()) ||
         (!hasHomeOrLink(bundle) && hasFolder(plainFolderOf(bundle), "bin"));
}

static bool isUnfinished(const std::string& bundle) {
  return !leadsElsewhere(bundle) &&
         (isMoveUnfinished(bundle) || lacksExecutableLink(bundle.c_str()));
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

static void finishMove(const ExtractorRun& run, const std::string& bundle) {
  const std::string plain = plainFolderOf(bundle);
  const Sight obstacle = lookForObstacle(bundle, plain);
  if (obstacle == Sight::Unknown) {
    logMessage("[Extractor] Unable to look at %s, it stays as it was before\n", bundle.c_str());
    return;
  }
  if (!hasFolder(bundle, "bin")) {
    // It may have been created, and died, before that.
    mkdir((bundle + "/Contents").c_str(), 0777);
  }
  if (!layOutRuntime(run, bundle.c_str(), obstacle == Sight::Something ? plain.c_str() : nullptr)) {
    logMessage("[Extractor] %s stays as it was before\n", plain.c_str());
  }
}

static void finish(const ExtractorRun& run, const std::string& bundle) {
  logMessage("[Extractor] Finishing the interrupted setup of %s\n", bundle.c_str());
  if (isMoveUnfinished(bundle)) {
    finishMove(run, bundle);
  } else {
    linkExecutable(bundle.c_str());
  }
}

void finishInterruptedRuntimes(const ExtractorRun& run) {
  if (unfinishedRuntimesIn(run.masterFolder).empty()) {
    return;
  }
  const InstallLock lock(run.masterFolder, InstallLock::Wait::Never);
  if (lock.isHeldByAnother()) {
    logMessage("[Extractor] Another installer is at work, unfinished runtimes are left to it\n");
    return;
  }
  finishRuntimesUnderLock(run);
}

void finishRuntimesUnderLock(const ExtractorRun& run) {
  for (const std::string& bundle : unfinishedRuntimesIn(run.masterFolder)) {
    finish(run, bundle);
  }
}

void removeAbandonedTempFolders(const ExtractorRun& run) {
  for (const std::string& path : pathsIn(run.masterFolder)) {
    const bool isTemp = strncmp(pathToFile(path.c_str()), kTempPrefix, strlen(kTempPrefix)) == 0;
    if (isTemp && isFolder(path.c_str()) && isAbandoned(path.c_str())) {
      logMessage("[Extractor] Removing old temporary folder %s\n", path.c_str());
      removeTree(path.c_str());
    }
  }
}
