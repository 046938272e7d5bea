#ifndef QUORVANE_LAUNCH_RETRY_H
#define QUORVANE_LAUNCH_RETRY_H

// Retries for files of a launch that another process may hold briefly. The installing thread.

// How often a failed open is retried, and the pause after each failure, in seconds: a file that
// stays locked ends a launch after more than forty minutes.
constexpr int RETRY_COUNT = 5;
constexpr unsigned RETRY_SECONDS = 500;

// Pauses for a number of seconds; sleeps, unless a test has set a shorter pause.
extern void (*pauseBeforeRetry)(unsigned seconds);

#endif
