#ifndef QUORVANE_LAUNCHER_SHELL_EVENT_LOOP_H
#define QUORVANE_LAUNCHER_SHELL_EVENT_LOOP_H

// The main thread's event loop, in a process that continues after it, while Java runs on another
// thread. Java's window toolkits post work to the main thread and wait for it.

// Creates what the loop needs. Call it before starting the thread that calls endEventLoop(): two
// threads that use a class of the toolkit for the first time at once may deadlock. Logs nothing.
// Main thread.
void prepareEventLoop();

// Runs the main thread's events until endEventLoop() is called. With an application object this is
// its event loop; without one, as in a run without a display, a plain run loop, in which an
// application object that Java's window toolkit creates meanwhile may run its own. Logs nothing.
// Main thread.
void runEventLoopUntilEnded();

// Asks the main thread to leave runEventLoopUntilEnded(), even before it has entered it, and
// returns without waiting. Once for each run of the loop. Any other thread.
void endEventLoop();

// After endEventLoop(): waits until the main thread has left runEventLoopUntilEnded(), for at most
// five seconds. Returns whether it has. Without our own application object Java's window toolkit
// makes one and keeps rerunning its loop on the main thread forever. Logs nothing. The thread that
// called endEventLoop().
[[nodiscard]] bool waitForEventLoopToEnd();

#endif
