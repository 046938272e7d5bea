#include "platform/desktop_start.h"

#include <cstdlib>

bool looksStartedByDesktop() {
  const char* id = getenv("DESKTOP_STARTUP_ID");
  return id != nullptr && id[0] != 0;
}
