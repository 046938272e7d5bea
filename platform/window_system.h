#ifndef QUORVANE_PLATFORM_WINDOW_SYSTEM_H
#define QUORVANE_PLATFORM_WINDOW_SYSTEM_H

// Makes windows possible in this process: creates the shared application object unless there is
// one. Returns false where no window system can be reached; nothing is left half made then, and
// nothing is logged. Main thread.
[[nodiscard]] bool openWindowSystem();

// Lets the windows of this process react to what the window system and other threads have sent, and
// sends what has been drawn, without waiting. For a main thread that is busy and does not run its
// event loop. Main thread, after openWindowSystem().
void answerWindowSystem();

#endif
