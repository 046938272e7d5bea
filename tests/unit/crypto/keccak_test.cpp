#include "crypto/keccak.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <random>
#include <string>

#include "crypto/keccak_permutation.h"
#include "tests/support/hex_text.h"
#include "tests/support/reference_keccak.h"
#include "tests/unit/crypto/messages.h"

static const char kEmptyDigest[] =
    "c5d2460186f7233c927e7db2dcc703c0e500b653ca82273b7bfad8045d85a470";

static KeccakState stateAfter(const std::string& data, uint64_t bits) {
  KeccakState state;
  EXPECT_EQ(0, Init(&state));
  EXPECT_EQ(0, Update(&state, bytesOf(data), bits));
  return state;
}

static std::string finish(KeccakState state, size_t outBytes = KECCAK_256_BYTES) {
  std::string out(outBytes, '\0');
  EXPECT_EQ(0, Final(&state, reinterpret_cast<unsigned char*>(out.data()), outBytes));
  return test::hexOf(out);
}

static std::string keccakOfBits(const std::string& data, uint64_t bits) {
  return finish(stateAfter(data, bits));
}

static std::string keccakOf(const std::string& message) {
  return keccakOfBits(message, message.size() * 8);
}

static std::string definitionOf(const std::string& data, uint64_t bits,
                                size_t outBytes = KECCAK_256_BYTES) {
  const auto out = test::referenceKeccak(test::keccakBits(bytesOf(data), bits), outBytes);
  return test::hexOf(out.data(), out.size());
}

static bool same(const KeccakState& a, const KeccakState& b) {
  return memcmp(a.lanes, b.lanes, sizeof a.lanes) == 0 && a.bitsInQueue == b.bitsInQueue;
}

TEST(Keccak256, OfTheEmptyMessageIsTheOriginalDigestAndNotThatOfFips202) {
  EXPECT_EQ(kEmptyDigest, keccakOf(""));
  EXPECT_NE("a7ffc6f8bf1ed76651c14756a061d662f580ff4de43b49fa82d80a4b80f8434a", keccakOf(""));
}

TEST(Keccak256, OfAbcIsThePublishedDigest) {
  EXPECT_EQ("4e03657aea45a94fc7d47ba826c8d667c0d1e6e33a64a036ec44f58fa12d6c45", keccakOf("abc"));
}

TEST(Keccak256, OfAMillionLettersAIsThePublishedDigest) {
  EXPECT_EQ("fadae6b49f129bbb812be8407b7b2894f34aecf6dbd1f9b0f0c7e9853098fc96",
            keccakOf(std::string(1000000, 'a')));
}

// The published messages of 0 to 255 bytes, among them those of 135, 136 and 137 bytes.
TEST(Keccak256, OfEveryPublishedShortMessageIsItsPublishedDigest) {
  std::ifstream file(QUORVANE_SOURCE "/tests/data/keccak_256_short_messages.txt");
  std::string message;
  unsigned bits = 0;
  int checked = 0;
  for (std::string line; std::getline(file, line);) {
    if (line.rfind("Len = ", 0) == 0) {
      bits = static_cast<unsigned>(std::stoul(line.substr(6)));
    } else if (line.rfind("Msg = ", 0) == 0) {
      message = test::bytesOfHex(line.substr(6));
    } else if (line.rfind("MD = ", 0) == 0) {
      EXPECT_EQ(test::hexOf(test::bytesOfHex(line.substr(5))), keccakOfBits(message, bits))
          << bits << " bits";
      ++checked;
    }
  }
  EXPECT_EQ(256, checked);
}

TEST(Keccak256, OfSizesAroundABlockIsTheDigestOfTheDefinition) {
  for (const size_t size : {135u, 136u, 137u, 271u, 272u, 273u, 1000u}) {
    const std::string message = messageOf(size);
    EXPECT_EQ(definitionOf(message, size * 8), keccakOf(message)) << size;
  }
}

