#include "crypto/sha256.h"

#include <cstring>
#include <initializer_list>

#include "crypto/tomcrypt.h"
#include "platform/sha256.h"

static_assert(SYSTEM_SHA256_STATE_SIZE <= sizeof(sha256_state),
              "the system's state fits where LibTomCrypt has its own");
static_assert(alignof(Hash_state) >= 8, "the system's state is aligned");

static int initSystems(Hash_state* md) {
  startSystemSha256(md);
  return CRYPT_OK;
}

static int processSystems(Hash_state* md, const unsigned char* in, unsigned long inlen) {
  updateSystemSha256(md, in, inlen);
  return CRYPT_OK;
}

static int doneSystems(Hash_state* md, unsigned char* out) {
  finishSystemSha256(md, out);
  return CRYPT_OK;
}

const Sha256 systemSha256 = {initSystems, processSystems, doneSystems};
const Sha256 libTomCryptSha256 = {sha256_init, sha256_process, sha256_done};

// Makes the digest of `size` bytes, the first `split` of them by a call of their own.
static void digestOf(const Sha256& way, const unsigned char* data, unsigned long size,
                     unsigned long split, unsigned char* digest) {
  Hash_state state;
  way.init(&state);
  way.process(&state, data, split);
  way.process(&state, data + split, size - split);
  way.done(&state, digest);
}

// Lengths around a block's end, where the padding takes one block or two, and more than one block.
const Sha256* checkedSha256(const Sha256* way) {
  unsigned char message[300];
  for (size_t i = 0; i < sizeof message; ++i) {
    message[i] = static_cast<unsigned char>(i * 31 + 7);
  }
  for (const unsigned long size : {0UL, 3UL, 55UL, 56UL, 64UL, 300UL}) {
    unsigned char expected[SYSTEM_SHA256_DIGEST_SIZE];
    unsigned char digest[SYSTEM_SHA256_DIGEST_SIZE];
    digestOf(libTomCryptSha256, message, size, 0, expected);
    digestOf(*way, message, size, size / 2, digest);
    if (memcmp(expected, digest, sizeof digest) != 0) {
      return &libTomCryptSha256;
    }
  }
  return way;
}

const Sha256* fastestSha256() {
  static const Sha256* const fastest = checkedSha256(&systemSha256);
  return fastest;
}
