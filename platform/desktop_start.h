#ifndef QUORVANE_PLATFORM_DESKTOP_START_H
#define QUORVANE_PLATFORM_DESKTOP_START_H

// Returns whether the process seems to have been started by the desktop, for example by a
// double-click. On macOS: its parent is launchd and its standard error is not a terminal. On Linux:
// DESKTOP_STARTUP_ID is set and not empty. Logs nothing. Any thread, as long as none changes the
// environment.
[[nodiscard]] bool looksStartedByDesktop();

#endif
