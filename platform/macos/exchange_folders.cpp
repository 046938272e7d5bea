#include "platform/exchange_folders.h"

#include <sys/stdio.h>

#include <cstdio>

bool exchangeFolders(const char* a, const char* b) {
  return renamex_np(a, b, RENAME_SWAP) == 0;
}
