#ifndef QUORVANE_SUPPORT_EVENTS_QUIT_CLEANUP_H
#define QUORVANE_SUPPORT_EVENTS_QUIT_CLEANUP_H

// What must be undone if the user quits in the middle of it, because the process then ends at once.
// Logs nothing. Main thread.

// Sets the current cleanup function; null for none.
void setQuitCleanup(void (*cleanup)());

// Runs the cleanup function, if any, once.
void runQuitCleanup();

#endif
