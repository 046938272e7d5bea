#ifndef QUORVANE_ARCHIVE_ARCHIVE_H
#define QUORVANE_ARCHIVE_ARCHIVE_H

#include <cstdio>

#include "archive/ready_data.h"
#include "archive/trust.h"

// Extraction of archives: a flat sequence of entry records, each a file or a folder, closed by a
// signature record where the archive is signed. Where a signature is required it is verified before
// anything is written; elsewhere files are written before the signature is known. An archive whose
// signature is wrong costs the whole destination folder, so a destination is trusted only after the
// call and only while it is still there. An archive that cannot be read, an entry that cannot be
// written, or one whose path leads out of the destination ends the process with status 1, after a
// logged line; so does one whose destination is a symbolic link, and one that was not decompressed;
// a pack200 entry that was not unpacked ends it with status 101. The installing thread only.

// Set once a pack200 entry has been met.
extern bool pack200EntryMet;

// Extracts the archive `archivePath` into the existing folder `destDir`, verifies its signature
// as `trust` says, and deletes the archive. Nested archives and LZMA entries inside stay as they
// are. `unpack200Exe` is the tool for pack200 entries, null when there is none. Without a key a
// signed archive aborts the process. Always returns 0: after a wrong signature `destDir` is gone,
// which the caller must look for.
int extractArchive(const char* unpack200Exe, const char* archivePath, const char* destDir,
                   Trust trust);

// Reads one record at the position of `stream` and writes its entry below `destDir`. With an
// `lzmaExe` an entry whose name ends in ".l2" is decompressed, and one that then ends in ".p2" is
// extracted as a nested archive into the same folder; null leaves both as they are.
// `*signedLength`, -1 at the start of an archive, receives the number of bytes that the signature
// covers if the record is a signature record; `*signatureHex` then receives the signature's text, a
// new block owned by the caller (a null `signatureHex` drops it). Returns 0 if the next record may
// be read, and -1 at the end: no further record, a signature record, or `*signedLength` not -1 on
// entry.
int extractArchiveFileCheckSignature(const char* lzmaExe, const char* unpack200Exe,
                                     const char* destDir, FILE* stream, long* signedLength,
                                     char** signatureHex, Trust trust);

// Reads one record as extractArchiveFileCheckSignature() does, and logs the same lines. If it is an
// LZMA entry of the length that `ready` names, its data are not copied and decompressed: the file
// `ready.data` takes their place. A signature record's text is discarded.
int extractArchiveFileFromReadyData(const char* lzmaExe, const char* unpack200Exe,
                                    const char* destDir, FILE* stream, const ReadyData& ready,
                                    Trust trust);

// Reads one record as extractArchiveFileCheckSignature() does and discards the content of a
// signature record.
int extractArchiveFileIgnoreSignature(const char* lzmaExe, const char* unpack200Exe,
                                      const char* destDir, FILE* stream, Trust trust);

#endif
