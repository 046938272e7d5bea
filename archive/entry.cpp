#include "archive/entry.h"

#include <climits>
#include <cstdlib>
#include <cstring>

#include "archive/entry_path.h"
#include "support/encoding/field_reader.h"
#include "support/failure/failure.h"
#include "support/log/logging.h"
#include "support/process/exit_status.h"

static const char kSpecialBlockPrefix[] = "qvArcSpBlock_";
static const char kSignatureBlock[] = "DigitalSignature1";
static const int kFirstPassHexLimit = 8192;

void refuseEntry(const char* path, const char* reason, Failure failure) {
  logMessage("\t[ExtractArchiveFile] *************************** Refused archive file %s (%s)\n",
             path, reason);
  failProcess(EXIT_STATUS_FAILURE, failure);
}

static void formTargets(const char* destDir, Entry* entry) {
  setPath(entry->plain, destDir, entry->path.get());
  setPath(entry->target, entry->plain);
  const bool fits = strcmp(entry->plain, UNUSABLE_PATH) != 0;
  if (fits && entry->type == PACK200_ENTRY) {
    appendToPath(entry->target, ".p2");
  }
  if (strcmp(entry->target, UNUSABLE_PATH) == 0 || strlen(entry->target) >= PATH_MAX) {
    refuseEntry(entry->path.get(), "path is too long");
  }
}

bool readEntryHead(FILE* stream, const char* destDir, Entry* entry) {
  const Block<char> type(readString(stream, "Archive File Type"));
  if (type.get()[0] == 0) {
    return false;
  }
  entry->type = atol(type.get());
  entry->path.reset(readString(stream, "Archive File Path", DEFAULT_FIELD_LIMIT));
  toNativePath(entry->path.get());
  logMessage("[ExtractArchiveFile] Extracting %s (::%ld)\n", entry->path.get(), entry->type);
  if (const char* fault = entryPathError(entry->path.get())) {
    refuseEntry(entry->path.get(), fault);
  }
  formTargets(destDir, entry);
  return true;
}

bool isSignatureRecord(const char* path) {
  const size_t prefixLength = strlen(kSpecialBlockPrefix);
  if (strncmp(path, kSpecialBlockPrefix, prefixLength) != 0) {
    return false;
  }
  logMessage("[ExtractArchiveFile] Found special block %s\n", path);
  const char* name = path + prefixLength;
  if (strcmp(name, kSignatureBlock) != 0) {
    return false;
  }
  logMessage("[ExtractArchiveFile] Found signature block %s\n", name);
  return true;
}

void readSignatureFields(FILE* stream, long* signedLength, char** signatureHex) {
  *signedLength = readInt(stream, "Signature Length");
  Block<char> hex(readString(stream, "Signature Hex", kFirstPassHexLimit));
  if (signatureHex != nullptr) {
    *signatureHex = hex.release();
  }
}
