#include "platform/process_end.h"

#include <cstdio>

#include <unistd.h>

void endProcess(int status) {
  fflush(nullptr);
  // exit() would run GNUstep's tear-down while the main thread is still inside its event loop.
  _exit(status);
}
