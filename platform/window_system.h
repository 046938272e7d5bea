#ifndef QUORVANE_PLATFORM_WINDOW_SYSTEM_H
#define QUORVANE_PLATFORM_WINDOW_SYSTEM_H

// Makes windows possible in this process: creates the shared application object unless there is
// one. Returns false where no window system can be reached; nothing is left half made then, and
// nothing is logged. Main thread.
[[nodiscard]] bool openWindowSystem();

#endif
