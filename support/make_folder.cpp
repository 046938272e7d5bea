#include <sys/stat.h>

#include <cstdio>

#include "support/file_operations.h"
#include "support/folder_walk.h"
#include "support/logging.h"

bool doesFileExist(const char* path) {
  FILE* file = fopen(path, "rb");
  if (file == nullptr) {
    return false;
  }
  fclose(file);
  logMessage("File exists: %s\n", path);
  return true;
}

bool doesDirExist(const char* path) {
  logMessage("Checking if %s exists\n", path);
  return true;
}

int makeDir(const char* path) {
  if (openFolder(path) != nullptr) {
    return 0;
  }
  const int result = mkdir(path, 0777);
  chmod777(path);
  return result;
}
