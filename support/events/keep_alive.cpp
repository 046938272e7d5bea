#include "support/events/keep_alive.h"

static void (*current)() = nullptr;

void setKeepAlive(void (*function)()) {
  current = function;
}

void keepAlive() {
  if (current != nullptr) {
    current();
  }
}

bool hasKeepAlive() {
  return current != nullptr;
}
