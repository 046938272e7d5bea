#include "crypto/mixed_hash.h"

#include <cstdio>

#include "crypto/sha256.h"
#include "crypto/sha3_256.h"
#include "crypto/tomcrypt.h"
#include "support/owned.h"
#include "support/text/strings.h"

static const int kSha256Size = 32;

const ltc_hash_descriptor mixedDescriptor = {
    "mixed",       20,         MIXED_DIGEST_SIZE, 64,      {1, 3, 14, 3, 2, 52}, 6, mixed_init,
    mixed_process, mixed_done, nullptr,           nullptr,
};

int mixed_init(Hash_state* md) {
  if (md == nullptr) {
    crypt_argchk("md != NULL", "src/hashes/mixedhash/mixed", 31);
  }
  fastestSha256()->init(md);
  sha3_256_init(md);
  return CRYPT_OK;
}

int mixed_process(Hash_state* md, const unsigned char* in, unsigned long inlen) {
  const int error = fastestSha256()->process(md, in, inlen);
  const int keccakError = sha3_256_process(md, in, inlen);
  return error != CRYPT_OK ? error : keccakError;
}

int mixed_done(Hash_state* md, unsigned char* out) {
  fastestSha256()->done(md, out);
  sha3_256_done(md, out + kSha256Size);
  return CRYPT_OK;
}

Hash_state* allocHashState() {
  return static_cast<Hash_state*>(allocZeroed(sizeof(Hash_state)));
}

// Returns the registered hash's descriptor, or null before its registration.
static const ltc_hash_descriptor* registeredMixedHash() {
  const int index = find_hash(mixedDescriptor.name);
  return hash_is_valid(index) == CRYPT_OK ? &hash_descriptor[index] : nullptr;
}

bool initHash(Hash_state* state) {
  const bool registered = register_hash(&mixedDescriptor) != -1 &&
                          register_hash(&sha256_desc) != -1 &&
                          register_hash(&sha3256Descriptor) != -1;
  if (!registered) {
    printf("WARNING: Error registering mixed hash");
    return false;
  }
  registeredMixedHash()->init(state);
  return true;
}

bool updateHash(Hash_state* state, const unsigned char* data, int length) {
  const ltc_hash_descriptor* mixed = registeredMixedHash();
  return mixed != nullptr && length >= 0 &&
         mixed->process(state, data, static_cast<unsigned long>(length)) == CRYPT_OK;
}

unsigned char* doFinal(Hash_state* state) {
  const ltc_hash_descriptor* mixed = registeredMixedHash();
  if (mixed == nullptr) {
    return nullptr;
  }
  Block<unsigned char> digest(static_cast<unsigned char*>(allocZeroed(MIXED_DIGEST_SIZE)));
  return mixed->done(state, digest.get()) == CRYPT_OK ? digest.release() : nullptr;
}
