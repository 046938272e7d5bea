#include "support/process/process_start.h"

#include <csignal>

#include "platform/desktop_start.h"

static bool startedByDesktop = false;

void beginProcess() {
  signal(SIGPIPE, SIG_IGN);
  startedByDesktop = looksStartedByDesktop();
}

bool isStartedByDesktop() {
  return startedByDesktop;
}
