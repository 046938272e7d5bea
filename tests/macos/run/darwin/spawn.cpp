#include <spawn.h>
#include <unistd.h>

#include "tests/macos/run/darwin/errors.h"
#include "tests/macos/run/darwin/files.h"
#include "tests/macos/run/darwin/signals.h"
#include "tests/macos/run/stop.h"
#include "tests/macos/run/supply/tables.h"

// posix_spawn. File actions and attributes are pointers there (<spawn.h>), and each function
// returns an error number. That a Mach-O file runs as a child is the work of the library in
// children/.

namespace macrun {

using Actions = posix_spawn_file_actions_t;
using Attributes = posix_spawnattr_t;

static int makeActions(Actions** actions) {
  *actions = new Actions;
  return toDarwinError(posix_spawn_file_actions_init(*actions));
}

static int dropActions(Actions** actions) {
  const int error = posix_spawn_file_actions_destroy(*actions);
  delete *actions;
  *actions = nullptr;
  return toDarwinError(error);
}

static int addOpen(Actions** actions, int handle, const char* path, int flags, mode_t mode) {
  return toDarwinError(
      posix_spawn_file_actions_addopen(*actions, handle, path, fromDarwinOpenFlags(flags), mode));
}

static int addClose(Actions** actions, int handle) {
  return toDarwinError(posix_spawn_file_actions_addclose(*actions, handle));
}

static int addDuplicate(Actions** actions, int handle, int to) {
  return toDarwinError(posix_spawn_file_actions_adddup2(*actions, handle, to));
}

static int makeAttributes(Attributes** attributes) {
  *attributes = new Attributes;
  return toDarwinError(posix_spawnattr_init(*attributes));
}

static int dropAttributes(Attributes** attributes) {
  const int error = posix_spawnattr_destroy(*attributes);
  delete *attributes;
  *attributes = nullptr;
  return toDarwinError(error);
}

struct SpawnFlag {
  short darwin, linux;
};

// POSIX_SPAWN_… of <sys/spawn.h>.
static constexpr SpawnFlag kSpawnFlags[] = {
    {0x1, POSIX_SPAWN_RESETIDS},   {0x2, POSIX_SPAWN_SETPGROUP}, {0x4, POSIX_SPAWN_SETSIGDEF},
    {0x8, POSIX_SPAWN_SETSIGMASK}, {0x400, POSIX_SPAWN_SETSID},
};

static int setFlags(Attributes** attributes, short flags) {
  int linux = 0, rest = flags;
  for (const SpawnFlag& flag : kSpawnFlags) {
    linux |= (rest & flag.darwin) != 0 ? flag.linux : 0;
    rest &= ~flag.darwin;
  }
  if (rest != 0) {
    giveUp("posix_spawnattr_setflags: flags %#x are not supported", static_cast<unsigned>(rest));
  }
  return toDarwinError(posix_spawnattr_setflags(*attributes, static_cast<short>(linux)));
}

static int getFlags(Attributes** attributes, short* flags) {
  short linux = 0;
  const int error = posix_spawnattr_getflags(*attributes, &linux);
  *flags = 0;
  for (const SpawnFlag& flag : kSpawnFlags) {
    *flags = static_cast<short>(*flags | ((linux & flag.linux) != 0 ? flag.darwin : 0));
  }
  return toDarwinError(error);
}

static int setDefaultSignals(Attributes** attributes, const DarwinSignals* signals) {
  const sigset_t linux = fromDarwinSignals(*signals);
  return toDarwinError(posix_spawnattr_setsigdefault(*attributes, &linux));
}

static int setSignalMask(Attributes** attributes, const DarwinSignals* signals) {
  const sigset_t linux = fromDarwinSignals(*signals);
  return toDarwinError(posix_spawnattr_setsigmask(*attributes, &linux));
}

static int setGroup(Attributes** attributes, pid_t group) {
  return toDarwinError(posix_spawnattr_setpgroup(*attributes, group));
}

static int spawn(pid_t* process, const char* path, Actions** actions, Attributes** attributes,
                 char* const* argv, char* const* environment) {
  if (!isPathShort(path)) {
    return darwin::kENAMETOOLONG;
  }
  return toDarwinError(posix_spawn(process, path, actions != nullptr ? *actions : nullptr,
                                   attributes != nullptr ? *attributes : nullptr, argv,
                                   environment));
}

static int spawnByName(pid_t* process, const char* file, Actions** actions, Attributes** attributes,
                       char* const* argv, char* const* environment) {
  return toDarwinError(posix_spawnp(process, file, actions != nullptr ? *actions : nullptr,
                                    attributes != nullptr ? *attributes : nullptr, argv,
                                    environment));
}

static constexpr Supplied kSpawn[] = {
    translated<static_cast<int (*)(const char*, char* const*)>(execv)>("_execv"),
    translated<execve>("_execve"),
    translated<execvp>("_execvp"),
    translated<fork>("_fork"),
    function<spawn>("_posix_spawn"),
    function<addClose>("_posix_spawn_file_actions_addclose"),
    function<addDuplicate>("_posix_spawn_file_actions_adddup2"),
    function<addOpen>("_posix_spawn_file_actions_addopen"),
    function<dropActions>("_posix_spawn_file_actions_destroy"),
    function<makeActions>("_posix_spawn_file_actions_init"),
    function<dropAttributes>("_posix_spawnattr_destroy"),
    function<getFlags>("_posix_spawnattr_getflags"),
    function<makeAttributes>("_posix_spawnattr_init"),
    function<setFlags>("_posix_spawnattr_setflags"),
    function<setGroup>("_posix_spawnattr_setpgroup"),
    function<setDefaultSignals>("_posix_spawnattr_setsigdefault"),
    function<setSignalMask>("_posix_spawnattr_setsigmask"),
    function<spawnByName>("_posix_spawnp"),
};
const SupplyTable kSpawnTable = tableOf(kSpawn);

}  // namespace macrun
