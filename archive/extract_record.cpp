#include "archive/archive.h"
#include "archive/conversions.h"
#include "archive/destination.h"
#include "archive/entry.h"
#include "archive/entry_data.h"
#include "archive/extraction.h"
#include "support/encoding/field_reader.h"
#include "support/failure/failure.h"
#include "support/log/logging.h"
#include "support/process/exit_status.h"

static const int kNextRecord = 0;
static const int kEndOfArchive = -1;
static const long kNoSignatureYet = -1;

[[noreturn]] static void fail(const char* message) {
  logMessage("\t[ExtractArchiveFile] *************************** %s\n", message);
  failProcess(EXIT_STATUS_FAILURE, Failure::ArchiveDamaged);
}

// A record that cannot be read looks like one that ends early, or like the end of the archive.
static void requireReadable(FILE* stream) {
  if (ferror(stream) != 0) {
    fail("Unable to read the archive's records");
  }
}

// The fields of a complete record end in a zero byte. A truncated one would otherwise pass for an
// empty file, or for a folder, with a truncated name.
static void requireWhole(FILE* stream) {
  if (feof(stream) != 0) {
    fail("The archive ends inside of a record");
  }
}

int extractRecord(const char* lzmaExe, const char* unpack200Exe, Destination* destination,
                  FILE* stream, long* signedLength, char** signatureHex, Trust trust,
                  const ReadyData* ready) {
  if (*signedLength != kNoSignatureYet) {
    return kEndOfArchive;
  }
  Entry entry;
  const bool isRecord = readEntryHead(stream, destination->path, &entry);
  requireReadable(stream);
  if (!isRecord) {
    return kEndOfArchive;
  }
  requireWhole(stream);
  const Descriptor folder = openEntryFolder(*destination, entry.path.get());
  if (entry.type == FOLDER_ENTRY) {
    if (!createFolder(destination, folder, entry.path.get(), entry.target)) {
      refuseEntry(entry.path.get(), "the folder cannot be created",
                  failureOfWriting(0, destination->path));
    }
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
  requireWhole(stream);
  if (ready != nullptr && !(ready->length == length && isLzmaEntry(entry))) {
    ready = nullptr;
  }
  writeEntryData(stream, entry, length, folder,
                 ready == nullptr ? EntryData::Copied : EntryData::Skipped);
  if (entry.type == PACK200_ENTRY) {
    unpackPack200(unpack200Exe, &entry, folder);
  }
  if (lzmaExe != nullptr) {
    decompressLzma(lzmaExe, &entry, folder, ready);
    extractNestedArchive(unpack200Exe, entry, folder, destination, trust);
  }
  return kNextRecord;
}

int extractArchiveFileCheckSignature(const char* lzmaExe, const char* unpack200Exe,
                                     const char* destDir, FILE* stream, long* signedLength,
                                     char** signatureHex, Trust trust) {
  Destination destination = openDestination(destDir);
  return extractRecord(lzmaExe, unpack200Exe, &destination, stream, signedLength, signatureHex,
                       trust);
}

int extractArchiveFileFromReadyData(const char* lzmaExe, const char* unpack200Exe,
                                    const char* destDir, FILE* stream, const ReadyData& ready,
                                    Trust trust) {
  Destination destination = openDestination(destDir);
  long signedLength = kNoSignatureYet;
  return extractRecord(lzmaExe, unpack200Exe, &destination, stream, &signedLength, nullptr, trust,
                       &ready);
}

int extractArchiveFileIgnoreSignature(const char* lzmaExe, const char* unpack200Exe,
                                      const char* destDir, FILE* stream, Trust trust) {
  long signedLength = kNoSignatureYet;
  return extractArchiveFileCheckSignature(lzmaExe, unpack200Exe, destDir, stream, &signedLength,
                                          nullptr, trust);
}
