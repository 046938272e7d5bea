#include "launcher/installation/version_folders.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "support/files/folder_walk.h"
#include "support/files/paths.h"
#include "support/log/logging.h"
#include "support/text/strings.h"

// Returns a new text with the part between the n-th and the next '-', or null without those.
static char* allocNameField(const char* folderName, int n) {
  const int begin = indexOf(folderName, '-', n);
  const int end = indexOf(folderName, '-', n + 1);
  if (begin < 0 || end < 0) {
    return nullptr;
  }
  return allocSubstring(folderName, begin + 1, end - begin - 1);
}

int checkAppFolderName(const char* folderName, const char* componentName) {
  char* component = allocNameField(folderName, 1);
  if (component == nullptr) {
    return -1;
  }
  const int difference = strcmp(component, componentName);
  free(component);
  return difference;
}

long pickVersionFromAppFolderName(const char* folderName) {
  char* text = allocNameField(folderName, 2);
  if (text == nullptr) {
    return -1;
  }
  const long version = atol(text);
  free(text);
  return version;
}

// Empty if the folder cannot be listed to its end.
static std::vector<std::string> namesIn(const char* path) {
  constexpr size_t kShortest = 3;
  std::vector<std::string> names;
  const Folder folder = openFolder(path);
  if (folder == nullptr) {
    return names;
  }
  errno = 0;
  while (const dirent* entry = readdir(folder.get())) {
    if (strlen(entry->d_name) >= kShortest) {
      names.emplace_back(entry->d_name);
    }
    errno = 0;
  }
  if (errno != 0) {
    logMessage("[PickFolder] Unable to list %s\n", path);
    names.clear();  // the newest may be among the unread ones
  }
  return names;
}

namespace {

struct VersionFolder {
  long version;
  std::string name;
};

}  // namespace

static std::vector<VersionFolder> matchesOf(const char* masterFolder, const char* componentName) {
  std::vector<VersionFolder> matches;
  for (const std::string& name : namesIn(masterFolder)) {
    if (checkAppFolderName(name.c_str(), componentName) == 0) {
      matches.push_back({pickVersionFromAppFolderName(name.c_str()), name});
    }
  }
  return matches;
}

// Newest first, by name among equals, so that neither the choice nor the log depends on the file
// system, and only one is logged as the latest. Logs every match.
static std::vector<VersionFolder> versionFoldersOf(const char* masterFolder,
                                                   const char* componentName) {
  std::vector<VersionFolder> folders = matchesOf(masterFolder, componentName);
  std::sort(
      folders.begin(), folders.end(), [](const VersionFolder& one, const VersionFolder& other) {
        return one.version != other.version ? one.version > other.version : one.name < other.name;
      });
  long best = -1;
  for (const VersionFolder& folder : folders) {
    logMessage("[PickFolder] Folder %s matches %s with version %ld\n", folder.name.c_str(),
               componentName, folder.version);
    if (folder.version > best) {
      logMessage("[PickFolder] Set latest to %ld %s\n", folder.version, folder.name.c_str());
      best = folder.version;
    }
  }
  folders.erase(std::remove_if(folders.begin(), folders.end(),
                               [](const VersionFolder& folder) { return folder.version < 0; }),
                folders.end());
  return folders;
}

// Returns the first of the folders without a flaw, or null.
static const VersionFolder* firstThatStarts(const char* masterFolder,
                                            const std::vector<VersionFolder>& folders,
                                            FlawOfFolder flawOf) {
  for (const VersionFolder& folder : folders) {
    const char* flaw = flawOf(childPath(masterFolder, folder.name).c_str());
    if (flaw == nullptr) {
      return &folder;
    }
    logMessage("[PickFolder] Folder %s cannot start: %s\n", folder.name.c_str(), flaw);
  }
  return nullptr;
}

char* pickAndAllocLatestFromMaster(const char* masterFolder, const char* componentName) {
  const std::vector<VersionFolder> folders = versionFoldersOf(masterFolder, componentName);
  return folders.empty() ? nullptr : allocCopy(folders.front().name.c_str());
}

char* pickAndAllocLatestThatStarts(const char* masterFolder, const char* componentName,
                                   FlawOfFolder flawOf) {
  const std::vector<VersionFolder> folders = versionFoldersOf(masterFolder, componentName);
  const VersionFolder* chosen = firstThatStarts(masterFolder, folders, flawOf);
  return chosen == nullptr ? nullptr : allocCopy(chosen->name.c_str());
}

char* pickAndAllocLatestToLaunch(const char* masterFolder, const char* componentName,
                                 FlawOfFolder flawOf) {
  const std::vector<VersionFolder> folders = versionFoldersOf(masterFolder, componentName);
  if (folders.empty()) {
    return nullptr;
  }
  const VersionFolder* chosen = firstThatStarts(masterFolder, folders, flawOf);
  return allocCopy((chosen == nullptr ? folders.front() : *chosen).name.c_str());
}
