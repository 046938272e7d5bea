#ifndef QUORVANE_SUPPORT_EVENTS_KEEP_ALIVE_H
#define QUORVANE_SUPPORT_EVENTS_KEEP_ALIVE_H

// Lets long work on the main thread, which runs no event loop meanwhile, keep the screen alive
// without knowing what is on screen: with windows, the application's events
// (support/events/window_events.h) from its creation on, and the splash while it is shown. Main
// thread.

// Sets the function that keepAlive() calls; null for none. The function must return quickly.
void setKeepAlive(void (*function)());

// Calls that function, if any. Long work calls this every few milliseconds; without a function it
// costs almost nothing.
void keepAlive();

// Returns whether a function is set, so that a wait must be done in short pieces.
[[nodiscard]] bool hasKeepAlive();

#endif
