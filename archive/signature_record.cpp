#include "archive/signature_record.h"

#include <cstdlib>
#include <cstring>

#include "archive/entry.h"
#include "support/encoding/field_reader.h"

// Skips the next entry, or reads the signature record. Returns whether another record may follow.
static bool passRecord(FILE* archive, SignatureRecord* found) {
  found->offset = ftello(archive);
  const Block<char> type(readStringSilently(archive, DEFAULT_FIELD_LIMIT));
  if (type.get()[0] == 0) {
    return false;
  }
  const Block<char> path(readStringSilently(archive, DEFAULT_FIELD_LIMIT));
  toNativePath(path.get());
  if (atol(type.get()) == FOLDER_ENTRY) {
    return true;
  }
  const Block<char> length(readStringSilently(archive, NUMBER_FIELD_LIMIT));
  if (strcmp(path.get(), SIGNATURE_RECORD_PATH) == 0) {
    char* hex = nullptr;
    readSignatureFields(archive, &found->signedLength, &hex);
    found->hex.reset(hex);
    return false;
  }
  const long size = atol(length.get());
  return size >= 0 && fseeko(archive, size, SEEK_CUR) == 0;
}

SignatureRecord findSignatureRecord(FILE* archive) {
  SignatureRecord found;
  while (passRecord(archive, &found)) {
  }
  found.isComplete = feof(archive) == 0 && ferror(archive) == 0;
  return found;
}
