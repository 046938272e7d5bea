#ifndef QUORVANE_SUPPORT_EVENTS_WINDOW_EVENTS_H
#define QUORVANE_SUPPORT_EVENTS_WINDOW_EVENTS_H

// Lets the application react to the events that the window system and other threads have sent, and
// to those that arrive within `seconds`, and sends what has been drawn. For a main thread that does
// not run its event loop. Logs nothing. Main thread, once the application object exists.
void handleEvents(double seconds);

// Lets the application react to the events that have arrived. A call that follows another by less
// than 0.03 s costs no more than reading a clock. For setKeepAlive(). Does nothing without an
// application object, and on other threads than the main thread. Logs nothing.
void answerEvents();

// Posts an event that nobody listens to: it wakes a wait for events. In front of the events that
// wait, or behind them. Logs nothing. Main thread, once the application object exists.
void postEmptyEvent(bool atStart);

#endif
