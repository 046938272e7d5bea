#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "support/file_operations.h"
#include "support/folder_walk.h"
#include "support/logging.h"
#include "support/strings.h"

static const char kRecursive755[] = "chmod -R 755 ";
static const char kPlain777[] = "chmod 777 ";

static bool isLink(const char* path) {
  struct stat status {};
  return lstat(path, &status) == 0 && S_ISLNK(status.st_mode);
}

// Says where the result differs from the command's, which follows a link that it is given.
static void warnOfLink(const char* path) {
  if (isLink(path)) {
    logMessage("[ChMod] Not following link %s\n", path);
  }
}

// The log shows the command that would do the same; the modes are set in-process, so that no
// character of a path can become code in a shell.
static void logCommand(const char* command, const char* path) {
  char* quoted = quoteSpaciousString(path);
  char* text = allocTempString(command, quoted);
  logMessage("[ChMod] Executing %s\n", text);
  free(text);
  free(quoted);
}

// Sets the mode of `path` unless it is a symbolic link, whose target may lie anywhere.
static void setMode(const char* path, mode_t mode) {
  if (isLink(path)) {
    return;
  }
  const int handle = open(path, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (handle < 0) {
    chmod(path, mode);
    return;
  }
  fchmod(handle, mode);
  close(handle);
}

static void setModeRecursively(const std::string& path, mode_t mode) {
  setMode(path.c_str(), mode);
  for (const std::string& name : allNames(openFolderWithoutLink(path.c_str()))) {
    setModeRecursively(childPath(path, name), mode);
  }
}

void chmodR755(const char* path) {
  logCommand(kRecursive755, path);
  warnOfLink(path);
  setModeRecursively(path, 0755);
}

void chmod777(const char* path) {
  logCommand(kPlain777, path);
  warnOfLink(path);
  setMode(path, 0777);
}

void chmodR755(int descriptor, const char* path) {
  logCommand(kRecursive755, path);
  fchmod(descriptor, 0755);
}

void chmod777(int descriptor, const char* path) {
  logCommand(kPlain777, path);
  fchmod(descriptor, 0777);
}
