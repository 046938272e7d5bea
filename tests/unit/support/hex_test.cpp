#include "support/encoding/hex.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "tests/support/capture.h"

TEST(BytesToHex, WritesLowerCasePairsAndATerminator) {
  const unsigned char bytes[] = {0x00, 0x0A, 0xFF};
  char text[7];
  memset(text, 'x', sizeof text);
  EXPECT_EQ(6, bytesToHex(text, bytes, 3));
  EXPECT_STREQ("000aff", text);
}

TEST(BytesToHex, WritesNothingForACountBelowOne) {
  const unsigned char bytes[] = {0xFF};
  char text[] = "kept";
  EXPECT_EQ(0, bytesToHex(text, bytes, 0));
  EXPECT_EQ(-2, bytesToHex(text, bytes, -1));
  EXPECT_STREQ("kept", text);
}

namespace {

struct DecodedHex {
  int count;
  std::vector<unsigned char> bytes;  // exactly the capacity, so that the sanitizer sees the end
  std::string out;
};

}  // namespace

static DecodedHex decode(const std::string& hex, int capacity) {
  DecodedHex decoded{0, std::vector<unsigned char>(static_cast<size_t>(capacity), 0xEE), ""};
  decoded.out = test::capture([&] {
                  decoded.count = hexToBytes(decoded.bytes.data(), capacity, hex.c_str());
                }).out;
  return decoded;
}

using Bytes = std::vector<unsigned char>;

TEST(HexToBytes, StopsAtTheFirstPairThatIsNotHexadecimalAndEndsTheBytes) {
  const DecodedHex decoded = decode("0aFFzz", 4);
  EXPECT_EQ(2, decoded.count);
  EXPECT_EQ((Bytes{0x0A, 0xFF, 0x00, 0xEE}), decoded.bytes);
  EXPECT_EQ("", decoded.out);
}

TEST(HexToBytes, GivesOnlyATerminatorForAnEmptyText) {
  const DecodedHex decoded = decode("", 2);
  EXPECT_EQ(0, decoded.count);
  EXPECT_EQ((Bytes{0x00, 0xEE}), decoded.bytes);
}

TEST(HexToBytes, TakesASingleLastDigitForAByteAndReadsNoFurther) {
  const DecodedHex decoded = decode("0af", 4);
  EXPECT_EQ(2, decoded.count);
  EXPECT_EQ((Bytes{0x0A, 0x0F, 0x00, 0xEE}), decoded.bytes);
}

TEST(HexToBytes, WarnsWithCountAndCapacityWhenTheTerminatorDoesNotFit) {
  const DecodedHex decoded = decode("010203", 3);
  EXPECT_EQ(3, decoded.count);
  EXPECT_EQ((Bytes{1, 2, 3}), decoded.bytes);
  EXPECT_EQ("[Utils] ERROR - HexToBytes is writing too far! 3 3\n", decoded.out);
}

TEST(HexToBytes, DropsWhatIsBeyondTheCapacityAndWarnsWithTheWholeCount) {
  const DecodedHex decoded = decode("0102030405", 2);
  EXPECT_EQ(2, decoded.count);
  EXPECT_EQ((Bytes{1, 2}), decoded.bytes);
  EXPECT_EQ("[Utils] ERROR - HexToBytes is writing too far! 5 2\n", decoded.out);
}

TEST(HexToBytes, DoesNotWarnWhenTheTerminatorJustFits) {
  const DecodedHex decoded = decode("0102", 3);
  EXPECT_EQ(2, decoded.count);
  EXPECT_EQ((Bytes{1, 2, 0}), decoded.bytes);
  EXPECT_EQ("", decoded.out);
}

TEST(HexToBytes, StoresNothingInAnEmptyBuffer) {
  EXPECT_EQ(0, decode("01", 0).count);
}

TEST(HexToBytes, ReadsBackWhatBytesToHexWrote) {
  Bytes bytes(256);
  for (size_t i = 0; i < bytes.size(); ++i) {
    bytes[i] = static_cast<unsigned char>(i);
  }
  std::vector<char> text(513);
  bytesToHex(text.data(), bytes.data(), 256);
  DecodedHex decoded = decode(text.data(), 257);
  ASSERT_EQ(256, decoded.count);
  decoded.bytes.pop_back();
  EXPECT_EQ(bytes, decoded.bytes);
}
