#ifndef QUORVANE_EXTRACTOR_VERSIONS_COPIED_FOLDER_H
#define QUORVANE_EXTRACTOR_VERSIONS_COPIED_FOLDER_H

// Completes the copy `target` of the folder `source` that a failed rename left behind: checks that
// every entry of the source exists with the same size, and gives it the source's mode, which
// copying does not. Returns false at the first entry that differs. Logs nothing. Main thread.
[[nodiscard]] bool completeCopy(const char* source, const char* target);

#endif
