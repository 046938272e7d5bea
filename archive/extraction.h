#ifndef QUORVANE_ARCHIVE_EXTRACTION_H
#define QUORVANE_ARCHIVE_EXTRACTION_H

#include <cstdio>

#include "archive/destination.h"
#include "crypto/signature.h"

// The routines of archive/archive.h, for a destination that is open already.

// As extractArchiveFileCheckSignature().
int extractRecord(const char* lzmaExe, const char* unpack200Exe, Destination* destination,
                  FILE* stream, long* signedLength, char** signatureHex, Rsa_key* key);

// As extractArchive(), but the archive stays.
void extractAndVerify(const char* unpack200Exe, const char* archivePath, Destination* destination,
                      Rsa_key* key);

#endif
