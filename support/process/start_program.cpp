#include "support/process/start_program.h"

#include <csignal>

#include "platform/environment.h"

// A signal ignored here would stay ignored in the new program: even a shell cannot undo it.
static int resetBrokenPipe(posix_spawnattr_t* attributes) {
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGPIPE);
  const int error = posix_spawnattr_setsigdefault(attributes, &signals);
  return error != 0 ? error : posix_spawnattr_setflags(attributes, POSIX_SPAWN_SETSIGDEF);
}

int startProgram(pid_t* child, const char* path, char* const* argv,
                 const posix_spawn_file_actions_t* actions) {
  posix_spawnattr_t attributes;
  int error = posix_spawnattr_init(&attributes);
  if (error != 0) {
    return error;
  }
  error = resetBrokenPipe(&attributes);
  if (error == 0) {
    error = posix_spawn(child, path, actions, &attributes, argv, getEnvP());
  }
  posix_spawnattr_destroy(&attributes);
  return error;
}
