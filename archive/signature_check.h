#ifndef QUORVANE_ARCHIVE_SIGNATURE_CHECK_H
#define QUORVANE_ARCHIVE_SIGNATURE_CHECK_H

#include <sys/types.h>

#include <cstdio>

#include "crypto/signature.h"
#include "support/owned.h"

// The signature record as the extraction met it.
struct MetSignature {
  long signedLength = -1;   // the number of bytes that it says it covers
  Block<char> hex;          // its signature text; null when no record was met
  off_t offset = 0;         // where in the archive the record began
  bool isComplete = false;  // whether it was there to its last byte
  dev_t device = 0;         // the file that was read
  ino_t file = 0;
};

// Notes which file `archive` is.
void noteFile(FILE* archive, MetSignature* met);

// Opens `archivePath` again, logs every place in which the record there differs from `met`, hashes
// the signed bytes and returns whether the signature is theirs. A record that does not begin where
// its signed bytes end, one that is cut short, and an archive that is no longer the same file are
// never right. How a record is spelled does not matter: its type, the length that nothing uses and
// the case of its digits are the writer's own affair. Ends the process with status 1, after a
// logged line, when the archive cannot be opened.
[[nodiscard]] bool isSignatureRight(const char* archivePath, const MetSignature& met, Rsa_key* key);

// Opens an archive for reading; ends the process with status 1, after a logged line, on failure.
[[nodiscard]] Stream openArchive(const char* archivePath);

#endif
