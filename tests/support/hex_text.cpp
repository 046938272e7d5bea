#include "tests/support/hex_text.h"

#include <gtest/gtest.h>

#include <cctype>

namespace test {

std::string hexOf(const std::string& bytes) {
  static const char kDigits[] = "0123456789abcdef";
  std::string hex;
  for (const char c : bytes) {
    const unsigned value = static_cast<unsigned char>(c);
    hex += kDigits[value >> 4];
    hex += kDigits[value & 15];
  }
  return hex;
}

std::string hexOf(const unsigned char* bytes, size_t count) {
  return hexOf(std::string(reinterpret_cast<const char*>(bytes), count));
}

static unsigned digit(char c) {
  EXPECT_TRUE(isxdigit(static_cast<unsigned char>(c))) << c;
  return static_cast<unsigned>(isdigit(static_cast<unsigned char>(c)) ? c - '0'
                                                                      : (c | 0x20) - 'a' + 10);
}

std::string bytesOfHex(const std::string& hex) {
  EXPECT_EQ(0u, hex.size() % 2) << hex;
  std::string bytes;
  for (size_t i = 0; i + 1 < hex.size(); i += 2) {
    bytes += static_cast<char>(digit(hex[i]) << 4 | digit(hex[i + 1]));
  }
  return bytes;
}

}  // namespace test
