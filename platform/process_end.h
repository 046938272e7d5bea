#ifndef QUORVANE_PLATFORM_PROCESS_END_H
#define QUORVANE_PLATFORM_PROCESS_END_H

// Ends the whole process with `status` after flushing every C stream; never returns. Every fatal
// condition and every regular end of a flow goes through here. Where the window system's own
// tear-down cannot run beside a live main thread, exit handlers are skipped. Any thread.
[[noreturn]] void endProcess(int status);

// Makes a C exit() by code that is not ours (the JVM ends the process with it) skip, on the same
// platforms, the exit handlers that were registered before this call. Called right before a JVM is
// created. Any thread.
void skipExitHandlersSoFar();

#endif
