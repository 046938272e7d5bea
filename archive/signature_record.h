#ifndef QUORVANE_ARCHIVE_SIGNATURE_RECORD_H
#define QUORVANE_ARCHIVE_SIGNATURE_RECORD_H

#include <sys/types.h>

#include <cstdio>

#include "support/owned.h"

// What an archive's signature record says, and where it is.
struct SignatureRecord {
  long signedLength = -1;   // the number of bytes that it says it covers
  Block<char> hex;          // its signature text; null when there is no record
  off_t offset = 0;         // where in the archive it begins
  bool isComplete = false;  // whether all of it could be read
};

// Returns the record that ends the archive, whose first byte `archive` is at. The entries before it
// are skipped: their fields are read as an extraction reads them, but nothing is logged, and what
// ends an extraction ends the search without a record.
[[nodiscard]] SignatureRecord findSignatureRecord(FILE* archive);

#endif
