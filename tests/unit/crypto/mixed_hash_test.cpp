#include "crypto/mixed_hash.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "support/hex.h"

TEST(MixedHash, OfNothingIsSha256OfNothingThenKeccak256OfNothing) {
  Hash_state* state = allocHashState();
  ASSERT_TRUE(initHash(state));
  unsigned char* digest = doFinal(state);
  char hex[2 * MIXED_DIGEST_SIZE + 1];
  bytesToHex(hex, digest, MIXED_DIGEST_SIZE);
  EXPECT_STREQ(
      "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"
      "c5d2460186f7233c927e7db2dcc703c0e500b653ca82273b7bfad8045d85a470",
      hex);
  free(digest);
  free(state);
}
