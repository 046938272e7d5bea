#ifndef QUORVANE_LAUNCH_RETRY_H
#define QUORVANE_LAUNCH_RETRY_H

// Retries of a launch's files that another process may hold for a moment. The installing thread.

// How often an open that failed is tried again, and the pause after each failed try, in seconds:
// a file that stays taken ends a launch after more than forty minutes.
constexpr int RETRY_COUNT = 5;
constexpr unsigned RETRY_SECONDS = 500;

// Pauses for a number of seconds; sleeps, unless a test has put something shorter in its place.
extern void (*pauseBeforeRetry)(unsigned seconds);

#endif
