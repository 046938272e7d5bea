#include "crypto/sha256.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <string>

#include "crypto/tomcrypt.h"
#include "tests/support/hex_text.h"
#include "tests/unit/crypto/messages.h"

static std::string finish(const Sha256& way, Hash_state* state) {
  unsigned char digest[32];
  EXPECT_EQ(CRYPT_OK, way.done(state, digest));
  return test::hexOf(digest, sizeof digest);
}

static std::string wholeDigest(const Sha256& way, const std::string& message) {
  Hash_state state;
  EXPECT_EQ(CRYPT_OK, way.init(&state));
  EXPECT_EQ(CRYPT_OK, way.process(&state, bytesOf(message), message.size()));
  return finish(way, &state);
}

TEST(SystemSha256, OfEveryLengthUpTo300IsLibTomCrypts) {
  for (size_t size = 0; size <= 300; ++size) {
    const std::string message = messageOf(size);
    ASSERT_EQ(wholeDigest(libTomCryptSha256, message), wholeDigest(systemSha256, message)) << size;
  }
}

TEST(SystemSha256, InRandomPiecesIsLibTomCryptsOfTheWhole) {
  std::mt19937 random(1);
  for (int round = 0; round < 500; ++round) {
    const std::string message = messageOf(random() % 5000);
    Hash_state state;
    ASSERT_EQ(CRYPT_OK, systemSha256.init(&state));
    for (size_t at = 0; at < message.size();) {
      const size_t size = std::min<size_t>(random() % 200, message.size() - at);
      ASSERT_EQ(CRYPT_OK, systemSha256.process(&state, bytesOf(message) + at, size));
      at += size;
    }
    ASSERT_EQ(wholeDigest(libTomCryptSha256, message), finish(systemSha256, &state)) << round;
  }
}

TEST(SystemSha256, OfMoreThanAPieceIsLibTomCrypts) {
  const std::string message = messageOf(3'000'017);
  EXPECT_EQ(wholeDigest(libTomCryptSha256, message), wholeDigest(systemSha256, message));
}

TEST(SystemSha256, StartedAgainForgetsWhatItTook) {
  Hash_state state;
  ASSERT_EQ(CRYPT_OK, systemSha256.init(&state));
  ASSERT_EQ(CRYPT_OK, systemSha256.process(&state, bytesOf("left over"), 9));
  ASSERT_EQ(CRYPT_OK, systemSha256.init(&state));
  EXPECT_EQ(wholeDigest(libTomCryptSha256, ""), finish(systemSha256, &state));
}

TEST(LibTomCryptSha256, RefusesMoreThanALengthCanSay) {
  Hash_state state;
  ASSERT_EQ(CRYPT_OK, libTomCryptSha256.init(&state));
  state.sha256.length = std::numeric_limits<ulong64>::max() - 2;
  EXPECT_EQ(CRYPT_HASH_OVERFLOW, libTomCryptSha256.process(&state, bytesOf("abc"), 3));
}

TEST(CheckedSha256, IsTheWayThatMakesTheSameDigests) {
  EXPECT_EQ(&systemSha256, checkedSha256(&systemSha256));
  EXPECT_EQ(&systemSha256, fastestSha256());
}

// Wrong in the last byte of every digest.
static int doneWrongly(Hash_state* md, unsigned char* out) {
  const int error = systemSha256.done(md, out);
  out[31] ^= 1;
  return error;
}

// Drops the last byte of a piece that is longer than a block.
static int processWrongly(Hash_state* md, const unsigned char* in, unsigned long inlen) {
  return systemSha256.process(md, in, inlen > 64 ? inlen - 1 : inlen);
}

TEST(CheckedSha256, IsLibTomCryptsWhereAnotherMakesWrongDigests) {
  const Sha256 wrongEnd = {systemSha256.init, systemSha256.process, doneWrongly};
  EXPECT_EQ(&libTomCryptSha256, checkedSha256(&wrongEnd));
}

TEST(CheckedSha256, IsLibTomCryptsWhereAnotherIsWrongForLongMessagesOnly) {
  const Sha256 wrongForLong = {systemSha256.init, processWrongly, systemSha256.done};
  EXPECT_EQ(&libTomCryptSha256, checkedSha256(&wrongForLong));
}
