#ifndef QUORVANE_SUPPORT_PROCESS_START_PROGRAM_H
#define QUORVANE_SUPPORT_PROCESS_START_PROGRAM_H

#include <spawn.h>
#include <sys/types.h>

// Starts the program at `path` with the null-terminated list `argv` in this process's environment,
// with the default action for SIGPIPE, which this process ignores. `actions` may be null. Every
// program that this process starts is started here. Returns 0, with the child's number in `*child`,
// or the error number. Logs nothing. One thread.
[[nodiscard]] int startProgram(pid_t* child, const char* path, char* const* argv,
                               const posix_spawn_file_actions_t* actions = nullptr);

#endif
