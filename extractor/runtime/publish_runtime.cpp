#include "extractor/runtime/publish_runtime.h"

#include <sys/stat.h>

#include <cstdio>
#include <string>
#include <vector>

#include "extractor/run/run.h"
#include "extractor/runtime/jre_layout.h"
#include "extractor/versions/folders.h"
#include "support/files/file_kind.h"
#include "support/files/file_operations.h"
#include "support/files/folder_walk.h"
#include "support/files/missing_entries.h"
#include "support/files/paths.h"
#include "support/log/logging.h"
#include "support/owned.h"

static const char kRuntime[] = "JRE";

namespace {

// A runtime on its way to its two folders.
struct Publication {
  ExtractorRun& run;
  const char* home;         // the temporary folder that becomes the plain one
  const char* bundle;       // the temporary folder that becomes the bundle
  std::string plainFolder;  // where they go
  std::string bundlePath;
};

}  // namespace

[[noreturn]] static void giveUp(const Publication& publication) {
  const Failure failure = failureOfWriting(0, publication.run.masterFolder);
  removeTree(publication.home);
  removeTree(publication.bundle);
  failRun(failure, "[Extractor] The folder of the %s could not be put into place\n", kRuntime);
}

static bool haveSameBytes(const std::string& one, const std::string& other) {
  const Stream first(fopen(one.c_str(), "rb"));
  const Stream second(fopen(other.c_str(), "rb"));
  int byte = 0;
  while (first != nullptr && second != nullptr && (byte = getc(first.get())) != EOF) {
    if (byte != getc(second.get())) {
      return false;
    }
  }
  return first != nullptr && second != nullptr && feof(first.get()) != 0 &&
         getc(second.get()) == EOF && feof(second.get()) != 0;
}

// The copies of java under an application's name that a launch made. A copy of the earlier java
// would start instead of the new one; the next launch makes a new copy.
static std::vector<std::string> copiesOfJavaIn(const std::string& home) {
  const std::string bin = childPath(home, "bin");
  const std::string java = childPath(bin, "java");
  std::vector<std::string> copies;
  for (const std::string& name : allNames(openFolderWithoutLink(bin.c_str()))) {
    const std::string file = childPath(bin, name);
    if (name != "java" && isRegularFile(file.c_str()) && haveSameBytes(file, java)) {
      copies.push_back("bin/" + name);
    }
  }
  return copies;
}

// A runtime that was adopted from the system is often a plain Java home, without Contents/Home. It
// becomes the plain folder unchanged, beside a bundle that contains only a link to it.
static bool isPlainHome(const char* folder) {
  return !exists(childPath(folder, "Contents/Home").c_str()) &&
         leadsToFolder(childPath(folder, "bin").c_str());
}

// An installed bundle may still contain its home. The user's files in it are added to the new
// bundle's home, unless that one has no Java. The layout's links are made again.
static bool keepEntriesOfBundle(const Publication& publication) {
  const std::string ownHome = childPath(publication.bundle, "Contents/Home");
  const bool hasHome = isFolder(ownHome.c_str());
  return holdsJava(hasHome ? ownHome.c_str() : publication.home) &&
         addMissingEntries(publication.bundlePath.c_str(), publication.bundle,
                           hasHome ? std::vector<std::string>() : placesOfLayout());
}

// Makes a complete, checked home with its bundle in it.
static bool prepare(const Publication& publication) {
  return keepEntriesOfBundle(publication) &&
         layOutAside(publication.bundle, publication.home, publication.bundlePath.c_str()) &&
         holdsJava(publication.home) &&
         rename(publication.bundle, childPath(publication.home, WAITING_BUNDLE).c_str()) == 0;
}

// An existing bundle fits the new home too, because its link names the plain folder. The new one
// stays in the home until its place is free; the next start looks for it there.
static void publishBundle(const Publication& publication) {
  const std::string waiting = childPath(publication.plainFolder, WAITING_BUNDLE);
  const char* bundlePath = publication.bundlePath.c_str();
  if (exists(bundlePath)) {
    moveIntoPlace(publication.run.masterFolder, kRuntime, waiting.c_str(), bundlePath,
                  placesOfLayout(), ByCopy::Never);
  } else if (!renameFolder(waiting.c_str(), bundlePath)) {
    giveUp(publication);
  }
  logRenamed(publication.run.jreTemp, bundlePath);
}

static void publish(const Publication& publication) {
  const char* plainFolder = publication.plainFolder.c_str();
  removeObstacle(publication.run.masterFolder, kRuntime, publication.bundlePath.c_str());
  if (!prepare(publication)) {
    giveUp(publication);
  }
  // Not by copying: a copy would follow the bundle's link back into itself.
  moveIntoPlace(publication.run.masterFolder, kRuntime, publication.home, plainFolder,
                copiesOfJavaIn(plainFolder), ByCopy::Never);
  publishBundle(publication);
}

void publishRuntime(ExtractorRun& run) {
  requireTempFolder(kRuntime, run.jreTemp);
  char other[PATH_BUFFER_SIZE];
  nameTempFolder(run.masterFolder, other);
  const bool isHome = isPlainHome(run.jreTemp);
  const Publication publication{run, isHome ? run.jreTemp : other, isHome ? other : run.jreTemp,
                                run.jreFolder, std::string(run.jreFolder) + ".plugin"};
  const bool isNew = isDefinitelyMissing(run.jreFolder);
  if (createTempFolder(run.masterFolder, other) != 0) {
    giveUp(publication);
  }
  if (isHome) {
    mkdir(childPath(other, "Contents").c_str(), 0777);
  }
  publish(publication);
  appendToPath(run.jreFolder, ".plugin");
  logMessage("[Extractor] Renamed JRE folder to %s\n", run.jreFolder);
  logLayout(run.jreFolder, {isNew, isHome});
}
