#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>

#include "tests/macos/run/darwin/errors.h"
#include "tests/macos/run/darwin/signals.h"
#include "tests/macos/run/darwin/streams.h"
#include "tests/macos/run/stop.h"
#include "tests/macos/run/supply/tables.h"

// How children end, and those that the C library starts. The status has the same form on both
// systems (<sys/wait.h>); the signal in it has Darwin's number there.

namespace macrun {

static_assert(WNOHANG == 1 && WUNTRACED == 2);

static int toDarwinEnd(int status) {
  if (WIFSIGNALED(status)) {
    return (status & ~0x7F) | toDarwinSignal(WTERMSIG(status));
  }
  if (WIFSTOPPED(status)) {
    return (toDarwinSignal(WSTOPSIG(status)) << 8) | 0x7F;
  }
  return status;
}

static pid_t waitForProcess(pid_t process, int* status, int options) {
  if ((options & ~(WNOHANG | WUNTRACED)) != 0) {
    giveUp("waitpid: options %#x are not supported", static_cast<unsigned>(options));
  }
  int linux = 0;
  const pid_t ended = translating([&] { return waitpid(process, &linux, options); });
  if (ended > 0 && status != nullptr) {
    *status = toDarwinEnd(linux);
  }
  return ended;
}

static pid_t waitForAny(int* status) {
  return waitForProcess(-1, status, 0);
}

static int runCommand(const char* command) {
  const int status = translating([&] { return system(command); });
  return status == -1 || command == nullptr ? status : toDarwinEnd(status);
}

static DarwinStream* openCommand(const char* command, const char* mode) {
  return wrapStream(translating([&] { return popen(command, mode); }));
}

static int closeCommand(DarwinStream* stream) {
  const int status = translating([&] { return pclose(fileOf(stream)); });
  dropStream(stream);
  return status == -1 ? status : toDarwinEnd(status);
}

static constexpr Supplied kWait[] = {
    function<closeCommand>("_pclose"),    function<openCommand>("_popen"),
    function<runCommand>("_system"),      function<waitForAny>("_wait"),
    function<waitForProcess>("_waitpid"),
};
const SupplyTable kWaitTable = tableOf(kWait);

}  // namespace macrun