TEST(Keccak256, OfEveryBitLengthUpToTwoBlocksIsTheDigestOfTheDefinition) {
  const std::string data = messageOf(2 * KECCAK_RATE_BYTES + 1);
  for (uint64_t bits = 0; bits <= 2 * KECCAK_RATE_BITS + 8; ++bits) {
    ASSERT_EQ(definitionOf(data, bits), keccakOfBits(data, bits)) << bits;
  }
}

// FIPS 202 appends the bits 0 and 1 to the message, so that its published digests of messages that
// end inside a byte are digests of messages two bits longer here.
TEST(Keccak256, OfAMessageFollowedByTheDomainBitsIsThePublishedFips202Digest) {
  EXPECT_EQ("a7ffc6f8bf1ed76651c14756a061d662f580ff4de43b49fa82d80a4b80f8434a",
            keccakOfBits("\x80", 2));
  // The message 11001 as low bits 0x13, then 01: seven bits 0x53, kept high.
  EXPECT_EQ("7b0047cf5a456882363cbf0fb05322cf65f4b7059a46365e830132e3b5d957af",
            keccakOfBits("\xa6", 7));
  const std::string a3(200, '\xa3');
  EXPECT_EQ("79f38adec5c20307a98ef76e8324afbfd46cfd81b22e3973c65fa1bd9de31787",
            keccakOfBits(a3 + "\x80", 1602));
  EXPECT_EQ("81ee769bed0950862b1ddded2e84aaa6ab7bfdd3ceaa471be31163d40336363c",
            keccakOfBits(a3 + "\x86", 1607));
}

TEST(Update, OfExactly136BytesAbsorbsOneWholeBlock) {
  const std::string block = messageOf(KECCAK_RATE_BYTES);
  KeccakState expected{};
  for (int i = 0; i < KECCAK_RATE_BYTES; ++i) {
    expected.lanes[i / 8] ^= static_cast<uint64_t>(bytesOf(block)[i]) << i % 8 * 8;
  }
  test::referenceKeccakF(expected.lanes);
  EXPECT_TRUE(same(expected, stateAfter(block, KECCAK_RATE_BITS)));
}

TEST(Final, After136BytesPadsABlockOf01ZerosAnd80) {
  const std::string block = messageOf(KECCAK_RATE_BYTES);
  KeccakState expected = stateAfter(block, KECCAK_RATE_BITS);
  expected.lanes[0] ^= 0x01;
  expected.lanes[KECCAK_RATE_LANES - 1] ^= uint64_t{0x80} << 56;
  test::referenceKeccakF(expected.lanes);
  std::string digest(reinterpret_cast<const char*>(expected.lanes), KECCAK_256_BYTES);
  EXPECT_EQ(test::hexOf(digest), keccakOf(block));
}

TEST(Final, AfterBit1087PadsTheLastBitAndASecondBlockOfTheFinalBitAlone) {
  const std::string data = messageOf(KECCAK_RATE_BYTES);
  KeccakState expected = stateAfter(data, KECCAK_RATE_BITS - 1);
  ASSERT_EQ(KECCAK_RATE_BITS - 1, expected.bitsInQueue);
  const uint64_t topBit = uint64_t{0x80} << 56;
  expected.lanes[KECCAK_RATE_LANES - 1] ^= topBit;
  test::referenceKeccakF(expected.lanes);
  expected.lanes[KECCAK_RATE_LANES - 1] ^= topBit;
  test::referenceKeccakF(expected.lanes);
  std::string digest(reinterpret_cast<const char*>(expected.lanes), KECCAK_256_BYTES);
  EXPECT_EQ(test::hexOf(digest), keccakOfBits(data, KECCAK_RATE_BITS - 1));
  EXPECT_EQ(definitionOf(data, KECCAK_RATE_BITS - 1), keccakOfBits(data, KECCAK_RATE_BITS - 1));
}

