#include "archive/remove_destination.h"

#include <ftw.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>

#include "platform/process_end.h"
#include "support/file_operations.h"
#include "support/logging.h"

static const int kOpenFolders = 16;

static int removeItem(const char* path, const struct stat*, int, FTW*) {
  remove(path);
  return 0;
}

static bool isGone(const char* path) {
  struct stat status {};
  return lstat(path, &status) != 0 && errno == ENOENT;
}

void removeDestination(const char* destDir) {
  deleteFolder(destDir);
  // That leaves the folder itself and short dot names in it.
  nftw(destDir, removeItem, kOpenFolders, FTW_DEPTH | FTW_PHYS);
  if (!isGone(destDir)) {
    logMessage("[ExtractArchive] *************************** Unable to remove folder %s\n",
               destDir);
    endProcess(1);
  }
}
