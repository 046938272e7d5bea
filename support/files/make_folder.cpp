#include <fcntl.h>
#include <sys/stat.h>

#include <cstdio>

#include "support/files/file_operations.h"
#include "support/files/folder_walk.h"
#include "support/log/logging.h"
#include "support/owned.h"

bool doesFileExist(const char* path) {
  FILE* file = fopen(path, "rb");
  if (file == nullptr) {
    return false;
  }
  fclose(file);
  logMessage("File exists: %s\n", path);
  return true;
}

FILE* createWithoutLink(const char* path) {
  Descriptor file(open(path, O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, 0666));
  FILE* stream = file.isOpen() ? fdopen(file.get(), "wb") : nullptr;
  if (stream != nullptr) {
    file.release();
  }
  return stream;
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
