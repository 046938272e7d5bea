// A getpwuid() of the test executable's own, which comes before the C library's.
#include "tests/unit/launcher/fake_account.h"

#include <pwd.h>

#include <string>

static std::string homeOfAccount;
static bool hasAccount = false;

void setFakeHome(const char* home) {
  hasAccount = home != nullptr;
  homeOfAccount = hasAccount ? home : "";
}

passwd* getpwuid(uid_t uid) {
  static passwd entry;
  entry.pw_uid = uid;
  entry.pw_dir = homeOfAccount.data();
  return hasAccount ? &entry : nullptr;
}
