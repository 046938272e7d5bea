#include "support/files/missing_entries.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <utility>

#include "support/files/file_kind.h"
#include "support/files/folder_walk.h"
#include "support/files/held_folder.h"
#include "support/log/logging.h"

namespace {

// A folder of `from` and the folder of `to` that gets its entries.
struct FolderPair {
  HeldFolder from;
  HeldFolder to;
  std::vector<std::string> names;  // still to examine, the next one last
  size_t pathLength = 0;           // how much of the walk's path leads here
  bool isNew = false;              // whether the folder of `to` was made for it
  mode_t mode = 0;                 // the mode to give it at the end
};

struct PairWalk {
  const std::vector<std::string>& leftOut;
  std::string path;  // in the topmost folder, without a slash in front
  std::vector<FolderPair> pairs;
};

}  // namespace

static bool enterPair(PairWalk* walk, Descriptor from, Descriptor to, FolderPair pair) {
  if (!listNames(openListing(from), &pair.names) || !hold(std::move(from), &pair.from) ||
      !hold(std::move(to), &pair.to)) {
    return false;
  }
  pair.pathLength = walk->path.size();
  if (!walk->pairs.empty()) {
    letGo(&walk->pairs.back().from, pair.from.folder);
    letGo(&walk->pairs.back().to, pair.to.folder);
  }
  walk->pairs.push_back(std::move(pair));
  return true;
}

// Returns to the pair above. The mode is set last: it may forbid writing, and the way to "..".
static bool leavePair(PairWalk* walk) {
  const FolderPair left = std::move(walk->pairs.back());
  walk->pairs.pop_back();
  bool isBack = true;
  if (!walk->pairs.empty()) {
    FolderPair& above = walk->pairs.back();
    walk->path.resize(above.pathLength);
    isBack = comeBack(&above.from, left.from.folder) && comeBack(&above.to, left.to.folder);
  }
  return isBack && (!left.isNew || fchmod(left.to.folder.get(), left.mode) == 0);
}

static bool writeWhole(int file, const char* data, size_t size) {
  while (size > 0) {
    const ssize_t written = write(file, data, size);
    if (written < 0 && errno != EINTR) {
      return false;
    }
    const size_t done = written < 0 ? 0 : static_cast<size_t>(written);
    data += done;
    size -= done;
  }
  return true;
}

static bool copyContent(int from, int to) {
  static char chunk[50000];
  ssize_t count = 0;
  while ((count = read(from, chunk, sizeof chunk)) != 0) {
    if (count < 0 && errno == EINTR) {
      continue;
    }
    if (count < 0 || !writeWhole(to, chunk, static_cast<size_t>(count))) {
      return false;
    }
  }
  return true;
}

