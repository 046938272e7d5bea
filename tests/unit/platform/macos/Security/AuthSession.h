#ifndef QUORVANE_TESTS_SECURITY_AUTH_SESSION_H
#define QUORVANE_TESTS_SECURITY_AUTH_SESSION_H

// The part of Apple's header that platform/macos/display.cpp uses, with Apple's types and values,
// for a test on another system. The function is the test's.

#include <cstdint>

typedef int32_t OSStatus;
typedef uint32_t SecuritySessionId;
typedef uint32_t SessionAttributeBits;

enum : SecuritySessionId {
  noSecuritySession = 0,
  callerSecuritySession = static_cast<SecuritySessionId>(-1),
};

enum : SessionAttributeBits {
  sessionIsRoot = 0x0001,
  sessionHasGraphicAccess = 0x0010,
  sessionHasTTY = 0x0020,
  sessionIsRemote = 0x1000,
};

enum : OSStatus {
  errSessionSuccess = 0,
  errSessionInvalidId = -60500,
};

extern "C" OSStatus SessionGetInfo(SecuritySessionId session, SecuritySessionId* sessionId,
                                   SessionAttributeBits* attributes);

#endif
