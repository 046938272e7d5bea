#ifndef QUORVANE_SUPPORT_WINDOW_EVENTS_H
#define QUORVANE_SUPPORT_WINDOW_EVENTS_H

// Lets the application react to the events that the window system and other threads have sent, and
// to those that arrive within `seconds`, and sends what has been drawn. For a main thread that does
// not run its event loop. Logs nothing. Main thread, once the application object exists.
void handleEvents(double seconds);

#endif
