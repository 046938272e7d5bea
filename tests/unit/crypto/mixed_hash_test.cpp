#include "crypto/mixed_hash.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <string>

#include "crypto/keccak.h"
#include "crypto/sha256.h"
#include "crypto/sha3_256.h"
#include "crypto/tomcrypt.h"
#include "platform/process_end.h"
#include "tests/support/capture.h"
#include "tests/support/hex_text.h"
#include "tests/unit/crypto/messages.h"
#include "tests/unit/crypto/stock.h"

static const char kSha256OfNothing[] =
    "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855";
static const char kKeccakOfNothing[] =
    "c5d2460186f7233c927e7db2dcc703c0e500b653ca82273b7bfad8045d85a470";
static const char kSha256OfAbc[] =
    "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad";
static const char kKeccakOfAbc[] =
    "4e03657aea45a94fc7d47ba826c8d667c0d1e6e33a64a036ec44f58fa12d6c45";

static std::string finish(Hash_state* state) {
  const std::unique_ptr<unsigned char, decltype(&free)> digest(doFinal(state), free);
  return digest == nullptr ? "" : test::hexOf(digest.get(), MIXED_DIGEST_SIZE);
}

static std::string mixedOf(const std::string& message, size_t piece = 1 << 20) {
  Hash_state state;
  EXPECT_TRUE(initHash(&state));
  for (size_t at = 0; at < message.size(); at += piece) {
    const size_t size = std::min(piece, message.size() - at);
    EXPECT_TRUE(updateHash(&state, bytesOf(message) + at, static_cast<int>(size)));
  }
  return finish(&state);
}

TEST(MixedHash, OfNothingIsSha256OfNothingThenKeccak256OfNothing) {
  EXPECT_EQ(std::string(kSha256OfNothing) + kKeccakOfNothing, mixedOf(""));
}

TEST(MixedHash, OfAbcIsSha256ThenKeccak256) {
  EXPECT_EQ(std::string(kSha256OfAbc) + kKeccakOfAbc, mixedOf("abc"));
}

TEST(MixedHash, FirstHalfIsThePublishedSha256) {
  EXPECT_EQ("248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1",
            mixedOf("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq").substr(0, 64));
  EXPECT_EQ("cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0",
            mixedOf(std::string(1000000, 'a')).substr(0, 64));
}

TEST(MixedHash, SecondHalfIsThePublishedKeccak256OfAMillionLettersA) {
  EXPECT_EQ("fadae6b49f129bbb812be8407b7b2894f34aecf6dbd1f9b0f0c7e9853098fc96",
            mixedOf(std::string(1000000, 'a')).substr(64));
}

TEST(MixedHash, SecondHalfIsTheOneShotKeccakOfTheSameData) {
  for (size_t size = 0; size <= 300; ++size) {
    const std::string message = messageOf(size);
    unsigned char keccak[KECCAK_256_BYTES];
    crypto_hash(keccak, bytesOf(message), size);
    ASSERT_EQ(test::hexOf(keccak, sizeof keccak), mixedOf(message).substr(64)) << size;
  }
}

TEST(MixedHash, FirstHalfIsTheLibrarysOwnSha256OfTheSameData) {
  for (size_t size = 0; size <= 300; ++size) {
    const std::string message = messageOf(size);
    Hash_state sha256;
    sha256_init(&sha256);
    sha256_process(&sha256, bytesOf(message), size);
    unsigned char digest[32];
    sha256_done(&sha256, digest);
    ASSERT_EQ(test::hexOf(digest, sizeof digest), mixedOf(message).substr(0, 64)) << size;
  }
}

// The FIPS 202 digest of "abc", which differs only in the padding.
TEST(MixedHash, SecondHalfIsNotTheFips202Hash) {
  EXPECT_NE("3a985da74fe225b2045c172d6bd390bd855f086e3e9d525b46bfe24511431532",
            mixedOf("abc").substr(64));
}

TEST(MixedHash, InPiecesOfAnySizeIsThatOfTheWhole) {
  const std::string message = messageOf(1000);
  const std::string whole = mixedOf(message);
  for (const size_t piece : {1u, 7u, 63u, 64u, 65u, 135u, 136u, 137u, 999u}) {
    EXPECT_EQ(whole, mixedOf(message, piece)) << piece;
  }
}

