#include "platform/display.h"

#include <sys/stat.h>

#include <cstdlib>
#include <cstring>
#include <string>

// A display on another host, and one whose server left a stale socket, are left to the
// toolkit to reach. Connecting would say more, but a server that loses its last client resets
// itself, and refuses the next one meanwhile.
bool isDisplayAvailable() {
  const char* display = getenv("DISPLAY");
  if (display == nullptr || display[0] == 0) {
    return false;
  }
  if (display[0] != ':' && strncmp(display, "unix:", 5) != 0) {
    return true;
  }
  const std::string number = std::to_string(atoi(strchr(display, ':') + 1));
  struct stat status {};
  return stat(("/tmp/.X11-unix/X" + number).c_str(), &status) == 0 && S_ISSOCK(status.st_mode);
}

bool isDisplayRequired() {
  return false;
}

const char* missingDisplayMessage() {
  return "No display: DISPLAY names no window system that can be reached.\n";
}
