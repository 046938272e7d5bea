#include "support/folder_walk.h"

#include <cstring>

#include <fcntl.h>
#include <unistd.h>

Folder openFolder(const char* path) {
  return Folder(opendir(path));
}

Folder openFolderWithoutLink(const char* path) {
  const int handle = open(path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  if (handle < 0) {
    return nullptr;
  }
  DIR* folder = fdopendir(handle);
  if (folder == nullptr) {
    close(handle);
  }
  return Folder(folder);
}

const dirent* nextEntry(DIR* folder) {
  while (const dirent* entry = readdir(folder)) {
    if (entry->d_name[0] != '.' || strlen(entry->d_name) >= 3) {
      return entry;
    }
  }
  return nullptr;
}

long countEntries(const char* path) {
  const Folder folder = openFolder(path);
  long count = 0;
  while (folder != nullptr && readdir(folder.get()) != nullptr) {
    ++count;
  }
  return count;
}
