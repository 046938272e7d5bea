#include "archive/signature_check.h"

#include <cstdlib>
#include <cstring>

#include "archive/entry.h"
#include "crypto/hash_file.h"
#include "crypto/mixed_hash.h"
#include "support/encoding/field_reader.h"
#include "support/encoding/hex.h"
#include "support/events/keep_alive.h"
#include "support/log/logging.h"
#include "support/text/strings.h"

static const int kLoggedDigestBytes = 32;

static void logMismatch(const char* what) {
  logMessage(
      "[ExtractArchive] Archive INVALID.  Archive signature did not match place in file (%s "
      "mismatch)\n",
      what);
}

// Reads the record at the offset that it names and logs where it differs from `record`. These
// lines decide nothing.
static void compareRecord(FILE* archive, const SignatureRecord& record) {
  free(readString(archive, "Signature Check File Type"));
  const Block<char> name(readString(archive, "Signature Check ASB name"));
  if (strcmp(name.get(), SIGNATURE_RECORD_PATH) != 0) {
    logMismatch("asb name");
  }
  readInt(archive, "ASB Length");
  if (readInt(archive, "Signature Length") != record.signedLength) {
    logMismatch("len");
  }
  const Block<char> hex(readString(archive, "Signature Hex", SIGNATURE_HEX_LIMIT));
  if (strcmp(hex.get(), record.hex.get()) != 0) {
    logMismatch("sig");
  }
}

static void rewindToData(FILE* archive) {
  logMessage("[ExtractArchive] Seeking to start of data...\n");
  fflush(archive);
  if (fseek(archive, 0, SEEK_SET) == 0) {
    logMessage("[ExtractArhive] At start of file.\n");
  } else {
    logMessage("[ExtractArchive] fseek() Error?!\n");
  }
}

// Hashes the signed bytes. Returns the digest, or null, after a logged line, on failure.
static Block<unsigned char> hashData(FILE* archive, long length, unsigned char* buffer) {
  logMessage("[ExtractArchive] Starting hash...\n");
  const Block<Hash_state> state(allocHashState());
  if (!initHash(state.get())) {
    logMessage("[ExtractArchive] ERROR - unable to start hash of archive.\n");
    return nullptr;
  }
  rewindToData(archive);
  if (!hashFile(archive, length, buffer, state.get(), keepAlive)) {
    logMessage("[ExtractArchive] ERROR - unable to hash archive.\n");
    return nullptr;
  }
  logMessage("[ExtractArchive] Completed hash\n");
  Block<unsigned char> digest(doFinal(state.get()));
  if (digest == nullptr) {
    logMessage("[ExtractArchive] ERROR - unable to finish hash of archive.\n");
  }
  return digest;
}

static void logDigest(const unsigned char* digest) {
  char hex[128] = "";
  bytesToHex(hex, digest, kLoggedDigestBytes);
  logMessage("[ExtractArchive] Produced hash: %s\n", hex);
}

bool isSignatureRight(FILE* archive, const SignatureRecord& record, Rsa_key* key) {
  logMessage("[ExtractArchive] Pre-Alloc\n");
  const Block<unsigned char> buffer(static_cast<unsigned char*>(allocZeroed(HASH_BUFFER_SIZE)));
  logMessage("[ExtractArchive] Post-Alloc\n");
  fseek(archive, record.signedLength, SEEK_SET);
  compareRecord(archive, record);
  const size_t capacity = strlen(record.hex.get()) / 2 + 2;
  const Block<unsigned char> signature(static_cast<unsigned char*>(allocZeroed(capacity)));
  const int length = hexToBytes(signature.get(), static_cast<int>(capacity), record.hex.get());
  logMessage("[ExtractArchive] Produced a signature of length %d\n", length);
  const Block<unsigned char> digest = hashData(archive, record.signedLength, buffer.get());
  if (digest == nullptr) {
    return false;
  }
  logDigest(digest.get());
  const bool isInPlace = record.isComplete && record.offset == record.signedLength;
  return verifySignature(signature.get(), length, digest.get(), key) && isInPlace;
}
