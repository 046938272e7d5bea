#ifndef QUORVANE_PLATFORM_WINDOW_SYSTEM_H
#define QUORVANE_PLATFORM_WINDOW_SYSTEM_H

// Makes windows possible in this process: creates the shared application object unless there is
// one, which does not take the command line's words for files to open. Returns false where no
// window system can be reached; nothing is left half made then, and nothing is logged. Main thread.
[[nodiscard]] bool openWindowSystem();

// Returns whether handlers for Apple events may be registered before the application finishes
// launching. AppKit installs its own while it does, in the place of earlier ones, so that on macOS
// the time for ours is applicationWillFinishLaunching:. Any thread.
[[nodiscard]] bool keepsEarlyEventHandlers();

#endif
