#ifndef QUORVANE_SUPPORT_EVENTS_KEEP_ALIVE_H
#define QUORVANE_SUPPORT_EVENTS_KEEP_ALIVE_H

// Lets long work on the main thread, which runs no event loop meanwhile, keep what is on the screen
// alive without knowing what that is. With windows that is from the application's creation on: its
// events (support/events/window_events.h), and the splash while it is shown. Main thread.

// Sets the function that keepAlive() calls, or none with null. It returns soon.
void setKeepAlive(void (*function)());

// Calls the function that is set. Long work does so every few milliseconds; it costs next to
// nothing where none is set.
void keepAlive();

// Returns whether a function is set, so that waiting has to be done in short pieces.
[[nodiscard]] bool hasKeepAlive();

#endif
