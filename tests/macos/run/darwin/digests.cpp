#include <nettle/sha2.h>

#include <cstdint>
#include <cstring>

#include "tests/macos/run/supply/tables.h"

namespace macrun {

// CC_SHA256_CTX of <CommonCrypto/CommonDigest.h>: smaller than Nettle's record of the same.
struct DarwinSha256 {
  uint64_t bytes;
  uint32_t hash[8];
  unsigned char rest[64];  // what does not fill a block yet
};
static_assert(sizeof(DarwinSha256) == 104);

static sha256_ctx nettles(const DarwinSha256& context) {
  sha256_ctx own = {};
  memcpy(own.state, context.hash, sizeof own.state);
  memcpy(own.block, context.rest, sizeof own.block);
  own.count = context.bytes / sizeof own.block;
  own.index = context.bytes % sizeof own.block;
  return own;
}

static void store(const sha256_ctx& own, DarwinSha256* context) {
  memcpy(context->hash, own.state, sizeof own.state);
  memcpy(context->rest, own.block, sizeof own.block);
  context->bytes = own.count * sizeof own.block + own.index;
}

static int initSha256(DarwinSha256* context) {
  sha256_ctx own = {};
  nettle_sha256_init(&own);
  store(own, context);
  return 1;
}

static int updateSha256(DarwinSha256* context, const unsigned char* data, uint32_t size) {
  sha256_ctx own = nettles(*context);
  nettle_sha256_update(&own, size, data);
  store(own, context);
  return 1;
}

static int finishSha256(unsigned char* digest, DarwinSha256* context) {
  sha256_ctx own = nettles(*context);
  nettle_sha256_digest(&own, SHA256_DIGEST_SIZE, digest);
  store(own, context);
  return 1;
}

static constexpr Supplied kDigests[] = {
    function<finishSha256>("_CC_SHA256_Final"),
    function<initSha256>("_CC_SHA256_Init"),
    function<updateSha256>("_CC_SHA256_Update"),
};
const SupplyTable kDigestTable = tableOf(kDigests);

}  // namespace macrun