TEST(MixedDescriptor, HasTheFieldsThatSignersExpect) {
  EXPECT_STREQ("mixed", mixedDescriptor.name);
  EXPECT_EQ(20, mixedDescriptor.ID);
  EXPECT_EQ(64u, mixedDescriptor.hashsize);
  EXPECT_EQ(64u, mixedDescriptor.blocksize);
  const std::array<unsigned long, 6> oid = {1, 3, 14, 3, 2, 52};
  ASSERT_EQ(oid.size(), mixedDescriptor.OIDlen);
  EXPECT_TRUE(std::equal(oid.begin(), oid.end(), mixedDescriptor.OID));
  EXPECT_EQ(&mixed_init, mixedDescriptor.init);
  EXPECT_EQ(&mixed_process, mixedDescriptor.process);
  EXPECT_EQ(&mixed_done, mixedDescriptor.done);
  EXPECT_EQ(nullptr, mixedDescriptor.test);
  EXPECT_EQ(nullptr, mixedDescriptor.hmac_block);
}

TEST(Sha3256Descriptor, HasTheFieldsThatSignersExpect) {
  EXPECT_STREQ("sha3_256", sha3256Descriptor.name);
  EXPECT_EQ(21, sha3256Descriptor.ID);
  EXPECT_EQ(32u, sha3256Descriptor.hashsize);
  EXPECT_EQ(64u, sha3256Descriptor.blocksize);
  const std::array<unsigned long, 6> oid = {1, 3, 14, 3, 2, 53};
  ASSERT_EQ(oid.size(), sha3256Descriptor.OIDlen);
  EXPECT_TRUE(std::equal(oid.begin(), oid.end(), sha3256Descriptor.OID));
  EXPECT_EQ(&sha3_256_init, sha3256Descriptor.init);
  EXPECT_EQ(&sha3_256_process, sha3256Descriptor.process);
  EXPECT_EQ(&sha3_256_done, sha3256Descriptor.done);
  EXPECT_EQ(nullptr, sha3256Descriptor.test);
  EXPECT_EQ(nullptr, sha3256Descriptor.hmac_block);
}

TEST(InitHash, RegistersMixedThenSha256ThenSha3256) {
  ASSERT_EQ(-1, find_hash("mixed"));
  Hash_state state;
  ASSERT_TRUE(initHash(&state));
  EXPECT_EQ(0, find_hash("mixed"));
  EXPECT_EQ(1, find_hash("sha256"));
  EXPECT_EQ(2, find_hash("sha3_256"));
}

TEST(InitHash, AgainRegistersNothingMore) {
  Hash_state state;
  ASSERT_TRUE(initHash(&state));
  ASSERT_TRUE(initHash(&state));
  EXPECT_EQ(0, find_hash("mixed"));
  EXPECT_EQ(1, find_hash("sha256"));
  EXPECT_EQ(2, find_hash("sha3_256"));
  EXPECT_NE(CRYPT_OK, hash_is_valid(3));
}

TEST(InitHash, StartsAnewAfterAnUnfinishedHash) {
  Hash_state state;
  ASSERT_TRUE(initHash(&state));
  ASSERT_TRUE(updateHash(&state, bytesOf("left over"), 9));
  ASSERT_TRUE(initHash(&state));
  EXPECT_EQ(std::string(kSha256OfNothing) + kKeccakOfNothing, finish(&state));
}

// Takes every free place of the library's table of hashes but `left`.
static void fillHashTable(int left) {
  ltc_hash_descriptor filler = sha256_desc;
  for (int i = 0; i < TAB_SIZE - left; ++i) {
    filler.ID = static_cast<unsigned char>(100 + i);
    ASSERT_NE(-1, register_hash(&filler));
  }
}

TEST(InitHash, WithTooFewFreePlacesWarnsWithoutALineEndAndFails) {
  for (int left = 0; left < 3; ++left) {
    const test::Result result = test::runInChild([left] {
      fillHashTable(left);
      Hash_state state;
      endProcess(initHash(&state) ? 1 : 0);
    });
    EXPECT_EQ(0, result.status) << left;
    EXPECT_EQ("WARNING: Error registering mixed hash", result.out) << left;
  }
}

TEST(InitHash, WithThreeFreePlacesWorks) {
  fillHashTable(3);
  Hash_state state;
  EXPECT_TRUE(initHash(&state));
}

TEST(UpdateHash, BeforeAnyRegistrationIsRefused) {
  Hash_state state = {};
  EXPECT_FALSE(updateHash(&state, bytesOf("abc"), 3));
}

TEST(UpdateHash, AfterTheEndIsRefused) {
  Hash_state state;
  ASSERT_TRUE(initHash(&state));
  ASSERT_NE("", finish(&state));
  EXPECT_FALSE(updateHash(&state, bytesOf("abc"), 3));
}

TEST(UpdateHash, OfNothingIsAccepted) {
  Hash_state state;
  ASSERT_TRUE(initHash(&state));
  EXPECT_TRUE(updateHash(&state, bytesOf(""), 0));
  EXPECT_EQ(std::string(kSha256OfNothing) + kKeccakOfNothing, finish(&state));
}

