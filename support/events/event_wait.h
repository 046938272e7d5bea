#ifndef QUORVANE_SUPPORT_EVENTS_EVENT_WAIT_H
#define QUORVANE_SUPPORT_EVENTS_EVENT_WAIT_H

// Waiting on a run loop for something that ends in one of its callbacks, such as a transfer,
// without leaving the application's events unanswered. Logs nothing.

// Runs the current thread's run loop in the default mode for up to `seconds`. On the main thread of
// an application it takes the next event from the queue meanwhile, lets the application react to
// it, and keeps the splash alive. Returns early after an event or after endEventWait(), elsewhere
// whenever the run loop has handled something. Any thread.
void waitForEvent(double seconds);

// Makes a waitForEvent() that this was called out of return. The thread that waits.
void endEventWait();

#endif
