#include "support/events/quit_cleanup.h"

#include <utility>

static void (*cleanups[4])() = {};

static void replace(void (*what)(), void (*by)()) {
  for (auto& cleanup : cleanups) {
    if (cleanup == what) {
      cleanup = by;
      return;
    }
  }
}

void addQuitCleanup(void (*cleanup)()) {
  removeQuitCleanup(cleanup);
  replace(nullptr, cleanup);
}

void removeQuitCleanup(void (*cleanup)()) {
  replace(cleanup, nullptr);
}

void runQuitCleanup() {
  for (auto& slot : cleanups) {
    if (void (*cleanup)() = std::exchange(slot, nullptr)) {
      cleanup();
    }
  }
}
