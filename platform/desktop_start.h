#ifndef QUORVANE_PLATFORM_DESKTOP_START_H
#define QUORVANE_PLATFORM_DESKTOP_START_H

// Returns whether the process looks like one that the desktop has started, by a double-click for
// example. On macOS: its parent is launchd and its standard error is no terminal. On Linux:
// DESKTOP_STARTUP_ID is set, and not empty. Logs nothing. Any thread, as long as none changes the
// environment.
[[nodiscard]] bool looksStartedByDesktop();

#endif
