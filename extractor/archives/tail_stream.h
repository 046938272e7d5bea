#ifndef QUORVANE_EXTRACTOR_ARCHIVES_TAIL_STREAM_H
#define QUORVANE_EXTRACTOR_ARCHIVES_TAIL_STREAM_H

struct ExtractorRun;

// The Tail record as the Extractor reads it: eleven fields, followed in the same stream by the
// archives that the installer carries. Main thread.

// Opens the Tail record after the marker in the executable, or else the file "Tail" of the bundle's
// resources. If neither can be opened the process ends with status 1 after a logged line.
void openTailStream(ExtractorRun& run);

// Reads the fields. A version or name that cannot be part of a folder's name ends the process with
// status 1 after a logged line.
void readTailFields(ExtractorRun& run);

// Extracts the next archive of the Tail stream into the folder `destination`. `unpack200` is the
// path of that tool, or null. Damaged data ends the process (archive/archive.h). A rejected
// archive, or one missing because the stream ends, ends it with status 1 and a logged error line
// that names `component`; what exists of `destination` is removed first.
void requireNextArchive(ExtractorRun& run, const char* component, const char* unpack200,
                        const char* destination);

#endif
