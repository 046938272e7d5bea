#include "extractor/runtime/lay_out_runtime.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <string>
#include <vector>

#include "extractor/runtime/jre_layout.h"
#include "extractor/versions/folders.h"
#include "extractor/versions/temp_marks.h"
#include "platform/exchange_folders.h"
#include "support/files/file_kind.h"
#include "support/files/file_operations.h"
#include "support/files/folder_walk.h"
#include "support/files/missing_entries.h"
#include "support/files/paths.h"
#include "support/owned.h"

static std::string plainNameOf(const char* bundle) {
  return plainFolderOf(pathToFile(bundle));
}

// A home that could not be emptied has the link to the plain folder in it. It must not come along.
static void removeLinkInHome(const char* bundle) {
  char link[PATH_BUFFER_SIZE];
  setPath(link, bundle, "Contents", "Home", plainNameOf(bundle).c_str());
  if (isLink(link)) {
    remove(link);
  }
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

// The copies of java under an application's name that a launch made. Those of another java would
// start in its place; the next launch makes them anew.
static std::vector<std::string> copiesOfJavaIn(const char* home) {
  const std::string bin = childPath(home, "bin");
  const std::string java = childPath(bin, "java");
  std::vector<std::string> copies;
  for (const std::string& name : allNames(openFolderWithoutLink(bin.c_str()))) {
    const std::string file = childPath(bin, name);
    if (name != "java" && isPlainFile(file.c_str()) && haveSameBytes(file, java)) {
      copies.push_back("bin/" + name);
    }
  }
  return copies;
}

// What the earlier home holds and the new one lacks was made by its user, or by the application.
static bool keepEarlierEntries(const char* earlierHome, const char* home) {
  return addMissingEntries(earlierHome, home, copiesOfJavaIn(earlierHome));
}

// Puts the bundle's home in the place of the earlier one, and that aside, without a moment at which
// a program that runs from the earlier one would miss its files, or its user's. Hidden files of the
// new one do not come along. Where the system cannot exchange folders no home is moved. Returns
// whether they were.
static bool exchangeHomes(const char* bundle, const char* earlierHome, const char* aside) {
  char home[PATH_BUFFER_SIZE];
  setPath(home, bundle, "Contents", "Home");
  if (!isFolder(earlierHome) || !isFolder(home)) {
    return false;
  }
  removeHiddenFiles(home);
  removeLinkInHome(bundle);
  if (rename(home, aside) != 0) {
    return false;
  }
  if (keepEarlierEntries(earlierHome, aside) && exchangeFolders(aside, earlierHome)) {
    return true;
  }
  static_cast<void>(rename(aside, home));
  return false;
}

bool isMoveCutShort(const char* bundle) {
  char home[PATH_BUFFER_SIZE];
  setPath(home, bundle, "Contents", "Home");
  const std::vector<std::string> names = allNames(openFolderWithoutLink(home));
  return std::any_of(names.begin(), names.end(),
                     [plainName = plainNameOf(bundle)](const std::string& name) {
                       return name[0] != '.' && name != plainName;
                     });
}

bool holdsJava(const char* home) {
  char java[PATH_BUFFER_SIZE];
  return isExecutable(setPath(java, home, "bin", "java"));
}

bool lacksJava(const char* home) {
  char java[PATH_BUFFER_SIZE];
  return isKnownNotExecutable(setPath(java, home, "bin", "java"));
}

// Lets what stands at `aside` and at `place` change places, by way of a third where the system
// cannot exchange folders. Nothing but an empty folder is deleted. Returns whether what was aside
// is at `place`.
static bool changePlaces(const ExtractorRun& run, const char* aside, const char* place) {
  if (exchangeFolders(aside, place)) {
    return true;
  }
  char third[PATH_BUFFER_SIZE];
  nameTempFolder(run, third);
  const bool isFree = rename(place, third) == 0 || errno == ENOENT || rmdir(place) == 0;
  if (isFree && rename(aside, place) == 0) {
    static_cast<void>(rename(third, aside));
    return true;
  }
  static_cast<void>(rename(third, place));
  return false;
}

// Lets the bundle be one of the earlier runtime, with nothing of its own home.
static void linkEarlier(const char* bundle) {
  char home[PATH_BUFFER_SIZE];
  if (!removeTree(setPath(home, bundle, "Contents", "Home"))) {
    remove(home);  // the link of a home that was moved whole
  }
  initOSXJRE(bundle);
}

// Lays out the earlier runtime, which waits aside, in the place of the new one, which could not be
// moved there.
static void takeBack(const ExtractorRun& run, const char* bundle, const char* earlierHome,
                     const char* aside) {
  if (changePlaces(run, aside, earlierHome)) {
    removeTree(aside);
    linkEarlier(bundle);
  }
}

// Every step of a move can be taken again, so that one which failed by chance does not count.
static bool initWhole(const char* bundle) {
  constexpr int kTries = 2;
  for (int i = 0; i < kTries; ++i) {
    removeLinkInHome(bundle);
    initOSXJRE(bundle);
    if (!isMoveCutShort(bundle)) {
      return true;
    }
  }
  rmdir(plainFolderOf(bundle).c_str());  // empty, it would hide the bundle, which holds all
  return false;
}

// Whether the system can tell if the bundle brings a Java, in Contents/Home or as a plain Java home
// does.
static bool isContentKnown(const char* bundle) {
  char home[PATH_BUFFER_SIZE];
  setPath(home, bundle, "Contents", "Home");
  return holdsJava(home) || holdsJava(bundle) || (lacksJava(home) && lacksJava(bundle));
}

// Takes what is in the plain folder's place aside, by an exchange with the new home where that is
// possible; else what only the earlier home holds is added before to the new one, which is the
// bundle itself where that is a plain Java home. Where the home was moved out of the bundle and did
// not come back, nothing is added: the bundle would pass for a plain Java home that a later run
// puts in the earlier one's place, with the bundle's files over those of that one's user. Returns
// whether it is aside.
static bool takeAside(const char* bundle, const char* earlierHome, const char* aside) {
  char home[PATH_BUFFER_SIZE];
  setPath(home, bundle, "Contents", "Home");
  const bool isPlainHome = isKnownMissing(home) || isLink(home);
  if (exchangeHomes(bundle, earlierHome, aside)) {
    return true;
  }
  return (isPlainHome || isFolder(home)) &&
         keepEarlierEntries(earlierHome, isPlainHome ? bundle : home) &&
         rename(earlierHome, aside) == 0;
}

// Whether the bundle is known to bring no Java where the earlier runtime may have one.
static bool isWorseThan(const char* earlierHome, const char* bundle) {
  char home[PATH_BUFFER_SIZE];
  setPath(home, bundle, "Contents", "Home");
  return lacksJava(home) && lacksJava(bundle) && !lacksJava(earlierHome);
}

bool layOutRuntime(const ExtractorRun& run, const char* bundle, const char* earlierHome) {
  if (earlierHome == nullptr || isKnownMissing(earlierHome)) {
    static_cast<void>(initWhole(bundle));
    return true;
  }
  // Looked at first: with the earlier one's files added, it would pass for a runtime.
  if (isWorseThan(earlierHome, bundle)) {
    linkEarlier(bundle);
    return false;
  }
  char aside[PATH_BUFFER_SIZE];
  nameTempFolder(run, aside);
  const Descriptor mark = markFolder(earlierHome);  // it will have the temporary folder's name
  if (!isContentKnown(bundle) || !takeAside(bundle, earlierHome, aside)) {
    return false;
  }
  const bool isWhole = initWhole(bundle) && !lacksJava(earlierHome);
  const bool isKept = keepEarlierEntries(aside, earlierHome);
  if (!isKept || (!isWhole && !lacksJava(aside))) {
    takeBack(run, bundle, earlierHome, aside);
    return false;
  }
  if (!removeTree(aside)) {
    remove(aside);  // a link, or a file, in the place of the folder
  }
  return true;
}
