#ifndef QUORVANE_PLATFORM_PROCESS_END_H
#define QUORVANE_PLATFORM_PROCESS_END_H

// Ends the whole process with `status` after flushing every C stream; never returns. Every fatal
// condition and every regular end of a flow uses it. Exit handlers are skipped on platforms where
// the window system's own tear-down cannot run beside a live main thread. Any thread.
[[noreturn]] void endProcess(int status);

// On the same platforms, makes a C exit() by foreign code (the JVM ends the process with it) skip
// the exit handlers that were registered before this call. Called right before a JVM is created.
// Any thread.
void skipExitHandlersSoFar();

#endif
