#ifndef QUORVANE_PLATFORM_PROCESS_END_H
#define QUORVANE_PLATFORM_PROCESS_END_H

// Ends the whole process with `status` after flushing every C stream; never returns. Every fatal
// condition and every regular end of a flow goes through here. Where the window system's own
// tear-down cannot run beside a live main thread, exit handlers are skipped. Any thread.
[[noreturn]] void endProcess(int status);

#endif
