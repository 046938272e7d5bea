// The system's answer to what a Mac's login session can do, for an installer that is linked with
// platform/macos/display.cpp: the attributes in QUORVANE_SESSION, 0 without it. Every question is
// reported with a line on standard error.

#include <Security/AuthSession.h>

#include <cstdio>
#include <cstdlib>

OSStatus SessionGetInfo(SecuritySessionId session, SecuritySessionId* sessionId,
                        SessionAttributeBits* attributes) {
  fputs("SessionGetInfo was asked\n", stderr);
  const char* wanted = getenv("QUORVANE_SESSION");
  *sessionId = session;
  *attributes = wanted == nullptr ? 0 : static_cast<SessionAttributeBits>(atoi(wanted));
  return errSessionSuccess;
}
