#include "support/files/deleting_walk.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "support/files/folder_walk.h"
#include "support/files/held_folder.h"
#include "support/files/paths.h"
#include "support/log/logging.h"

namespace {

// A folder that the walk is in.
struct Level {
  HeldFolder held;
  std::string name;                // in the folder above
  std::vector<std::string> names;  // still to delete, the next one last
  size_t pathLength = 0;           // how much of the walk's path leads here
  bool isSilent = false;           // below a short dot name
};

struct Walk {
  ShortDotNames shortDotNames;
  size_t topLength;  // how much of the path leads to the topmost folder
  std::string path;  // only for the log
  std::vector<Level> levels;
};

}  // namespace

// The path for the log, without its middle if it does not fit a path buffer.
static std::string shown(const Walk& walk) {
  if (walk.path.size() < PATH_BUFFER_SIZE) {
    return walk.path;
  }
  return walk.path.substr(0, walk.topLength) + "/..." + walk.path.substr(walk.path.rfind('/'));
}

// Enters `folder`, the entry `name` of the innermost level. Returns whether it can be listed.
static bool enter(Walk* walk, Descriptor folder, const std::string& name, bool isSilent) {
  Level level;
  Folder listing = openListing(folder);
  if (listing == nullptr || !hold(std::move(folder), &level.held)) {
    logMessage("[DeleteFolder] Deleting from '%s' is NULL\n", shown(*walk).c_str());
    return false;
  }
  level.name = name;
  level.names = walk->shortDotNames == ShortDotNames::Keep ? namesToWalk(std::move(listing))
                                                           : allNames(std::move(listing));
  std::reverse(level.names.begin(), level.names.end());
  level.pathLength = walk->path.size();
  level.isSilent = isSilent;
  if (walk->levels.size() > 1) {  // the topmost folder stays open
    letGo(&walk->levels.back().held, level.held.folder);
  }
  walk->levels.push_back(std::move(level));
  return true;
}

// Returns to the level above, or to the next one whose folder is still reachable.
static void leave(Walk* walk) {
  Level left = std::move(walk->levels.back());
  walk->levels.pop_back();
  while (!walk->levels.empty()) {
    Level& above = walk->levels.back();
    walk->path.resize(above.pathLength);
    if (comeBack(&above.held, left.held.folder)) {
      unlinkat(above.held.folder.get(), left.name.c_str(), AT_REMOVEDIR);
      return;
    }
    logMessage("Failed to delete %s\n", shown(*walk).c_str());
    left = std::move(above);
    walk->levels.pop_back();
  }
}

static bool deleteFile(const Descriptor& folder, const char* name) {
  struct stat status {};
  const bool isFolder =
      fstatat(folder.get(), name, &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(status.st_mode);
  return unlinkat(folder.get(), name, isFolder ? AT_REMOVEDIR : 0) == 0;
}

// Deletes the entry at the walk's path: one that is not a folder, or cannot be opened.
static void deletePlainEntry(Walk* walk, const std::string& name, bool isSilent) {
  if (!isSilent) {
    logMessage("Deleting FILE %s\n", shown(*walk).c_str());
  }
  if (!deleteFile(walk->levels.back().held.folder, name.c_str())) {
    logMessage("Failed to delete file %s\n", shown(*walk).c_str());
  }
}

static void deleteEntry(Walk* walk, const std::string& name) {
  const bool isSilent = walk->levels.back().isSilent || isShortDotName(name);
  const size_t length = walk->path.size();
  walk->path += "/" + name;
  Descriptor child = openFolderIn(walk->levels.back().held.folder, name.c_str());
  if (!child.isOpen()) {
    deletePlainEntry(walk, name, isSilent);
    walk->path.resize(length);
    return;
  }
  if (!isSilent) {
    logMessage("Deleting DIR %s\n", shown(*walk).c_str());
  }
  if (!enter(walk, std::move(child), name, isSilent)) {
    logMessage("Failed to delete %s\n", shown(*walk).c_str());
    walk->path.resize(length);
  }
}

int deleteInside(const Descriptor& folder, const char* path, ShortDotNames shortDotNames) {
  Walk walk{shortDotNames, strlen(path), path, {}};
  if (!enter(&walk, secondDescriptorOf(folder), "", false)) {
    return 1;
  }
  while (!walk.levels.empty()) {
    std::vector<std::string>& names = walk.levels.back().names;
    if (names.empty()) {
      leave(&walk);
      continue;
    }
    const std::string name = std::move(names.back());
    names.pop_back();
    deleteEntry(&walk, name);
  }
  return 0;
}
