#include "archive/archive.h"
#include "archive/conversions.h"
#include "archive/destination.h"
#include "archive/entry.h"
#include "archive/entry_data.h"
#include "launcher/field_reader.h"
#include "support/logging.h"

static const int kNextRecord = 0;
static const int kEndOfArchive = -1;
static const long kNoSignatureYet = -1;

int extractArchiveFileCheckSignature(const char* lzmaExe, const char* unpack200Exe,
                                     const char* destDir, FILE* stream, long* signedLength,
                                     char** signatureHex, Rsa_key* key) {
  if (*signedLength != kNoSignatureYet) {
    return kEndOfArchive;
  }
  Entry entry;
  if (!readEntryHead(stream, destDir, &entry)) {
    return kEndOfArchive;
  }
  const Descriptor folder = openEntryFolder(destDir, entry.path.get());
  if (entry.type == FOLDER_ENTRY) {
    createFolder(folder, entry.path.get(), entry.target);
    logMessage("\t[ExtractArchiveFile] Created folder %s\n", entry.target);
    return kNextRecord;
  }
  const long length = readInt(stream, "Archive File Length");
  if (isSignatureRecord(entry.path.get())) {
    readSignatureFields(stream, signedLength, signatureHex);
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
