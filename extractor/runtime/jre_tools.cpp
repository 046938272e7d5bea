#include <cstdio>

#include "extractor/runtime/jre_layout.h"
#include "support/files/file_kind.h"
#include "support/files/file_operations.h"
#include "support/files/paths.h"
#include "support/log/logging.h"
#include "support/text/strings.h"

bool holdsJava(const char* home) {
  return isExecutable(childPath(home, "bin/java").c_str());
}

static char* allocToolFolder(const char* bundlePath) {
  char* path = static_cast<char*>(allocZeroed(PATH_BUFFER_SIZE));
  return setPath(path, bundlePath, "Contents", "Home", "bin");
}

static void makeExecutable(const char* path, const char* tool) {
  if (setModeWithoutLink(path, 0777) != 0) {
    logError("Error setting %s to executable!\n", tool);
  }
}

char* getJavaExecutable(const char* bundlePath) {
  char* path = pathcat(allocToolFolder(bundlePath), "java");
  makeExecutable(path, "java");
  return path;
}

char* getUnpack200Executable(const char* bundlePath) {
  printf("[Locating UP200] %s\n", bundlePath);
  char* path = allocToolFolder(bundlePath);
  printf("[Locating UP200] %s\n", path);
  pathcat(path, "unpack200");
  makeExecutable(path, "unpack200");
  printf("[Locating UP200] Result is %s\n", path);
  return path;
}
