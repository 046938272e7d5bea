#ifndef QUORVANE_SUPPORT_PROCESS_PROCESS_START_H
#define QUORVANE_SUPPORT_PROCESS_PROCESS_START_H

// The first call of both executables' main(), before anything can be written or started.
//
// From then on SIGPIPE is ignored: the reader of this process's output may go away, and the log
// file and the installation go on. A started program gets the default back
// (support/process/start_program.h). A JVM in this process replaces this with its own handler, so
// that Java's children have the default as under `java`.
//
// It also determines how the process was started, because that may look different later, when a
// parent has ended. Main thread, while it is the only one.
void beginProcess();

// Returns whether the desktop started this process, so that nobody sees its standard output, as
// found by beginProcess(); false before it. Any thread.
[[nodiscard]] bool isStartedByDesktop();

#endif
