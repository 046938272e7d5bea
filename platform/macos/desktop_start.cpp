#include "platform/desktop_start.h"

#include <unistd.h>

static const pid_t kLaunchd = 1;

bool looksStartedByDesktop() {
  return getppid() == kLaunchd && isatty(STDERR_FILENO) == 0;
}
