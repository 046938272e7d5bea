#include "platform/exchange_folders.h"

#include <fcntl.h>

#include <cstdio>

bool exchangeFolders(const char* a, const char* b) {
  return renameat2(AT_FDCWD, a, AT_FDCWD, b, RENAME_EXCHANGE) == 0;
}
