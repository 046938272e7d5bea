// The real platform/macos/display.cpp on this system, with a stand-in for the system's function.

#include "platform/display.h"

#include <Security/AuthSession.h>
#include <gtest/gtest.h>

#include <vector>

static OSStatus answer = errSessionSuccess;
static SessionAttributeBits attributesOfSession = 0;
static std::vector<SecuritySessionId> askedSessions;

OSStatus SessionGetInfo(SecuritySessionId session, SecuritySessionId* sessionId,
                        SessionAttributeBits* attributes) {
  askedSessions.push_back(session);
  *sessionId = 100001;
  *attributes = attributesOfSession;
  return answer;
}

TEST(MacosDisplay, IsThereInASessionWithGraphicAccess) {
  attributesOfSession = sessionHasGraphicAccess | sessionHasTTY;
  EXPECT_TRUE(isDisplayAvailable());
}

TEST(MacosDisplay, IsNotThereInARemoteSession) {
  attributesOfSession = sessionIsRemote | sessionHasTTY;
  EXPECT_FALSE(isDisplayAvailable());
}

TEST(MacosDisplay, IsNotThereInTheSessionOfTheSystemsServices) {
  attributesOfSession = sessionIsRoot;
  EXPECT_FALSE(isDisplayAvailable());
}

TEST(MacosDisplay, IsNotThereWhenTheSessionIsUnknown) {
  answer = errSessionInvalidId;
  attributesOfSession = sessionHasGraphicAccess;
  EXPECT_FALSE(isDisplayAvailable());
}

TEST(MacosDisplay, IsAskedOfTheSessionThatTheProcessRunsIn) {
  (void)isDisplayAvailable();
  EXPECT_EQ(std::vector<SecuritySessionId>{callerSecuritySession}, askedSessions);
}

TEST(MacosDisplay, IsRequiredByAnInstallerThatShowsWindows) {
  EXPECT_TRUE(isDisplayRequired());
}

TEST(MacosDisplay, IsMissedInOneLine) {
  EXPECT_STREQ("No window server: this login session has no graphic access.\n",
               missingDisplayMessage());
}
