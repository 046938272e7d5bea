#include "platform/process_end.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>

// exit() would run GNUstep's tear-down while the main thread is still inside its event loop.
void endProcess(int status) {
  fflush(nullptr);
  _exit(status);
}

static void endAtOnce(int status, void*) {
  endProcess(status);
}

void skipExitHandlersSoFar() {
  on_exit(endAtOnce, nullptr);  // handlers run from the latest to the earliest
}
