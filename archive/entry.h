#ifndef QUORVANE_ARCHIVE_ENTRY_H
#define QUORVANE_ARCHIVE_ENTRY_H

#include <cstdio>

#include "support/failure/failure.h"
#include "support/files/paths.h"
#include "support/owned.h"

// Reads an entry record's fields. All fields are in the encoding of
// support/encoding/field_reader.h:
//
//   archive   = entry* [signature]
//   entry     = "1" path | type path length data        type: "2" for pack200, else a plain file
//   signature = type "qvArcSpBlock_DigitalSignature1" length signedLength hex

constexpr long FOLDER_ENTRY = 1;
constexpr long PACK200_ENTRY = 2;

// The path of the signature record of an archive.
constexpr char SIGNATURE_RECORD_PATH[] = "qvArcSpBlock_DigitalSignature1";

// The read limit of its hexadecimal digits, in bytes, where they are verified.
constexpr int SIGNATURE_HEX_LIMIT = 4096;

// An entry and its destination. Both paths are below the destination folder; the data are written
// to `target`, which ends in ".p2" for a pack200 entry; `plain` never has that suffix.
struct Entry {
  long type = 0;
  Block<char> path;
  char target[PATH_BUFFER_SIZE] = "";
  char plain[PATH_BUFFER_SIZE] = "";
};

// Reads the type and the path of the next record, logs them, and composes the entry's two paths
// below `destDir`. Returns false at the end of the archive. Ends the process with status 1 if the
// path must not be written to.
[[nodiscard]] bool readEntryHead(FILE* stream, const char* destDir, Entry* entry);

// If `path` names a special block, logs that. Returns whether it is the signature record.
[[nodiscard]] bool isSignatureRecord(const char* path);

// Reads the fields after the length of a signature record: the number of bytes it covers, and its
// text as hexadecimal digits, a new block that the caller frees; discarded if `signatureHex` is
// null.
void readSignatureFields(FILE* stream, long* signedLength, char** signatureHex);

// Logs why the entry `path` is not extracted and ends the process with status 1.
[[noreturn]] void refuseEntry(const char* path, const char* reason,
                              Failure failure = Failure::ArchiveDamaged);

#endif
