#include "support/log_file/old_logs.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "support/files/folder_walk.h"

// Whether `text` is a time stamp followed by ".log", as in the log files' names.
static bool isStamp(const char* text) {
  static const char kForm[] = "dddd-dd-dd-dd-dd-dd-ddd.log";
  if (strlen(text) != strlen(kForm)) {
    return false;
  }
  for (size_t i = 0; kForm[i] != 0; ++i) {
    const bool isDigit = isdigit(static_cast<unsigned char>(text[i])) != 0;
    if (kForm[i] == 'd' ? !isDigit : text[i] != kForm[i]) {
      return false;
    }
  }
  return true;
}

static bool isOwnFile(int folder, const std::string& name) {
  struct stat status {};
  return fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 &&
         S_ISREG(status.st_mode) && status.st_uid == geteuid();
}

// Returns the logs beside `current`, the newest first.
static std::vector<std::string> otherLogs(DIR* folder, const char* prefix, const char* current) {
  std::vector<std::string> names;
  while (const dirent* entry = readdir(folder)) {
    const char* name = entry->d_name;
    if (strncmp(name, prefix, strlen(prefix)) == 0 && isStamp(name + strlen(prefix)) &&
        strcmp(name, current) != 0 && isOwnFile(dirfd(folder), name)) {
      names.emplace_back(name);
    }
  }
  std::sort(names.begin(), names.end(), std::greater<>());
  return names;
}

void removeOldLogs(const char* folder, const char* prefix, const char* current, int count) {
  const Folder opened = openFolderWithoutLink(folder);
  if (opened == nullptr) {
    return;
  }
  const std::vector<std::string> names = otherLogs(opened.get(), prefix, current);
  for (size_t i = static_cast<size_t>(count) - 1; i < names.size(); ++i) {
    unlinkat(dirfd(opened.get()), names[i].c_str(), 0);
  }
}
