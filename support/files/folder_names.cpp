#include <cstdio>
#include <ctime>

#include "support/files/file_operations.h"
#include "support/files/folder_walk.h"
#include "support/files/paths.h"

char* makeAppFolder(char* dst, const char* base, const char* name, const char* version) {
  setPath(dst, base, "Quorvane-");
  appendToPath(dst, name);
  appendToPath(dst, "-");
  appendToPath(dst, version);
  return appendToPath(dst, "-complete");
}

char* makeAppTempFolder(char* dst, const char* base, ...) {
  char stamp[64];
  snprintf(stamp, sizeof stamp, "%ld-%ld", static_cast<long>(time(nullptr)), countEntries(base));
  setPath(dst, base, "QuorvaneTemp-");
  appendToPath(dst, stamp);
  return appendToPath(dst, "-app");
}