static bool isSameFile(const struct stat& one, const struct stat& other) {
  return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

// Copies the open file `source` to the new file `part`, with its permissions, but neither
// set-user-ID nor set-group-ID: the copy belongs to this process's user, while the content belongs
// to somebody else.
static bool copyToPart(const Descriptor& source, Descriptor part, mode_t mode) {
  return copyContent(source.get(), part.get()) && fchmod(part.get(), mode & 0777) == 0 &&
         close(part.release()) == 0;
}

// Copies the regular file that was `seen` under a temporary name, renamed when complete. An
// existing file with that name belongs to somebody and is kept.
static bool copyEntry(const Descriptor& from, const Descriptor& to, const char* name,
                      const struct stat& seen) {
  const std::string partName = ".QuorvanePart-" + std::to_string(getpid());
  const Descriptor source(openat(from.get(), name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  struct stat opened {};
  if (!source.isOpen() || fstat(source.get(), &opened) != 0 || !S_ISREG(opened.st_mode) ||
      !isSameFile(opened, seen)) {
    return false;
  }
  const int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
  Descriptor part(openat(to.get(), partName.c_str(), flags, 0600));
  if (!part.isOpen()) {
    return false;
  }
  if (copyToPart(source, std::move(part), opened.st_mode) &&
      renameat(to.get(), partName.c_str(), to.get(), name) == 0) {
    return true;
  }
  unlinkat(to.get(), partName.c_str(), 0);
  return false;
}

// A hard link keeps the file's owner and mode, so it permits nothing new: neither for a set-user-ID
// file nor for one that only its owner reads. A copy would, see copyToPart(); and anyone who can
// write the folder can make linkat() fail.
static bool addFile(const Descriptor& from, const Descriptor& to, const char* name,
                    const struct stat& status) {
  if (linkat(from.get(), name, to.get(), name, 0) == 0 || errno == EEXIST) {
    return true;
  }
  return S_ISREG(status.st_mode) && copyEntry(from, to, name, status);
}

static bool addLink(const Descriptor& from, const Descriptor& to, const char* name) {
  char target[PATH_MAX];
  const ssize_t length = readlinkat(from.get(), name, target, sizeof target);
  if (length < 0 || length == static_cast<ssize_t>(sizeof target)) {
    return false;
  }
  target[length] = 0;
  return symlinkat(target, to.get(), name) == 0 || errno == EEXIST;
}

// Enters a folder of `from` and the one of `to`, which is created if missing.
static bool addFolder(PairWalk* walk, const char* name, const struct stat& status) {
  const FolderPair& pair = walk->pairs.back();
  const bool isNew = mkdirat(pair.to.folder.get(), name, 0700) == 0;
  if (!isNew && errno != EEXIST) {
    return false;
  }
  Descriptor from = openFolderIn(pair.from.folder, name);
  Descriptor to = openFolderIn(pair.to.folder, name);
  FolderPair below;
  below.isNew = isNew;
  below.mode = status.st_mode & 0777;
  return enterPair(walk, std::move(from), std::move(to), std::move(below));
}

static bool isEmptyFolder(const Descriptor& parent, const char* name) {
  std::vector<std::string> names;
  return listNames(openListing(openFolderIn(parent, name)), &names) && names.empty();
}

static bool isLeftOut(const PairWalk& walk) {
  return std::find(walk.leftOut.begin(), walk.leftOut.end(), walk.path) != walk.leftOut.end();
}

// Adds the entry `name` at the walk's path if it is missing.
static bool addEntry(PairWalk* walk, const char* name) {
  const Descriptor& from = walk->pairs.back().from.folder;
  const Descriptor& to = walk->pairs.back().to.folder;
  struct stat status {};
  struct stat there {};
  if (isLeftOut(*walk)) {
    return true;
  }
  if (fstatat(from.get(), name, &status, AT_SYMLINK_NOFOLLOW) != 0) {
    return errno == ENOENT;
  }
  const bool isFound = fstatat(to.get(), name, &there, AT_SYMLINK_NOFOLLOW) == 0;
  if (!isFound && errno != ENOENT) {
    return false;
  }
  if (S_ISDIR(status.st_mode)) {
    return isFound && !S_ISDIR(there.st_mode) ? isEmptyFolder(from, name)
                                              : addFolder(walk, name, status);
  }
  if (isFound) {
    return true;
  }
  return S_ISLNK(status.st_mode) ? addLink(from, to, name) : addFile(from, to, name, status);
}

// One step: the next entry of the innermost pair, or the way back.
static bool step(PairWalk* walk) {
  FolderPair& pair = walk->pairs.back();
  if (pair.names.empty()) {
    return leavePair(walk);
  }
  const std::string name = std::move(pair.names.back());
  pair.names.pop_back();
  const size_t depth = walk->pairs.size();
  const size_t length = walk->path.size();
  walk->path += length == 0 ? name : "/" + name;
  if (!addEntry(walk, name.c_str())) {
    return false;
  }
  if (walk->pairs.size() == depth) {
    walk->path.resize(length);
  }
  return true;
}

bool addMissingEntries(const char* from, const char* to, const std::vector<std::string>& leftOut) {
  Descriptor source = openFolderItself(from);
  if (!source.isOpen() && (isDefinitelyMissing(from) || isLink(from) || isRegularFile(from))) {
    return true;
  }
  PairWalk walk{leftOut, "", {}};
  bool isGood =
      source.isOpen() && enterPair(&walk, std::move(source), openFolderItself(to), FolderPair());
  while (isGood && !walk.pairs.empty()) {
    isGood = step(&walk);
  }
  if (!isGood) {
    logMessage("[Merge] Unable to keep '%s' of %s\n", walk.path.c_str(), from);
  }
  return isGood;
}
