#include "support/events/quit_cleanup.h"

#include <utility>

static void (*currentCleanup)() = nullptr;

void setQuitCleanup(void (*cleanup)()) {
  currentCleanup = cleanup;
}

void runQuitCleanup() {
  if (void (*cleanup)() = std::exchange(currentCleanup, nullptr)) {
    cleanup();
  }
}
