#include "extractor/provision_jre.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "extractor/folders.h"
#include "extractor/run.h"
#include "launcher/jre_layout.h"
#include "platform/exchange_folders.h"
#include "support/file_kind.h"
#include "support/file_operations.h"
#include "support/folder_walk.h"
#include "support/logging.h"
#include "support/owned.h"
#include "support/paths.h"
#include "support/spawner.h"

static const char kOnlineSection[] = "Setting up online JRE";

void regenerateClassData(const ExtractorRun& run) {
  const Block<char> java(getJavaExecutable(run.jreTemp));
  const OwnedSpawner spawner(createSpawner());
  setSpawnerExe(spawner.get(), java.get());
  addSpawnerArg(spawner.get(), "-Xshare:dump");
  runSpawnerAndWait(spawner.get());
}

void requireJavaInTemp(ExtractorRun& run) {
  char inBundle[PATH_BUFFER_SIZE];
  setPath(inBundle, run.jreTemp, "Contents", "Home", "bin", "java");
  if (isExecutable(inBundle)) {
    return;
  }
  removeTree(run.jreTemp);
  failRun("[Extractor] The JRE archive was rejected or holds no bin/java, it is not installed\n");
}

static void setUpOnlineJre(ExtractorRun& run) {
  logStartSection(kOnlineSection);
  logMessage(
      "[Extractor] Online installer - no stored JRE, will check for compatible system JRE\n");
  run.jreVersion[0] = 0;
  if (!adoptSystemJre(run)) {
    downloadJre(run);
  }
  logMessage("[JREDownload] Finalising setup of new JRE %s\n", run.jreVersion);
  makeAppFolder(run.jreFolder, run.masterFolder, run.jreName, run.jreVersion);
  logEndSection(kOnlineSection);
}

static bool holdsHiddenNames(const char* folder) {
  const std::vector<std::string> names = allNames(openFolderWithoutLink(folder));
  return std::any_of(names.begin(), names.end(),
                     [](const std::string& name) { return name[0] == '.'; });
}

// Puts the bundle's home in the place of the earlier one, and that aside, without a moment at which
// a program that runs from the earlier one would miss its files. Hidden files must not come along:
// with those, and where the system cannot exchange folders, nothing is done. Returns whether it
// was.
static bool exchangeHomes(const char* bundle, const char* earlierHome, const char* aside) {
  char home[PATH_BUFFER_SIZE];
  setPath(home, bundle, "Contents", "Home");
  if (!isFolder(earlierHome) || !isFolder(home) || holdsHiddenNames(home) ||
      !exchangeFolders(home, earlierHome)) {
    return false;
  }
  if (rename(home, aside) == 0) {
    return true;
  }
  static_cast<void>(exchangeFolders(home, earlierHome));
  return false;
}

static bool holdsJava(const char* home) {
  char java[PATH_BUFFER_SIZE];
  return isExecutable(setPath(java, home, "bin", "java"));
}

// Lays out the earlier runtime, which waits aside, in the place of the new one, which could not be
// moved there.
static void takeBack(const char* bundle, const char* earlierHome, const char* aside) {
  char home[PATH_BUFFER_SIZE];
  removeTree(earlierHome);
  if (rename(aside, earlierHome) == 0) {
    removeTree(setPath(home, bundle, "Contents", "Home"));
    initOSXJRE(bundle);
  }
}

bool layOutRuntime(const ExtractorRun& run, const char* bundle, const char* earlierHome) {
  char aside[PATH_BUFFER_SIZE];
  nameTempFolder(run, aside);
  const bool isAside = earlierHome != nullptr && (exchangeHomes(bundle, earlierHome, aside) ||
                                                  rename(earlierHome, aside) == 0);
  initOSXJRE(bundle);
  if (isAside && holdsJava(aside) && !holdsJava(earlierHome)) {
    takeBack(bundle, earlierHome, aside);
    return false;
  }
  if (isAside && !removeTree(aside)) {
    remove(aside);  // a link, or a file, in the place of the folder
  }
  return true;
}

// The plain folder and the bundle both count as the runtime, whatever they hold: without a Java
// they would hide an older runtime that works.
static void putHomeIntoPlace(const ExtractorRun& run, const char* home) {
  const bool isNew = layOutRuntime(run, run.jreFolder, isThere(home) ? home : nullptr);
  if (isNew && holdsJava(home)) {
    return;
  }
  if (isNew) {
    removeTree(home);
    removeTree(run.jreFolder);
  }
  failRun("[Extractor] The folder of the %s could not be put into place\n", "JRE");
}

static void finishJre(ExtractorRun& run) {
  char home[PATH_BUFFER_SIZE];
  setPath(home, run.jreFolder);
  appendToPath(run.jreFolder, ".plugin");
  moveIntoPlace(run, "JRE", run.jreTemp, run.jreFolder);
  logMessage("[Extractor] Renamed JRE folder to %s\n", run.jreFolder);
  putHomeIntoPlace(run, home);
  chmod777(run.jreFolder);
  logMessage("[Extractor] Ensuring JRE bin is writable.\n");
  char bin[PATH_BUFFER_SIZE];
  chmod777(setPath(bin, run.jreFolder, "bin"));
  run.unpack200Path = getUnpack200Executable(run.jreFolder);
  logMessage("[Extractor] UP200 path is %s\n", run.unpack200Path);
}

void provisionJre(ExtractorRun& run) {
  logMessage("[Extractor] Setting up a JRE\n");
  if (run.tail.jreVersion[0] != 0) {
    extractCarriedJre(run);
  } else {
    setUpOnlineJre(run);
  }
  finishJre(run);
}
