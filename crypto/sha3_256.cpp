#include "crypto/sha3_256.h"

#include <cstddef>

#include "crypto/keccak.h"
#include "crypto/tomcrypt.h"

static const int kFailed = -1;

// The mixed hash keeps LibTomCrypt's SHA-256 state at the start of the record, followed by this
// one.
static const size_t kKeccakOffset =
    (sizeof(sha256_state) + alignof(KeccakState) - 1) / alignof(KeccakState) * alignof(KeccakState);
static_assert(kKeccakOffset + sizeof(KeccakState) <= sizeof(Hash_state),
              "LibTomCrypt allocates records of its own size: both halves must fit in one");
static_assert(alignof(Hash_state) >= alignof(KeccakState), "the record aligns the Keccak half");

const ltc_hash_descriptor sha3256Descriptor = {
    "sha3_256",
    21,
    KECCAK_256_BYTES,
    64,  // not the rate: the block size takes part in HMAC alone, and signers use this one
    {1, 3, 14, 3, 2, 53},
    6,
    sha3_256_init,
    sha3_256_process,
    sha3_256_done,
    nullptr,
    nullptr,
};

static KeccakState* keccakIn(Hash_state* md) {
  return reinterpret_cast<KeccakState*>(reinterpret_cast<unsigned char*>(md) + kKeccakOffset);
}

int sha3_256_init(Hash_state* md) {
  if (md == nullptr) {
    crypt_argchk("md != NULL", "src/hashes/sha3/sha3_256", 30);
  }
  return Init(keccakIn(md)) == 0 ? static_cast<int>(CRYPT_OK) : kFailed;
}

int sha3_256_process(Hash_state* md, const unsigned char* in, unsigned long inlen) {
  const uint64_t bits = static_cast<uint64_t>(inlen) * 8;
  return Update(keccakIn(md), in, bits) == 0 ? static_cast<int>(CRYPT_OK) : kFailed;
}

int sha3_256_done(Hash_state* md, unsigned char* out) {
  return Final(keccakIn(md), out, KECCAK_256_BYTES) == 0 ? static_cast<int>(CRYPT_OK) : kFailed;
}
