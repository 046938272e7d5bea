#include <ftw.h>
#include <sys/stat.h>

#include <cstdio>

#include "support/file_kind.h"
#include "support/file_operations.h"

static const int kOpenFolders = 16;

static int removeItem(const char* path, const struct stat*, int, FTW*) {
  remove(path);
  return 0;
}

bool removeTree(const char* path) {
  if (isFolder(path)) {
    deleteFolder(path);
    // That leaves the folder itself and short dot names in it.
    nftw(path, removeItem, kOpenFolders, FTW_DEPTH | FTW_PHYS);
  }
  return isKnownMissing(path);
}