TEST(Final, After135BytesPutsBothPaddingBitsIntoTheLastByte) {
  const std::string message = messageOf(135);
  KeccakState expected = stateAfter(message, 135 * 8);
  expected.lanes[KECCAK_RATE_LANES - 1] ^= uint64_t{0x81} << 56;
  test::referenceKeccakF(expected.lanes);
  std::string digest(reinterpret_cast<const char*>(expected.lanes), KECCAK_256_BYTES);
  EXPECT_EQ(test::hexOf(digest), keccakOf(message));
}

TEST(Update, InPiecesOfAnySizeGivesTheDigestOfTheWhole) {
  const std::string message = messageOf(700);
  const std::string whole = keccakOf(message);
  for (size_t piece = 1; piece <= 300; ++piece) {
    KeccakState state;
    Init(&state);
    for (size_t at = 0; at < message.size(); at += piece) {
      const size_t size = std::min(piece, message.size() - at);
      ASSERT_EQ(0, Update(&state, bytesOf(message) + at, size * 8));
    }
    ASSERT_EQ(whole, finish(state)) << piece;
  }
}

TEST(Update, CountsTheBitsOfTheOpenBlock) {
  EXPECT_EQ(0, stateAfter("", 0).bitsInQueue);
  EXPECT_EQ(24, stateAfter("abc", 24).bitsInQueue);
  EXPECT_EQ(1080, stateAfter(messageOf(135), 1080).bitsInQueue);
  EXPECT_EQ(0, stateAfter(messageOf(136), 1088).bitsInQueue);
  EXPECT_EQ(8, stateAfter(messageOf(137), 1096).bitsInQueue);
  EXPECT_EQ(13, stateAfter("ab", 13).bitsInQueue);
}

TEST(Update, OfAPartialByteTakesItsHighBitsAlone) {
  EXPECT_EQ(keccakOfBits("\xa0", 3), keccakOfBits("\xbf", 3));
  EXPECT_NE(keccakOfBits("\xa0", 3), keccakOfBits("\x80", 3));
  EXPECT_EQ(uint64_t{0x05}, stateAfter("\xa0", 3).lanes[0]);
}

TEST(Update, WithoutDataIsAcceptedAndChangesNothing) {
  KeccakState state = stateAfter("abc", 24);
  const KeccakState before = state;
  EXPECT_EQ(0, Update(&state, nullptr, 0));
  EXPECT_TRUE(same(before, state));
}

TEST(Update, AfterAPartialByteIsRefusedAndLeavesTheStateUntouched) {
  KeccakState state = stateAfter("a", 3);
  const KeccakState before = state;
  EXPECT_EQ(1, Update(&state, bytesOf("b"), 8));
  EXPECT_EQ(1, Update(&state, bytesOf("b"), 5));
  EXPECT_EQ(1, Update(&state, nullptr, 0));
  EXPECT_TRUE(same(before, state));
}

TEST(Update, AfterFinalIsRefusedAndLeavesTheStateUntouched) {
  KeccakState state = stateAfter("abc", 24);
  unsigned char digest[KECCAK_256_BYTES];
  ASSERT_EQ(0, Final(&state, digest, sizeof digest));
  const KeccakState before = state;
  EXPECT_EQ(1, Update(&state, bytesOf("abc"), 24));
  EXPECT_EQ(1, Update(&state, nullptr, 0));
  EXPECT_TRUE(same(before, state));
}

TEST(Final, MarksTheStateAsFinished) {
  KeccakState state = stateAfter("abc", 24);
  unsigned char digest[KECCAK_256_BYTES];
  ASSERT_EQ(0, Final(&state, digest, sizeof digest));
  EXPECT_EQ(-1, state.bitsInQueue);
}

