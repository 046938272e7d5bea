#include <cstdio>

#include "archive/archive.h"
#include "archive/extraction.h"
#include "archive/remove_destination.h"
#include "archive/signature_check.h"
#include "archive/signature_record.h"
#include "support/failure/failure.h"
#include "support/log/logging.h"
#include "support/owned.h"
#include "support/process/exit_status.h"

static const size_t kReadAhead = 64 * 1024;

static Stream openArchive(const char* archivePath) {
  Stream archive(fopen(archivePath, "rb"));
  if (archive == nullptr) {
    logMessage("[ExtractArchive] Failed to extract archive - couldn't open file %s\n", archivePath);
    failProcess(EXIT_STATUS_FAILURE, Failure::ArchiveDamaged);
  }
  setvbuf(archive.get(), nullptr, _IOFBF, kReadAhead);
  return archive;
}

// Extracts every record, and returns what the signature record said if there was one.
static SignatureRecord extractRecords(const char* unpack200Exe, FILE* archive,
                                      Destination* destination, Trust trust) {
  SignatureRecord record;
  char* hex = nullptr;
  do {
    record.offset = ftello(archive);
  } while (extractRecord(nullptr, unpack200Exe, destination, archive, &record.signedLength, &hex,
                         trust) == 0);
  record.hex.reset(hex);
  record.isComplete = feof(archive) == 0;
  logMessage("[ExtractArchive] Done extracting archive.\n");
  return record;
}

static void disregardUpdate(const Destination& destination) {
  const char rule[] = "***********************************************************************\n";
  static_assert(sizeof rule == 71 + sizeof "\n", "the rule has 71 asterisks");
  logMessage("%s", rule);
  logMessage("[ExtractArchive] ERROR - unable to verify signature of hash of archive.\n");
  logMessage("[ExtractArchive] Quorvane will disregard this update.\n");
  removeDestination(destination);
  logMessage("%s", rule);
}

static bool isVerified(FILE* archive, const SignatureRecord& record, Rsa_key* key) {
  if (record.hex == nullptr || !isSignatureRight(archive, record, key)) {
    return false;
  }
  logMessage("[ExtractArchive] Archive signature verified.\n");
  return true;
}

// What is extracted is what was verified: the stream stays on the same file, whatever takes its
// name, and no entry is ever written into a file that exists. One that was cut meanwhile no longer
// has its record in its place.
static bool verifyThenExtract(const char* unpack200Exe, FILE* archive, Destination* destination,
                              Trust trust) {
  const SignatureRecord verified = findSignatureRecord(archive);
  if (!isVerified(archive, verified, trust.key) || fseeko(archive, 0, SEEK_SET) != 0) {
    return false;
  }
  const SignatureRecord met = extractRecords(unpack200Exe, archive, destination, trust);
  return met.hex != nullptr && met.offset == verified.offset;
}

static bool extractThenVerify(const char* unpack200Exe, FILE* archive, Destination* destination,
                              Trust trust) {
  const SignatureRecord record = extractRecords(unpack200Exe, archive, destination, trust);
  return record.hex == nullptr || isVerified(archive, record, trust.key);
}

void extractAndVerify(const char* unpack200Exe, const char* archivePath, Destination* destination,
                      Trust trust) {
  logMessage("[ExtractArchive] Extracting archive %s into %s\n", archivePath, destination->path);
  const Stream archive = openArchive(archivePath);
  const auto extract = trust.isRequired ? verifyThenExtract : extractThenVerify;
  if (!extract(unpack200Exe, archive.get(), destination, trust)) {
    disregardUpdate(*destination);
  }
}

int extractArchive(const char* unpack200Exe, const char* archivePath, const char* destDir,
                   Trust trust) {
  Destination destination = openDestination(destDir);
  extractAndVerify(unpack200Exe, archivePath, &destination, trust);
  remove(archivePath);
  return 0;
}
