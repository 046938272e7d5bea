#ifndef QUORVANE_EXTRACTOR_VERSIONS_TEMP_MARKS_H
#define QUORVANE_EXTRACTOR_VERSIONS_TEMP_MARKS_H

#include "support/owned.h"

// Which folders a running installer is using: it holds a shared lock on each, which the
// system releases when the process dies, however that happens. Main thread.

// Marks the folder `path` itself as long as the result lives, whatever it is renamed to. Where it
// cannot be opened it is not marked.
[[nodiscard]] Descriptor markFolder(const char* path);

// As above, until releaseMarks() or the end of the process.
void markTempFolder(const char* path);
void releaseMarks();

// Returns whether no living process has marked the folder `path`; false where that cannot be told.
[[nodiscard]] bool isAbandoned(const char* path);

#endif
