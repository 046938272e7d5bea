#include "support/folder_walk.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <utility>

#include "support/paths.h"

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

std::vector<std::string> allNames(Folder folder) {
  std::vector<std::string> names;
  while (const dirent* entry = folder == nullptr ? nullptr : readdir(folder.get())) {
    const char* name = entry->d_name;
    if (strcmp(name, ".") != 0 && strcmp(name, "..") != 0) {
      names.emplace_back(name);
    }
  }
  return names;
}

static bool isShortDotName(const std::string& name) {
  return name[0] == '.' && name.size() < 3;
}

std::vector<std::string> namesToWalk(Folder folder) {
  std::vector<std::string> names = allNames(std::move(folder));
  names.erase(std::remove_if(names.begin(), names.end(), isShortDotName), names.end());
  return names;
}

std::string childPath(const std::string& folder, const std::string& name) {
  // On the heap: walks call this at every level of a tree as deep as a path can be.
  const std::unique_ptr<char[]> path(new char[PATH_BUFFER_SIZE]);
  return setPath(path.get(), folder.c_str(), name.c_str());
}

long countEntries(const char* path) {
  const Folder folder = openFolder(path);
  long count = 0;
  while (folder != nullptr && readdir(folder.get()) != nullptr) {
    ++count;
  }
  return count;
}
