#ifndef QUORVANE_SUPPORT_EVENTS_QUIT_CLEANUP_H
#define QUORVANE_SUPPORT_EVENTS_QUIT_CLEANUP_H

// What has to be undone when the user quits in the middle of it, because the process then ends at
// once. Nothing is logged. Main thread.

// Sets what that is for now; null for nothing.
void setQuitCleanup(void (*cleanup)());

// Undoes it, if there is something, once.
void runQuitCleanup();

#endif
