#ifndef QUORVANE_EXTRACTOR_VERSIONS_TEMP_MARKS_H
#define QUORVANE_EXTRACTOR_VERSIONS_TEMP_MARKS_H

#include "support/owned.h"

// Marks the folders that a running installer uses: it holds a shared lock on each, which the system
// releases when the process dies, however that happens.

// Marks the folder `path` itself, under any name, as long as the result lives. A folder that cannot
// be opened is not marked.
[[nodiscard]] Descriptor markFolder(const char* path);

// As above, until releaseMarks() or the end of the process.
void markTempFolder(const char* path);
void releaseMarks();

// Returns whether no living process has marked the folder `path`; false if that cannot be
// determined.
[[nodiscard]] bool isAbandoned(const char* path);

#endif
