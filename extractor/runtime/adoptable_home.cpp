#include "extractor/runtime/adoptable_home.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <string>

#include "launcher/jvm/jvm_launch.h"
#include "support/files/file_kind.h"
#include "support/files/paths.h"
#include "support/log/logging.h"
#include "support/owned.h"

static const char* const kSharedFolders[] = {"/", "/usr", "/usr/local", "/opt"};

static bool isSameFolder(const char* one, const char* other) {
  struct stat first {};
  struct stat second {};
  return stat(one, &first) == 0 && stat(other, &second) == 0 && first.st_dev == second.st_dev &&
         first.st_ino == second.st_ino;
}

// Returns whether `folder` is the folder at `path`, an absolute path, or one above it.
static bool isOnTheWayTo(const char* folder, std::string path) {
  while (!path.empty()) {
    if (isSameFolder(folder, path.c_str())) {
      return true;
    }
    path.resize(path.rfind('/') == std::string::npos ? 0 : path.rfind('/'));
  }
  return false;
}

// The folders above the user's home are those of its path, and those of the path without links.
static bool holdsUsersHome(const char* folder) {
  const passwd* entry = getpwuid(getuid());
  if (entry == nullptr || entry->pw_dir == nullptr) {
    return false;
  }
  const Block<char> real(realpath(entry->pw_dir, nullptr));
  return isOnTheWayTo(folder, entry->pw_dir) ||
         (real != nullptr && isOnTheWayTo(folder, real.get()));
}

static bool isShared(const char* folder) {
  return std::any_of(std::begin(kSharedFolders), std::end(kSharedFolders),
                     [folder](const char* shared) { return isSameFolder(folder, shared); });
}

// The layout makes a bundle's Contents/Home, or the home itself without one, the folder in which a
// launch looks.
static bool willHoldJvmLibrary(const char* home) {
  const std::string inner = childPath(home, "Contents/Home");
  return holdsJvmLibrary(exists(inner.c_str()) ? inner.c_str() : home);
}

bool isAdoptableHome(const char* home) {
  const char* folder = home[0] == 0 ? "/" : home;
  if (isShared(folder) || holdsUsersHome(folder)) {
    logMessage("[JRESearch] %s holds more than a JRE, it is not copied\n", folder);
    return false;
  }
  if (!willHoldJvmLibrary(folder)) {
    logMessage("[JRESearch] No JVM library in %s where a launch would find it\n", folder);
    return false;
  }
  return true;
}
