#include "extractor/versions/copied_folder.h"

#include <sys/stat.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "support/files/folder_walk.h"
#include "support/files/paths.h"

static bool completeEntry(const std::string& source, const std::string& target) {
  struct stat from {};
  struct stat to {};
  if (stat(source.c_str(), &from) != 0 || lstat(target.c_str(), &to) != 0) {
    return false;
  }
  if (S_ISDIR(from.st_mode)) {
    return S_ISDIR(to.st_mode) && completeCopy(source.c_str(), target.c_str());
  }
  return S_ISREG(to.st_mode) && from.st_size == to.st_size &&
         chmod(target.c_str(), from.st_mode & 07777) == 0;
}

bool completeCopy(const char* source, const char* target) {
  Folder folder = openFolder(source);
  if (folder == nullptr) {
    return false;
  }
  const std::vector<std::string> names = namesToWalk(std::move(folder));
  return std::all_of(names.begin(), names.end(), [&](const std::string& name) {
    return completeEntry(childPath(source, name), childPath(target, name));
  });
}
