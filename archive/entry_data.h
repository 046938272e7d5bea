#ifndef QUORVANE_ARCHIVE_ENTRY_DATA_H
#define QUORVANE_ARCHIVE_ENTRY_DATA_H

#include <cstdio>

#include "archive/entry.h"
#include "support/owned.h"

// Whether an entry's data are written, or nothing of them: the file is created all the same.
enum class EntryData { Copied, Skipped };

// Writes the next `length` bytes of `stream`, or nothing of them, as `data` says, to the entry's
// target in the open folder `folder`, sets its mode to 0755, and leaves the stream after them.
// Memory use does not depend on the length. Ends the process with status 1, after a logged line, if
// the length is impossible, the file cannot be created or written, or the stream ends early.
void writeEntryData(FILE* stream, const Entry& entry, long length, const Descriptor& folder,
                    EntryData data);

#endif