TEST(UpdateHash, OfANegativeLengthIsRefusedAndHashesNothing) {
  Hash_state state;
  ASSERT_TRUE(initHash(&state));
  EXPECT_FALSE(updateHash(&state, bytesOf("abc"), -1));
  EXPECT_EQ(std::string(kSha256OfNothing) + kKeccakOfNothing, finish(&state));
}

TEST(DoFinal, BeforeAnyRegistrationGivesNoDigest) {
  Hash_state state = {};
  EXPECT_EQ(nullptr, doFinal(&state));
}

TEST(DoFinal, WhenTheHashCannotBeFinishedGivesNoDigest) {
  ltc_hash_descriptor failing = mixedDescriptor;
  failing.done = [](Hash_state*, unsigned char*) { return static_cast<int>(CRYPT_ERROR); };
  ASSERT_NE(-1, register_hash(&failing));
  Hash_state state = {};
  EXPECT_EQ(nullptr, doFinal(&state));
  unregister_hash(&failing);
}

TEST(DoFinal, OfARecordFromTheHeapWorks) {
  const std::unique_ptr<Hash_state, decltype(&free)> state(allocHashState(), free);
  ASSERT_TRUE(initHash(state.get()));
  EXPECT_EQ(std::string(kSha256OfNothing) + kKeccakOfNothing, finish(state.get()));
}

TEST(MixedProcess, ReportsTheRefusalOfKeccakWhenSha256TookTheData) {
  Hash_state state;
  ASSERT_EQ(CRYPT_OK, mixed_init(&state));
  unsigned char keccak[KECCAK_256_BYTES];
  ASSERT_EQ(CRYPT_OK, sha3_256_done(&state, keccak));
  EXPECT_EQ(-1, mixed_process(&state, bytesOf("abc"), 3));
  unsigned char sha256[32];
  ASSERT_EQ(CRYPT_OK, fastestSha256()->done(&state, sha256));
  EXPECT_EQ(kSha256OfAbc, test::hexOf(sha256, sizeof sha256));
}

TEST(MixedDone, AlwaysReportsSuccess) {
  Hash_state state;
  unsigned char digest[MIXED_DIGEST_SIZE];
  ASSERT_EQ(CRYPT_OK, mixed_init(&state));
  EXPECT_EQ(CRYPT_OK, mixed_done(&state, digest));
  EXPECT_EQ(CRYPT_OK, mixed_done(&state, digest));
}

TEST(Sha3256, AsAHashOfTheLibraryIsKeccak256) {
  Hash_state state;
  unsigned char digest[KECCAK_256_BYTES];
  ASSERT_EQ(CRYPT_OK, sha3_256_init(&state));
  ASSERT_EQ(CRYPT_OK, sha3_256_process(&state, bytesOf("abc"), 3));
  ASSERT_EQ(CRYPT_OK, sha3_256_done(&state, digest));
  EXPECT_EQ(kKeccakOfAbc, test::hexOf(digest, sizeof digest));
}

TEST(Sha3256, OnceFinishedRefusesBothDataAndAnotherEnd) {
  Hash_state state;
  unsigned char digest[KECCAK_256_BYTES];
  ASSERT_EQ(CRYPT_OK, sha3_256_init(&state));
  ASSERT_EQ(CRYPT_OK, sha3_256_done(&state, digest));
  EXPECT_EQ(-1, sha3_256_process(&state, bytesOf("abc"), 3));
  EXPECT_EQ(-1, sha3_256_done(&state, digest));
}

TEST(Sha3256, LeavesTheLibrarysOwnFunctionOfThatNameAlone) {
  Hash_state state;
  ASSERT_TRUE(initHash(&state));
  const char fips[] = "3a985da74fe225b2045c172d6bd390bd855f086e3e9d525b46bfe24511431532";
  EXPECT_EQ(fips, test::hexOf(stockSha3256("abc")));
  EXPECT_EQ(fips, test::hexOf(stockSha3256Descriptor("abc")));
}

TEST(MixedInitDeathTest, WithoutARecordAbortsWithTheLibrarysLine) {
  EXPECT_DEATH(mixed_init(nullptr),
               "LTC_ARGCHK 'md != NULL' failure on line 31 of file src/hashes/mixedhash/mixed\n");
}

TEST(Sha3256InitDeathTest, WithoutARecordAbortsWithTheLibrarysLine) {
  EXPECT_DEATH(sha3_256_init(nullptr),
               "LTC_ARGCHK 'md != NULL' failure on line 30 of file src/hashes/sha3/sha3_256\n");
}
