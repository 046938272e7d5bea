// The library that is preloaded into every process under test, and linked to the runner: a Mach-O
// file that a process executes runs through the runner, which lies beside this library. Every new
// process gets the library too, whatever its environment says about LD_PRELOAD.
//
// After fork() or vfork() nothing but the stack is safe to use, so that the new words are made
// there.

#include <alloca.h>
#include <dlfcn.h>
#include <spawn.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "tests/macos/run/children/command.h"

namespace macrun {

using Execve = int (*)(const char*, char* const*, char* const*);
using Spawn = int (*)(pid_t*, const char*, const posix_spawn_file_actions_t*,
                      const posix_spawnattr_t*, char* const*, char* const*);

static Execve realExecve = nullptr;
static Spawn realSpawn = nullptr;

__attribute__((constructor)) static void findReal() {
  realExecve = reinterpret_cast<Execve>(dlsym(RTLD_NEXT, "execve"));
  realSpawn = reinterpret_cast<Spawn>(dlsym(RTLD_NEXT, "posix_spawn"));
}

static int execute(const char* path, char* const* argv, char* const* environment) {
  const Child child = prepareChild(path, environment, alloca(roomFor(path, environment)));
  return mayExecute(child, path) ? realExecve(child.path, argv, child.environment) : -1;
}

static int spawn(pid_t* process, const char* path, const posix_spawn_file_actions_t* actions,
                 const posix_spawnattr_t* attributes, char* const* argv, char* const* environment) {
  const Child child = prepareChild(path, environment, alloca(roomFor(path, environment)));
  return mayExecute(child, path)
             ? realSpawn(process, child.path, actions, attributes, argv, child.environment)
             : errno;
}

// Looks `file` up in PATH as execvp() does; leaves the path in `room`.
static const char* findInPath(const char* file, char* room, size_t size) {
  const char* folders = strchr(file, '/') == nullptr ? getenv("PATH") : nullptr;
  while (folders != nullptr && *folders != 0) {
    const size_t length = strcspn(folders, ":");
    snprintf(room, size, "%.*s/%s", static_cast<int>(length), folders, file);
    if (access(room, X_OK) == 0) {
      return room;
    }
    folders += length + (folders[length] != 0 ? 1 : 0);
  }
  return file;
}

static int executeByName(const char* file, char* const* argv, char* const* environment) {
  char room[PATH_MAX];
  return execute(findInPath(file, room, sizeof room), argv, environment);
}

static size_t countArguments(va_list arguments) {
  size_t count = 1;
  while (va_arg(arguments, char*) != nullptr) {
    ++count;
  }
  return count;
}

static void takeArguments(char** argv, const char* first, va_list arguments) {
  *argv++ = const_cast<char*>(first);
  while ((*argv++ = va_arg(arguments, char*)) != nullptr) {
  }
}

using Execute = int (*)(const char* name, char* const* argv, char* const* environment);

// A child of vfork() may not allocate: the list is on the stack.
static int executeListed(Execute execute, const char* name, const char* first, va_list arguments) {
  va_list counted;
  va_copy(counted, arguments);
  auto** argv = static_cast<char**>(alloca((countArguments(counted) + 1) * sizeof(char*)));
  va_end(counted);
  takeArguments(argv, first, arguments);
  return execute(name, argv, environ);
}

}  // namespace macrun

extern "C" {

int execve(const char* path, char* const argv[], char* const environment[]) {
  return macrun::execute(path, argv, environment);
}

int execv(const char* path, char* const argv[]) {
  return macrun::execute(path, argv, environ);
}

int execvpe(const char* file, char* const argv[], char* const environment[]) {
  return macrun::executeByName(file, argv, environment);
}

int execvp(const char* file, char* const argv[]) {
  return macrun::executeByName(file, argv, environ);
}

int execl(const char* path, const char* first, ...) {
  va_list arguments;
  va_start(arguments, first);
  const int result = macrun::executeListed(macrun::execute, path, first, arguments);
  va_end(arguments);
  return result;
}

int execlp(const char* file, const char* first, ...) {
  va_list arguments;
  va_start(arguments, first);
  const int result = macrun::executeListed(macrun::executeByName, file, first, arguments);
  va_end(arguments);
  return result;
}

int posix_spawn(pid_t* process, const char* path, const posix_spawn_file_actions_t* actions,
                const posix_spawnattr_t* attributes, char* const argv[],
                char* const environment[]) {
  return macrun::spawn(process, path, actions, attributes, argv, environment);
}

int posix_spawnp(pid_t* process, const char* file, const posix_spawn_file_actions_t* actions,
                 const posix_spawnattr_t* attributes, char* const argv[],
                 char* const environment[]) {
  char room[PATH_MAX];
  return macrun::spawn(process, macrun::findInPath(file, room, sizeof room), actions, attributes,
                       argv, environment);
}
}
