#ifndef QUORVANE_SUPPORT_PROCESS_PROCESS_START_H
#define QUORVANE_SUPPORT_PROCESS_PROCESS_START_H

// The first call of both executables' main(), before anything can be written or started.
//
// From then on SIGPIPE is ignored: whoever reads this process's output may go away, and the log
// file and the installation go on without them. A program that is started gets the default back
// (support/process/start_program.h). A JVM in this process puts a handler of its own in this one's
// place, so that Java's children have the default as under `java`.
//
// It also looks how the process was started, which may look otherwise later, when a parent has
// ended. Main thread, while it is the only one.
void beginProcess();

// Returns whether the desktop started this process, so that nobody sees its standard output: what
// beginProcess() found, false before it. Any thread.
[[nodiscard]] bool isStartedByDesktop();

#endif
