#include <sys/stat.h>

#include <cstdio>
#include <string>
#include <utility>

#include "support/files/file_operations.h"
#include "support/files/folder_walk.h"
#include "support/files/paths.h"
#include "support/log/logging.h"
#include "support/owned.h"

static char copyBuf[50000];

// Copies bytes from the file `from` to the file `to`; false if either cannot be opened. `tag` names
// the caller in both messages.
static bool copyBytes(const char* tag, const char* from, const char* to) {
  const Stream source(fopen(from, "rb"));
  if (source == nullptr) {
    logMessage("[%s] *************************** Unable to open source file for copy %s\n", tag,
               from);
    return false;
  }
  const Stream target(createWithoutLink(to));
  if (target == nullptr) {
    logMessage("[%s] *************************** Unable to open destination file for copy %s\n",
               tag, to);
    return false;
  }
  size_t count = 0;
  do {
    count = fread(copyBuf, 1, sizeof copyBuf, source.get());
    fwrite(copyBuf, 1, count, target.get());
  } while (count == sizeof copyBuf);
  return true;
}

void copyFile(const char* from, const char* to) {
  logMessage("[Extractor] Copying FILE %s\n", to);
  static_cast<void>(copyBytes("Extractor", from, to));
}

static bool haveSameSize(const char* one, const char* other) {
  struct stat first {};
  struct stat second {};
  return stat(one, &first) == 0 && stat(other, &second) == 0 && first.st_size == second.st_size;
}

bool copyFileWhole(const char* from, const char* to, unsigned mode) {
  logMessage("[Extractor] Copying FILE %s\n", to);
  char part[PATH_BUFFER_SIZE];
  appendToPath(setPath(part, to), ".part");
  remove(part);
  if (copyBytes("Extractor", from, part) && haveSameSize(from, part) &&
      setModeWithoutLink(part, mode) == 0 && rename(part, to) == 0) {
    return true;
  }
  remove(part);
  return false;
}

static int copyChildFolder(const char* from, const char* to) {
  logMessage("[CopyFolder] Copying DIR %s\n", to);
  int result = makeDir(to);
  if (result != 0) {
    logMessage(
        "[CopyFolder] *************************** Failed to copy %s to %s (could not create target "
        "folder)\n",
        from, to);
    return result;
  }
  result = copyFolder(from, to);
  if (result != 0) {
    logMessage("[CopyFolder] *************************** Failed to copy %s to %s\n", from, to);
  }
  return result;
}

static int copyChild(const char* from, const char* to) {
  if (openFolder(from) != nullptr) {
    return copyChildFolder(from, to);
  }
  logMessage("[CopyFolder] Copying FILE %s\n", to);
  return copyBytes("CopyFolder", from, to) ? 0 : 1;
}

int copyFolder(const char* from, const char* to) {
  Folder folder = openFolder(from);
  if (folder == nullptr) {
    logMessage("[CopyFolder] SourceDir from '%s' is NULL\n", from);
    return 1;
  }
  if (openFolderWithoutLink(to) == nullptr) {
    logMessage("[CopyFolder] TargetDir '%s' is no folder\n", to);
    return 1;
  }
  for (const std::string& name : namesToWalk(std::move(folder))) {
    const int result = copyChild(childPath(from, name).c_str(), childPath(to, name).c_str());
    if (result != 0) {
      return result;
    }
  }
  return 0;
}
