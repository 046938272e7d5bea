#include "launch/retry.h"

#include <unistd.h>

static void sleepSeconds(unsigned seconds) {
  while (seconds > 0) {
    seconds = sleep(seconds);
  }
}

void (*pauseBeforeRetry)(unsigned seconds) = sleepSeconds;
