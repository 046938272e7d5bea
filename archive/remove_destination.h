#ifndef QUORVANE_ARCHIVE_REMOVE_DESTINATION_H
#define QUORVANE_ARCHIVE_REMOVE_DESTINATION_H

// Deletes the folder `destDir` with everything in it. Callers take a destination that is still
// there for a good one, so the process ends with status 1, after a logged line, when something of
// it stays. The deletions are logged.
void removeDestination(const char* destDir);

#endif
