#include "platform/sha256.h"

#include <nettle/sha2.h>

static_assert(sizeof(sha256_ctx) <= SYSTEM_SHA256_STATE_SIZE, "a state fits its place");
static_assert(alignof(sha256_ctx) <= 8, "a state's place is aligned to 8 bytes");
static_assert(SHA256_DIGEST_SIZE == SYSTEM_SHA256_DIGEST_SIZE);

void startSystemSha256(void* state) {
  nettle_sha256_init(static_cast<sha256_ctx*>(state));
}

void updateSystemSha256(void* state, const unsigned char* data, size_t size) {
  nettle_sha256_update(static_cast<sha256_ctx*>(state), size, data);
}

void finishSystemSha256(void* state, unsigned char* digest) {
  nettle_sha256_digest(static_cast<sha256_ctx*>(state), SYSTEM_SHA256_DIGEST_SIZE, digest);
}
