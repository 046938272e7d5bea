#ifndef QUORVANE_EXTRACTOR_ARCHIVES_COMPONENT_ARCHIVE_H
#define QUORVANE_EXTRACTOR_ARCHIVES_COMPONENT_ARCHIVE_H

#include "support/owned.h"

struct ExtractorRun;

// An archive of an update site: one component in one version, compressed, signed, and with a record
// inside the signed bytes that gives its component and version. Without that record an attacker
// between site and user could offer an old version, or another program of the same maker, under a
// new number. Main thread.

// Removes that record (COMPONENT_RECORD_PATH) from the folder `folder`, into which such an archive
// was extracted: it is not part of the component. Logs nothing.
void removeComponentRecord(const char* folder);

// Opens the regular file `path` without following a link and without waiting for a pipe's other
// end. Not open, with a logged line, if it is not a regular file or cannot be opened.
[[nodiscard]] Descriptor openComponentArchive(const char* path);

// Copies the archive into the new folder `work`, decompresses it there with run.lzmaPath, extracts
// it into the empty folder `destination` and verifies it as run.trust says; `unpack200` is that
// tool, or null. `work` is empty afterwards but for the tool. Ends the process with a logged line
// when the archive is damaged or not signed, cannot be written, or is not that of `component` in
// `version`.
void extractComponent(const ExtractorRun& run, const Descriptor& archive, const char* work,
                      const char* unpack200, const char* destination, const char* component,
                      const char* version);

#endif
