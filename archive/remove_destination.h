#ifndef QUORVANE_ARCHIVE_REMOVE_DESTINATION_H
#define QUORVANE_ARCHIVE_REMOVE_DESTINATION_H

#include "archive/destination.h"

// Deletes the folder `destination` with everything in it, and nothing of what may have been put at
// its path since it was opened. Callers take a destination that is still there for a good one, so
// the process ends with status 1, after a logged line, when something of it stays or is at its
// path. The deletions are logged.
void removeDestination(const Destination& destination);

#endif
