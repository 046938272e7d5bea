#include <sys/stat.h>
#include <unistd.h>

#include "support/files/deleting_walk.h"
#include "support/files/file_kind.h"
#include "support/files/file_operations.h"
#include "support/files/folder_walk.h"

int deleteFolder(const char* path) {
  return deleteInside(openFolderItself(path), path, ShortDotNames::Keep);
}

// Whether `path` still leads to the open folder, without a link.
static bool isStillAt(const Descriptor& folder, const char* path) {
  struct stat open {};
  struct stat there {};
  return fstat(folder.get(), &open) == 0 && lstat(path, &there) == 0 &&
         open.st_dev == there.st_dev && open.st_ino == there.st_ino;
}

bool removeTree(const Descriptor& folder, const char* path) {
  deleteInside(folder, path, ShortDotNames::DeleteSilently);
  if (isStillAt(folder, path)) {
    rmdir(path);
  }
  return isDefinitelyMissing(path);
}

bool removeTree(const char* path) {
  const Descriptor folder = openFolderItself(path);
  if (folder.isOpen()) {
    return removeTree(folder, path);
  }
  if (isFolder(path)) {
    rmdir(path);  // one that may not be read may be empty
  }
  return isDefinitelyMissing(path);
}
