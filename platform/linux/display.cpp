#include "platform/display.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>

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

// Whether a socket of this name is listened on, seen without connecting to it: an X server that
// loses its last client resets itself, and refuses the next one meanwhile.
static bool isListenedOn(int number) {
  constexpr unsigned long kAcceptsConnections = 1 << 16;
  const std::string file = "/tmp/.X11-unix/X" + std::to_string(number);
  std::ifstream sockets("/proc/net/unix");
  for (std::string line; std::getline(sockets, line);) {
    std::istringstream fields(line);
    std::string slot, users, protocol, flags, type, state, inode, name;
    fields >> slot >> users >> protocol >> flags >> type >> state >> inode >> name;
    const bool accepts = (strtoul(flags.c_str(), nullptr, 16) & kAcceptsConnections) != 0;
    if (accepts && (name == file || name == "@" + file)) {
      return true;
    }
  }
  return false;
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
  // The list leaves out the sockets of other network namespaces, whose files may be here.
  return isListenedOn(number) || connectsTo(number, true) || connectsTo(number, false);
}

bool isDisplayRequired() {
  return false;
}

const char* missingDisplayMessage() {
  return "No display: DISPLAY names no window system that can be reached.\n";
}
