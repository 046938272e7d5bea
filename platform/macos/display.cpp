#include "platform/display.h"

#include <Security/AuthSession.h>

bool isDisplayAvailable() {
  SecuritySessionId session = noSecuritySession;
  SessionAttributeBits attributes = 0;
  return SessionGetInfo(callerSecuritySession, &session, &attributes) == errSessionSuccess &&
         (attributes & sessionHasGraphicAccess) != 0;
}

bool isDisplayRequired() {
  return true;
}

const char* missingDisplayMessage() {
  return "No window server: this login session has no graphic access.\n";
}
