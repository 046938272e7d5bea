#ifndef QUORVANE_LAUNCHER_SHELL_EVENT_LOOP_H
#define QUORVANE_LAUNCHER_SHELL_EVENT_LOOP_H

// The main thread's event loop in a process that goes on after it, while Java runs on another
// thread. Java's window toolkits post work to the main thread and wait until it is done.

// Makes what the loop needs. Call it before the thread that endEventLoop() is called on starts: two
// threads that use a class of the toolkit for the first time at once may block each other for good.
// Logs nothing. Main thread.
void prepareEventLoop();

// Serves the main thread until endEventLoop() is called. With an application object that is its
// event loop; without one, as in a run without a display, a plain run loop, in which an application
// object that Java's window toolkit creates meanwhile may run its own. Logs nothing. Main thread.
void runEventLoopUntilEnded();

// Asks the main thread to leave runEventLoopUntilEnded(), also when it has not got there yet, and
// returns without waiting. Once for each run of the loop. Any other thread.
void endEventLoop();

// After endEventLoop(): waits until the main thread has left runEventLoopUntilEnded(), for at most
// five seconds. Returns whether it has. Without an application object of ours Java's window toolkit
// makes its own, and runs that one's loop on the main thread again and again, for good. Logs
// nothing. The thread that called endEventLoop().
[[nodiscard]] bool waitForEventLoopToEnd();

#endif
