#ifndef QUORVANE_ARCHIVE_EXTRACTION_H
#define QUORVANE_ARCHIVE_EXTRACTION_H

#include <cstdio>

#include "archive/destination.h"
#include "archive/ready_data.h"
#include "archive/trust.h"

// The functions of archive/archive.h, for a destination that is already open.

// As extractArchiveFileCheckSignature(), or extractArchiveFileFromReadyData() unless `ready` is
// null.
int extractRecord(const char* lzmaExe, const char* unpack200Exe, Destination* destination,
                  FILE* stream, long* signedLength, char** signatureHex, Trust trust,
                  const ReadyData* ready = nullptr);

// As extractArchive(), but does not delete the archive.
void extractAndVerify(const char* unpack200Exe, const char* archivePath, Destination* destination,
                      Trust trust);

#endif
