#include <unistd.h>

#include <cstdio>
#include <string>
#include <utility>

#include "support/file_operations.h"
#include "support/folder_walk.h"
#include "support/logging.h"

static int deleteInside(const std::string& path, Folder folder);

static void deleteChild(const std::string& child) {
  if (openFolderWithoutLink(child.c_str()) == nullptr) {
    logMessage("Deleting FILE %s\n", child.c_str());
    if (remove(child.c_str()) != 0) {
      logMessage("Failed to delete file %s\n", child.c_str());
    }
    return;
  }
  logMessage("Deleting DIR %s\n", child.c_str());
  if (deleteInside(child, openFolderWithoutLink(child.c_str())) == 0) {
    rmdir(child.c_str());
  } else {
    logMessage("Failed to delete %s\n", child.c_str());
  }
}

static int deleteInside(const std::string& path, Folder folder) {
  if (folder == nullptr) {
    logMessage("[DeleteFolder] Deleting from '%s' is NULL\n", path.c_str());
    return 1;
  }
  for (const std::string& name : namesToWalk(std::move(folder))) {
    deleteChild(childPath(path, name));
  }
  return 0;
}

int deleteFolder(const char* path) {
  return deleteInside(path, openFolder(path));
}
