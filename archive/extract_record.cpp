#include "archive/archive.h"
#include "archive/conversions.h"
#include "archive/destination.h"
#include "archive/entry.h"
#include "archive/entry_data.h"
#include "launcher/field_reader.h"
#include "platform/process_end.h"
#include "support/exit_status.h"
#include "support/logging.h"

static const int kNextRecord = 0;
static const int kEndOfArchive = -1;
static const long kNoSignatureYet = -1;

// A record that cannot be read looks like one that ends early, or like the end of the archive.
static void requireReadable(FILE* stream) {
  if (ferror(stream) != 0) {
    logMessage(
        "\t[ExtractArchiveFile] *************************** Unable to read the archive's "
        "records\n");
    endProcess(EXIT_STATUS_FAILURE);
  }
}

int extractArchiveFileCheckSignature(const char* lzmaExe, const char* unpack200Exe,
                                     const char* destDir, FILE* stream, long* signedLength,
                                     char** signatureHex, Rsa_key* key) {
  if (*signedLength != kNoSignatureYet) {
    return kEndOfArchive;
  }
  Entry entry;
  const bool isThere = readEntryHead(stream, destDir, &entry);
  requireReadable(stream);
  if (!isThere) {
    return kEndOfArchive;
  }
  const Descriptor folder = openEntryFolder(destDir, entry.path.get());
  if (entry.type == FOLDER_ENTRY) {
    createFolder(folder, entry.path.get(), entry.target);
    logMessage("\t[ExtractArchiveFile] Created folder %s\n", entry.target);
    return kNextRecord;
  }
  const long length = readInt(stream, "Archive File Length");
  requireReadable(stream);
  if (isSignatureRecord(entry.path.get())) {
    readSignatureFields(stream, signedLength, signatureHex);
    requireReadable(stream);
    return kEndOfArchive;
  }
  writeEntryData(stream, entry, length, folder);
  if (entry.type == PACK200_ENTRY) {
    unpackPack200(unpack200Exe, &entry, folder);
  }
  if (lzmaExe != nullptr) {
    decompressLzma(lzmaExe, &entry, folder);
    extractNestedArchive(unpack200Exe, entry, destDir, key);
  }
  return kNextRecord;
}

int extractArchiveFileIgnoreSignature(const char* lzmaExe, const char* unpack200Exe,
                                      const char* destDir, FILE* stream, Rsa_key* key) {
  long signedLength = kNoSignatureYet;
  return extractArchiveFileCheckSignature(lzmaExe, unpack200Exe, destDir, stream, &signedLength,
                                          nullptr, key);
}
