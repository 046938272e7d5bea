// Calls that make processes and await them, that tests/fakes/faults/plan.cpp may let fail; and
// sleep(), of which a pause of minutes, before a file is tried again, is over at once.

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

#include "tests/fakes/faults/plan.h"

extern "C" {

int posix_spawn(pid_t* child, const char* path, const posix_spawn_file_actions_t* actions,
                const posix_spawnattr_t* attributes, char* const* words, char* const* environment) {
  static const auto next =
      real<int (*)(pid_t*, const char*, const posix_spawn_file_actions_t*, const posix_spawnattr_t*,
                   char* const*, char* const*)>("posix_spawn");
  return fails("spawn") ? errno : next(child, path, actions, attributes, words, environment);
}

pid_t fork() {
  static const auto next = real<pid_t (*)()>("fork");
  return fails("spawn") ? -1 : next();
}

// Fails as where the system has thrown the child's end away: once the child is gone.
pid_t waitpid(pid_t child, int* status, int options) {
  static const auto next = real<pid_t (*)(pid_t, int*, int)>("waitpid");
  const pid_t result = next(child, status, options);
  return result != 0 && fails("wait") ? -1 : result;
}

unsigned sleep(unsigned seconds) {
  static const auto next = real<unsigned (*)(unsigned)>("sleep");
  constexpr unsigned kLong = 100;
  return seconds < kLong ? next(seconds) : 0;
}

}  // extern "C"
