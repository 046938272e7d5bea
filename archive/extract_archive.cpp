#include <cstdio>

#include "archive/archive.h"
#include "archive/extraction.h"
#include "archive/own_tool.h"
#include "archive/remove_destination.h"
#include "archive/signature_check.h"
#include "support/log/logging.h"

bool requireSignature = false;

static const size_t kReadAhead = 64 * 1024;

// Extracts every record, and returns what the signature record said if there was one.
static MetSignature extractRecords(const char* unpack200Exe, const char* archivePath,
                                   Destination* destination, Rsa_key* key) {
  logMessage("[ExtractArchive] Extracting archive %s into %s\n", archivePath, destination->path);
  const Stream archive = openArchive(archivePath);
  setvbuf(archive.get(), nullptr, _IOFBF, kReadAhead);
  MetSignature met;
  noteFile(archive.get(), &met);
  char* hex = nullptr;
  do {
    met.offset = ftello(archive.get());
  } while (extractRecord(nullptr, unpack200Exe, destination, archive.get(), &met.signedLength, &hex,
                         key) == 0);
  met.hex.reset(hex);
  met.isComplete = feof(archive.get()) == 0;
  logMessage("[ExtractArchive] Done extracting archive.\n");
  return met;
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

static bool isAcceptable(const char* archivePath, const MetSignature& met, Rsa_key* key) {
  if (met.hex == nullptr) {
    return !requireSignature;
  }
  if (!isSignatureRight(archivePath, met, key)) {
    return false;
  }
  logMessage("[ExtractArchive] Archive signature verified.\n");
  return true;
}

static bool extractAcceptable(const char* unpack200Exe, const char* archivePath,
                              Destination* destination, Rsa_key* key) {
  if (!mayRunTool(unpack200Exe, archivePath, destination->path, key)) {
    return false;
  }
  const MetSignature met = extractRecords(unpack200Exe, archivePath, destination, key);
  return isAcceptable(archivePath, met, key);
}

void extractAndVerify(const char* unpack200Exe, const char* archivePath, Destination* destination,
                      Rsa_key* key) {
  if (!extractAcceptable(unpack200Exe, archivePath, destination, key)) {
    disregardUpdate(*destination);
  }
}

int extractArchive(const char* unpack200Exe, const char* archivePath, const char* destDir,
                   Rsa_key* key) {
  Destination destination = openDestination(destDir);
  extractAndVerify(unpack200Exe, archivePath, &destination, key);
  remove(archivePath);
  return 0;
}
