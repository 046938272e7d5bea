// What the archive benchmark runs and measures from outside:
//   extract ARCHIVE FOLDER [KEY]   extracts an archive, which goes away, with the public key in KEY
//   hash FILE                      makes the mixed digest of a file
//   nothing                        ends at once
// Built twice: the second time, as archive_extract_quiet, logging does nothing.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "archive/archive.h"
#include "crypto/hash_file.h"
#include "crypto/mixed_hash.h"
#include "crypto/signature.h"
#include "support/encoding/hex.h"
#include "support/owned.h"

static Rsa_key* readKey(const char* path) {
  char hex[8192] = "";
  const Stream file(fopen(path, "rb"));
  if (file == nullptr || fgets(hex, sizeof hex, file.get()) == nullptr) {
    abort();
  }
  unsigned char der[sizeof hex / 2];
  return loadDEREncodedPublicKey(der, hexToBytes(der, sizeof der, hex));
}

static int hash(const char* path) {
  static unsigned char buffer[HASH_BUFFER_SIZE];
  const Stream file(fopen(path, "rb"));
  if (file == nullptr || fseek(file.get(), 0, SEEK_END) != 0) {
    return 1;
  }
  const long length = ftell(file.get());
  rewind(file.get());
  const Block<Hash_state> state(allocHashState());
  const bool isTaken =
      initHash(state.get()) && hashFile(file.get(), length, buffer, state.get(), nullptr);
  return isTaken && Block<unsigned char>(doFinal(state.get())) != nullptr ? 0 : 1;
}

int main(int argc, char** argv) {
  const std::string command = argc > 1 ? argv[1] : "";
  if (command == "extract" && (argc == 4 || argc == 5)) {
    return extractArchive(nullptr, argv[2], argv[3], argc == 5 ? readKey(argv[4]) : nullptr);
  }
  if (command == "hash" && argc == 3) {
    return hash(argv[2]);
  }
  return command == "nothing" ? 0 : 2;
}
