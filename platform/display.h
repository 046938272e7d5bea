#ifndef QUORVANE_PLATFORM_DISPLAY_H
#define QUORVANE_PLATFORM_DISPLAY_H

// Returns whether a window system can be reached, without starting the toolkit. On macOS the
// security session says whether it has graphic access, which one started by launchd or over ssh
// does not; elsewhere the environment names a display, and one of this
// machine has its socket. Logs nothing. Any thread.
[[nodiscard]] bool isDisplayAvailable();

// Returns whether an installer that would show windows must end if no window system is available:
// on macOS it must, elsewhere it goes on without a splash window. Any thread.
[[nodiscard]] bool isDisplayRequired();

// Returns the line, including its newline, that says that no window system is available. The text
// is a constant. Any thread.
const char* missingDisplayMessage();

#endif
