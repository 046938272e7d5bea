#include <fcntl.h>
#include <sys/stat.h>

#include <cstdlib>
#include <string>

#include "support/files/file_kind.h"
#include "support/files/file_operations.h"
#include "support/files/folder_walk.h"
#include "support/files/paths.h"
#include "support/log/logging.h"
#include "support/owned.h"
#include "support/text/strings.h"

static const char kRecursive755[] = "chmod -R 755 ";
static const char kPlain777[] = "chmod 777 ";

// Logs where the result differs from the command's, which follows a link that it is given.
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

int setModeWithoutLink(const char* path, unsigned mode) {
  const Descriptor file(open(path, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  if (file.isOpen()) {
    return fchmod(file.get(), static_cast<mode_t>(mode));
  }
  return isLink(path) ? -1 : chmod(path, static_cast<mode_t>(mode));
}

static void setMode(const char* path, unsigned mode) {
  static_cast<void>(setModeWithoutLink(path, mode));
}

static void setModeRecursively(const std::string& path, unsigned mode) {
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
