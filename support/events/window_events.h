#ifndef QUORVANE_SUPPORT_EVENTS_WINDOW_EVENTS_H
#define QUORVANE_SUPPORT_EVENTS_WINDOW_EVENTS_H

// Handles the events that the window system and other threads have sent, and those that arrive
// within `seconds`, and flushes what has been drawn. For a main thread that does not run its event
// loop. Logs nothing. Main thread, once the application object exists.
void handleEvents(double seconds);

// Handles the events that have arrived. A call less than 0.03 s after the previous one costs only a
// clock reading. For setKeepAlive(). Does nothing without an application object, and on other
// threads than the main thread. Logs nothing.
void answerEvents();

// Posts an event that nothing handles: it wakes a wait for events. It goes before or after the
// waiting events. Logs nothing. Main thread, once the application object exists.
void postEmptyEvent(bool atStart);

#endif
