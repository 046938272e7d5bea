#ifndef QUORVANE_PLATFORM_DISPLAY_H
#define QUORVANE_PLATFORM_DISPLAY_H

// Returns whether a window system can be reached, without starting the toolkit. Always true on
// macOS; elsewhere the display named by the environment is tried. Logs nothing. Any thread.
[[nodiscard]] bool isDisplayAvailable();

#endif
