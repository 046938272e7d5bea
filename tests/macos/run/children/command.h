#ifndef QUORVANE_TESTS_MACOS_RUN_CHILDREN_COMMAND_H
#define QUORVANE_TESTS_MACOS_RUN_CHILDREN_COMMAND_H

#include <cstddef>

namespace macrun {

// What is executed in place of what was asked for.
struct Child {
  const char* path;
  char** environment;
};

// Makes the child's command in `room`, which has roomFor() bytes: after fork() or vfork() nothing
// but the stack is safe to use. The environment is as asked for, but for the preloaded libraries
// and for what names a Mach-O file to the runner.
Child prepareChild(const char* path, char* const* environment, void* room);
size_t roomFor(const char* path, char* const* environment);

// Whether `path`, which became `child`, may be executed; sets errno when not. The runner itself can
// always be, unlike the file it is given.
bool mayExecute(const Child& child, const char* path);

}  // namespace macrun

#endif
