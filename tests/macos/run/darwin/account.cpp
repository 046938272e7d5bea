#include <pwd.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "tests/macos/run/darwin/errors.h"
#include "tests/macos/run/run.h"
#include "tests/macos/run/supply/tables.h"

// Whose process this is, and what it was started with.

namespace macrun {

// struct passwd of <pwd.h>.
struct DarwinAccount {
  char *name, *password;
  uint32_t user, group;
  long passwordChange;
  char *kind, *description, *home, *shell;
  long end;
};
static_assert(sizeof(DarwinAccount) == 72 && offsetof(DarwinAccount, home) == 48);

static DarwinAccount* toDarwinAccount(const passwd* account) {
  static thread_local DarwinAccount darwin;
  static char noKind[] = "";
  if (account == nullptr) {
    return nullptr;
  }
  darwin = {account->pw_name, account->pw_passwd, account->pw_uid, account->pw_gid,   0,
            noKind,           account->pw_gecos,  account->pw_dir, account->pw_shell, 0};
  return &darwin;
}

static DarwinAccount* accountOf(uid_t user) {
  return toDarwinAccount(translating([&] { return getpwuid(user); }));
}

static DarwinAccount* accountNamed(const char* name) {
  return toDarwinAccount(translating([&] { return getpwnam(name); }));
}

static char*** environmentPlace() {
  return &environ;
}

// _NSGetExecutablePath() of <mach-o/dyld.h>.
static int copyExecutablePath(char* path, uint32_t* size) {
  const size_t needed = strlen(executablePath()) + 1;
  const bool fits = needed <= *size;
  if (fits) {
    memcpy(path, executablePath(), needed);
  }
  *size = static_cast<uint32_t>(needed);
  return fits ? 0 : -1;
}

// What the desktop starts there is launchd's child; here the desktop says that it was it.
static pid_t parentOf() {
  return getenv("DESKTOP_STARTUP_ID") != nullptr ? 1 : getppid();
}

static constexpr Supplied kAccount[] = {
    data<&environ>("_environ"),
    function<environmentPlace>("__NSGetEnviron"),
    function<copyExecutablePath>("__NSGetExecutablePath"),
    function<getegid>("_getegid"),
    function<getenv>("_getenv"),
    function<geteuid>("_geteuid"),
    function<getgid>("_getgid"),
    function<getpid>("_getpid"),
    function<parentOf>("_getppid"),
    function<accountNamed>("_getpwnam"),
    function<accountOf>("_getpwuid"),
    function<getuid>("_getuid"),
    translated<setenv>("_setenv"),
    translated<unsetenv>("_unsetenv"),
};
const SupplyTable kAccountTable = tableOf(kAccount);

}  // namespace macrun
