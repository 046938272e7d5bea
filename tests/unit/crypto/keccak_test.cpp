#include "crypto/keccak.h"

#include <gtest/gtest.h>

#include <string>

static std::string hexOf(const unsigned char* bytes, size_t count) {
  std::string hex;
  for (size_t i = 0; i < count; ++i) {
    char pair[3];
    snprintf(pair, sizeof pair, "%02x", bytes[i]);
    hex += pair;
  }
  return hex;
}

static std::string keccak256(const std::string& message) {
  KeccakState state;
  Init(&state);
  Update(&state, reinterpret_cast<const unsigned char*>(message.data()), message.size() * 8);
  unsigned char digest[KECCAK_256_BYTES];
  Final(&state, digest, sizeof digest);
  return hexOf(digest, sizeof digest);
}

TEST(Keccak256, OfTheEmptyMessageIsThePublishedDigest) {
  EXPECT_EQ("c5d2460186f7233c927e7db2dcc703c0e500b653ca82273b7bfad8045d85a470", keccak256(""));
}

TEST(Keccak256, OfAbcIsThePublishedDigest) {
  EXPECT_EQ("4e03657aea45a94fc7d47ba826c8d667c0d1e6e33a64a036ec44f58fa12d6c45", keccak256("abc"));
}
