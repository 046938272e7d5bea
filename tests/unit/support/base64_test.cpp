#include "support/encoding/base64.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace {

struct Decoded {
  bool hasBlock = false;
  std::string bytes;
};

}  // namespace

static Decoded decode(const std::string& text) {
  size_t length = 0;
  unsigned char* block = base64_decode(text.data(), text.size(), &length);
  Decoded decoded;
  if (block != nullptr) {
    decoded.hasBlock = true;
    decoded.bytes.assign(reinterpret_cast<char*>(block), length);
  }
  free(block);
  return decoded;
}

TEST(Base64Decode, DecodesAGroupWithOnePaddingCharacterToTwoBytes) {
  EXPECT_EQ("Ma", decode("TWE=").bytes);
}

TEST(Base64Decode, DecodesThePublishedVectors) {
  EXPECT_EQ("f", decode("Zg==").bytes);
  EXPECT_EQ("fo", decode("Zm8=").bytes);
  EXPECT_EQ("foo", decode("Zm9v").bytes);
  EXPECT_EQ("foob", decode("Zm9vYg==").bytes);
  EXPECT_EQ("fooba", decode("Zm9vYmE=").bytes);
  EXPECT_EQ("foobar", decode("Zm9vYmFy").bytes);
}

TEST(Base64Decode, DecodesEveryCharacterOfTheAlphabet) {
  const std::string bytes =
      decode("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/").bytes;
  ASSERT_EQ(48u, bytes.size());
  for (unsigned i = 0; i < 64; ++i) {
    unsigned value = 0;
    for (unsigned bit = i * 6; bit < i * 6 + 6; ++bit) {
      const auto byte = static_cast<unsigned char>(bytes[bit / 8]);
      value = value << 1 | (byte >> (7 - bit % 8) & 1u);
    }
    EXPECT_EQ(i, value);
  }
}

TEST(Base64Decode, GivesNoneAndLeavesTheLengthForATextThatIsNoMultipleOfFour) {
  for (const char* text : {"T", "TW", "TWE", "TWE=T"}) {
    size_t length = 77;
    EXPECT_EQ(nullptr, base64_decode(text, std::string(text).size(), &length)) << text;
    EXPECT_EQ(77u, length);
  }
}

TEST(Base64Decode, GivesAnEmptyBlockForAnEmptyText) {
  const Decoded decoded = decode("");
  EXPECT_TRUE(decoded.hasBlock);
  EXPECT_EQ("", decoded.bytes);
}

TEST(Base64Decode, CountsACharacterOutsideTheAlphabetAsZero) {
  EXPECT_EQ(decode("AAAA").bytes, decode("\xFF-_\n").bytes);
}

TEST(Base64Decode, CountsAPaddingCharacterInTheMiddleAsZero) {
  EXPECT_EQ(decode("AAAAZm9v").bytes, decode("====Zm9v").bytes);
}

TEST(Base64Decode, GivesOneByteForAGroupOfPaddingOnly) {
  EXPECT_EQ(std::string(1, '\0'), decode("====").bytes);
}

TEST(Base64Decode, BuildsItsTableAgainAfterACleanUp) {
  base64_cleanup();
  base64_cleanup();
  EXPECT_EQ("Ma", decode("TWE=").bytes);
  build_decoding_table();
  EXPECT_EQ("Ma", decode("TWE=").bytes);
}
