#include <unistd.h>

#include <cstdio>
#include <string>

#include "support/file_operations.h"
#include "support/folder_walk.h"
#include "support/logging.h"
#include "support/paths.h"

static std::string childOf(const char* folder, const char* name) {
  char path[PATH_BUFFER_SIZE];
  return setPath(path, folder, name);
}

static void deleteChild(const std::string& child) {
  if (openFolderWithoutLink(child.c_str()) == nullptr) {
    logMessage("Deleting FILE %s\n", child.c_str());
    if (remove(child.c_str()) != 0) {
      logMessage("Failed to delete file %s\n", child.c_str());
    }
    return;
  }
  logMessage("Deleting DIR %s\n", child.c_str());
  if (deleteFolder(child.c_str()) == 0) {
    rmdir(child.c_str());
  } else {
    logMessage("Failed to delete %s\n", child.c_str());
  }
}

int deleteFolder(const char* path) {
  const Folder folder = openFolder(path);
  if (folder == nullptr) {
    logMessage("[DeleteFolder] Deleting from '%s' is NULL\n", path);
    return 1;
  }
  while (const dirent* entry = nextEntry(folder.get())) {
    deleteChild(childOf(path, entry->d_name));
  }
  return 0;
}
