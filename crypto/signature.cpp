#include "crypto/signature.h"

#include <cstdio>
#include <cstdlib>

#include "crypto/mixed_hash.h"
#include "crypto/rsa_verify_hash_ex.h"
#include "crypto/tomcrypt.h"
#include "support/strings.h"

static const unsigned long kSaltSize = 64;

Rsa_key* loadDEREncodedPublicKey(const unsigned char* der, int length) {
  ltc_mp = ltm_desc;
  Rsa_key* key = static_cast<Rsa_key*>(allocZeroed(sizeof(Rsa_key)));
  // LibTomCrypt aborts the process over an empty input.
  if (length <= 0 || rsa_import(der, static_cast<unsigned long>(length), key) != CRYPT_OK) {
    printf("ERROR - unable to import public key.\n");
    free(key);
    return nullptr;
  }
  return key;
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
