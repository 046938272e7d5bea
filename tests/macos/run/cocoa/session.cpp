#include <unistd.h>

#include <cstdint>

#include "platform/display.h"
#include "tests/macos/run/supply/tables.h"

namespace macrun {

// <Security/AuthSession.h>
constexpr uint32_t kSessionHasGraphics = 0x10, kSessionHasTerminal = 0x20;
constexpr int32_t kSuccess = 0, kInvalidSession = -60500;

constexpr uint32_t kThisSession = 100;  // any number but the special ones

// What a user who is logged in at the screen has: graphics, where there is a display.
static int32_t readSession(uint32_t session, uint32_t* found, uint32_t* attributes) {
  constexpr uint32_t kCallers = ~uint32_t{0};
  if (session != kCallers && session != kThisSession) {
    return kInvalidSession;
  }
  if (found != nullptr) {
    *found = kThisSession;
  }
  if (attributes != nullptr) {
    *attributes = (isDisplayAvailable() ? kSessionHasGraphics : 0) |
                  (isatty(STDIN_FILENO) != 0 ? kSessionHasTerminal : 0);
  }
  return kSuccess;
}

static constexpr Supplied kSession[] = {
    function<readSession>("_SessionGetInfo"),
};
const SupplyTable kSessionTable = tableOf(kSession);

}  // namespace macrun
