#ifndef QUORVANE_PLATFORM_WINDOW_SYSTEM_H
#define QUORVANE_PLATFORM_WINDOW_SYSTEM_H

// Makes windows possible in this process: creates the shared application object if there is none,
// without letting it take command-line arguments for files to open. Returns false if no window
// system is available, without leaving anything half made. Logs nothing. Main thread.
[[nodiscard]] bool openWindowSystem();

// Returns whether handlers for Apple events may be registered before the application finishes
// launching. AppKit installs its own while it does, replacing earlier ones, so that on macOS ours
// are registered in applicationWillFinishLaunching:. Any thread.
[[nodiscard]] bool keepsEarlyEventHandlers();

#endif
