#ifndef QUORVANE_ARCHIVE_OWN_TOOL_H
#define QUORVANE_ARCHIVE_OWN_TOOL_H

#include "crypto/signature.h"

// A runtime's archive brings the unpack200 that unpacks the archive's own packed entries: a program
// that would run before the archive's signature is known.

// Returns whether extracting `archivePath` into `destDir` may run `unpack200Exe`, null for none.
// Where requireSignature is set and the tool comes from the archive itself, that takes a signature
// that is right, which is looked at before anything is extracted; its steps are logged as those of
// isSignatureRight(). Ends the process with status 1, after a logged line, when the archive cannot
// be opened. Main thread.
[[nodiscard]] bool mayRunTool(const char* unpack200Exe, const char* archivePath,
                              const char* destDir, Rsa_key* key);

#endif
