#ifndef QUORVANE_SUPPORT_EVENTS_EVENT_WAIT_H
#define QUORVANE_SUPPORT_EVENTS_EVENT_WAIT_H

// Waits on a run loop for something that ends in one of its callbacks, such as a transfer, while
// still handling the application's events. Logs nothing.

// Runs the current thread's run loop in the default mode for up to `seconds`. On the main thread of
// an application it also takes the next event from the queue, dispatches it, and keeps the splash
// alive. Returns early after an event or after endEventWait(); on other threads whenever the run
// loop has handled something. Any thread.
void waitForEvent(double seconds);

// Makes the waitForEvent() that called this function return. The waiting thread.
void endEventWait();

#endif
