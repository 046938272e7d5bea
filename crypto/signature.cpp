#include "crypto/signature.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "crypto/mixed_hash.h"
#include "crypto/rsa_verify_hash_ex.h"
#include "crypto/tomcrypt.h"
#include "support/owned.h"
#include "support/text/strings.h"

static const unsigned long kSaltSize = 64;
static const size_t kSpareBytes = 16;

// LibTomCrypt's DER decoder looks at the byte after a sequence that ends too early, and aborts the
// process over an empty input: it gets a copy with room after it, and never an empty one.
static bool importKey(const unsigned char* der, int length, Rsa_key* key) {
  if (length <= 0) {
    return false;
  }
  const size_t size = static_cast<size_t>(length);
  const Block<unsigned char> copy(static_cast<unsigned char*>(allocZeroed(size + kSpareBytes)));
  memcpy(copy.get(), der, size);
  return rsa_import(copy.get(), size, key) == CRYPT_OK;
}

Rsa_key* loadDEREncodedPublicKey(const unsigned char* der, int length) {
  ltc_mp = ltm_desc;
  Block<Rsa_key> key(static_cast<Rsa_key*>(allocZeroed(sizeof(Rsa_key))));
  if (!importKey(der, length, key.get())) {
    printf("ERROR - unable to import public key.\n");
    return nullptr;
  }
  return key.release();
}

void freePublicKey(Rsa_key* key) {
  if (key != nullptr) {
    rsa_free(key);
    free(key);
  }
}

bool verifySignature(const unsigned char* sig, int sigLength, const unsigned char* digest,
                     Rsa_key* key) {
  int status = -1;
  const int error =
      rsa_verify_hash_ex(sig, static_cast<unsigned long>(sigLength), digest, MIXED_DIGEST_SIZE,
                         LTC_PKCS_1_PSS, find_hash("mixed"), kSaltSize, &status, key);
  if (error != CRYPT_OK) {
    printf("ERROR - signature verification failed.\n");
    return false;
  }
  return status == 1;
}
