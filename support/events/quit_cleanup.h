#ifndef QUORVANE_SUPPORT_EVENTS_QUIT_CLEANUP_H
#define QUORVANE_SUPPORT_EVENTS_QUIT_CLEANUP_H

// What must be undone if the user quits in the middle of it, because the process then ends at once.
// Logs nothing. Main thread.

// Adds a cleanup function, unless it is there already; at most four. Takes it back.
void addQuitCleanup(void (*cleanup)());
void removeQuitCleanup(void (*cleanup)());

// Runs each cleanup function once.
void runQuitCleanup();

#endif
