#ifndef QUORVANE_ARCHIVE_REMOVE_DESTINATION_H
#define QUORVANE_ARCHIVE_REMOVE_DESTINATION_H

#include "archive/destination.h"

// Deletes the folder `destination` and everything in it, but nothing that has replaced it at its
// path since it was opened. Callers treat an existing destination as a good one, so the process
// ends with status 1, after a logged line, if part of it is left or anything is at its path. The
// deletions are logged.
void removeDestination(const Destination& destination);

#endif
