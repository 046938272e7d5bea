#include "platform/sha256.h"

#include <CommonCrypto/CommonDigest.h>

#include <algorithm>
#include <limits>

static_assert(sizeof(CC_SHA256_CTX) <= SYSTEM_SHA256_STATE_SIZE, "a state fits its place");
static_assert(alignof(CC_SHA256_CTX) <= 8, "a state's place is aligned to 8 bytes");
static_assert(CC_SHA256_DIGEST_LENGTH == SYSTEM_SHA256_DIGEST_SIZE);

// The functions' results are always 1: CommonDigest.h says that they report no errors.

void startSystemSha256(void* state) {
  CC_SHA256_Init(static_cast<CC_SHA256_CTX*>(state));
}

// A length is 32 bits wide there.
void updateSystemSha256(void* state, const unsigned char* data, size_t size) {
  const size_t most = std::numeric_limits<CC_LONG>::max();
  for (size_t done = 0; done < size;) {
    const size_t piece = std::min(size - done, most);
    CC_SHA256_Update(static_cast<CC_SHA256_CTX*>(state), data + done, static_cast<CC_LONG>(piece));
    done += piece;
  }
}

void finishSystemSha256(void* state, unsigned char* digest) {
  CC_SHA256_Final(digest, static_cast<CC_SHA256_CTX*>(state));
}
