#include "extractor/lay_out_runtime.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "extractor/folders.h"
#include "launcher/jre_layout.h"
#include "platform/exchange_folders.h"
#include "support/file_kind.h"
#include "support/file_operations.h"
#include "support/folder_walk.h"
#include "support/paths.h"

static bool holdsHiddenNames(const char* folder) {
  const std::vector<std::string> names = allNames(openFolderWithoutLink(folder));
  return std::any_of(names.begin(), names.end(),
                     [](const std::string& name) { return name[0] == '.'; });
}

// Puts the bundle's home in the place of the earlier one, and that aside, without a moment at which
// a program that runs from the earlier one would miss its files. Hidden files do not come along;
// with hidden folders, which must not either, and where the system cannot exchange folders, nothing
// is done. Returns whether it was.
static bool exchangeHomes(const char* bundle, const char* earlierHome, const char* aside) {
  char home[PATH_BUFFER_SIZE];
  setPath(home, bundle, "Contents", "Home");
  if (!isFolder(earlierHome) || !isFolder(home)) {
    return false;
  }
  removeHiddenFiles(home);
  if (holdsHiddenNames(home) || rename(home, aside) != 0) {
    return false;
  }
  if (exchangeFolders(aside, earlierHome)) {
    return true;
  }
  static_cast<void>(rename(aside, home));
  return false;
}

bool isMoveCutShort(const char* bundle) {
  char home[PATH_BUFFER_SIZE];
  setPath(home, bundle, "Contents", "Home");
  for (const std::string& name : allNames(openFolderWithoutLink(home))) {
    const std::string path = childPath(home, name);
    if (name[0] != '.' && (isFolder(path.c_str()) || isPlainFile(path.c_str()))) {
      return true;
    }
  }
  return false;
}

bool holdsJava(const char* home) {
  char java[PATH_BUFFER_SIZE];
  return isExecutable(setPath(java, home, "bin", "java"));
}

bool lacksJava(const char* home) {
  char java[PATH_BUFFER_SIZE];
  return isKnownNotExecutable(setPath(java, home, "bin", "java"));
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

// Every step can be taken again, so that one which failed by chance does not count.
static bool initWhole(const char* bundle) {
  initOSXJRE(bundle);
  if (!isMoveCutShort(bundle)) {
    return true;
  }
  initOSXJRE(bundle);
  return !isMoveCutShort(bundle);
}

bool layOutRuntime(const ExtractorRun& run, const char* bundle, const char* earlierHome) {
  char aside[PATH_BUFFER_SIZE];
  nameTempFolder(run, aside);
  const bool mustMakeWay = earlierHome != nullptr && !isKnownMissing(earlierHome);
  const bool isAside =
      mustMakeWay && (exchangeHomes(bundle, earlierHome, aside) || rename(earlierHome, aside) == 0);
  if (mustMakeWay && !isAside) {
    return false;
  }
  const bool isWhole = initWhole(bundle);
  if (isAside && (!isWhole || lacksJava(earlierHome)) && !lacksJava(aside)) {
    takeBack(bundle, earlierHome, aside);
    return false;
  }
  if (isAside && !removeTree(aside)) {
    remove(aside);  // a link, or a file, in the place of the folder
  }
  return true;
}
