#ifndef SECURITY_AUTHSESSION_H
#define SECURITY_AUTHSESSION_H

#include <MacTypes.h>

#include <sdk_api.h>

typedef UInt32 SecuritySessionId;
typedef UInt32 SessionAttributeBits;

enum : SecuritySessionId {
  noSecuritySession SDK_API = 0,
  callerSecuritySession SDK_API = 0xFFFFFFFF,
};

enum : SessionAttributeBits {
  sessionHasGraphicAccess SDK_API = 0x0010,
};

enum : OSStatus {
  errSessionSuccess SDK_API = 0,
};

SDK_EXTERN OSStatus SessionGetInfo(SecuritySessionId session, SecuritySessionId* sessionId,
                                   SessionAttributeBits* attributes) SDK_API;

#endif
