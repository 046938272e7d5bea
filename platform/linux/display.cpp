#include "platform/display.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>

// Connects to the X server's local socket: the abstract name, or the file of the same name.
static bool connectsTo(int number, bool abstractName) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const int lead = abstractName ? 1 : 0;
  const int length =
      snprintf(address.sun_path + lead, sizeof address.sun_path - 1, "/tmp/.X11-unix/X%d", number);
  const int handle = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (handle < 0) {
    return false;
  }
  const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + lead + length);
  const bool connected = connect(handle, reinterpret_cast<sockaddr*>(&address), size) == 0;
  close(handle);
  return connected;
}

bool isDisplayAvailable() {
  const char* display = getenv("DISPLAY");
  if (display == nullptr || display[0] == 0) {
    return false;
  }
  // A display on another host is left to the toolkit to reach.
  if (display[0] != ':' && strncmp(display, "unix:", 5) != 0) {
    return true;
  }
  const int number = atoi(strchr(display, ':') + 1);
  return connectsTo(number, true) || connectsTo(number, false);
}