TEST(Final, ASecondTimeIsRefusedAndWritesNothing) {
  KeccakState state = stateAfter("abc", 24);
  unsigned char digest[KECCAK_256_BYTES];
  ASSERT_EQ(0, Final(&state, digest, sizeof digest));
  const KeccakState before = state;
  unsigned char again[KECCAK_256_BYTES] = {7};
  EXPECT_EQ(1, Final(&state, again, sizeof again));
  EXPECT_EQ(7, again[0]);
  EXPECT_TRUE(same(before, state));
}

TEST(Final, SqueezesAnyNumberOfBytes) {
  const std::string message = messageOf(50);
  for (const size_t size : {0u, 1u, 31u, 135u, 136u, 137u, 272u, 500u}) {
    EXPECT_EQ(definitionOf(message, 400, size), finish(stateAfter(message, 400), size)) << size;
  }
}

TEST(Init, MakesAFinishedStateUsableAgain) {
  KeccakState state = stateAfter("abc", 24);
  unsigned char digest[KECCAK_256_BYTES];
  ASSERT_EQ(0, Final(&state, digest, sizeof digest));
  ASSERT_EQ(0, Init(&state));
  EXPECT_EQ(kEmptyDigest, finish(state));
}

TEST(KeccakF, WithoutLanesPermutesAlone) {
  KeccakState state = stateAfter(messageOf(20), 160);
  KeccakState expected = state;
  test::referenceKeccakF(expected.lanes);
  KeccakF(&state, nullptr, 0);
  EXPECT_TRUE(same(expected, state));
}

TEST(KeccakF, XorsTheGivenLanesLowestByteFirst) {
  const std::string lanes = messageOf(KECCAK_LANES * 8);
  for (int count = 0; count <= KECCAK_LANES; ++count) {
    KeccakState state = stateAfter(messageOf(30), 240);
    KeccakState expected = state;
    for (int i = 0; i < count * 8; ++i) {
      expected.lanes[i / 8] ^= static_cast<uint64_t>(bytesOf(lanes)[i]) << i % 8 * 8;
    }
    test::referenceKeccakF(expected.lanes);
    KeccakF(&state, bytesOf(lanes), count);
    ASSERT_TRUE(same(expected, state)) << count;
  }
}

// Whatever this processor has, the way without its instructions is checked as well.
TEST(KeccakPermutation, OfEveryWayIsThatOfTheDefinition) {
  std::mt19937_64 random(1);
  for (int i = 0; i < 200; ++i) {
    uint64_t start[KECCAK_LANES];
    for (uint64_t& lane : start) {
      lane = i == 0 ? 0 : i == 1 ? ~uint64_t{0} : random();
    }
    uint64_t expected[KECCAK_LANES];
    memcpy(expected, start, sizeof start);
    test::referenceKeccakF(expected);
    uint64_t fastest[KECCAK_LANES];
    memcpy(fastest, start, sizeof start);
    permuteKeccak(fastest);
    EXPECT_EQ(0, memcmp(expected, fastest, sizeof expected));
    uint64_t plain[KECCAK_LANES];
    memcpy(plain, start, sizeof start);
    permuteKeccakPlain(plain);
    EXPECT_EQ(0, memcmp(expected, plain, sizeof expected));
  }
}

TEST(CryptoHash, GivesTheDigestOfInitUpdateFinalForEverySize) {
  for (size_t size = 0; size <= 3 * KECCAK_RATE_BYTES + 1; ++size) {
    const std::string message = messageOf(size);
    unsigned char digest[KECCAK_256_BYTES];
    ASSERT_EQ(0, crypto_hash(digest, bytesOf(message), size));
    ASSERT_EQ(keccakOf(message), test::hexOf(digest, sizeof digest)) << size;
  }
}

TEST(CryptoHash, OfTheEmptyMessageIsThePublishedDigest) {
  unsigned char digest[KECCAK_256_BYTES];
  ASSERT_EQ(0, crypto_hash(digest, nullptr, 0));
  EXPECT_EQ(kEmptyDigest, test::hexOf(digest, sizeof digest));
}
