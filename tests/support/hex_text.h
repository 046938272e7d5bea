#ifndef QUORVANE_TESTS_SUPPORT_HEX_TEXT_H
#define QUORVANE_TESTS_SUPPORT_HEX_TEXT_H

#include <cstddef>
#include <string>

// Hexadecimal text of the tests' own, which shares nothing with the product's.

namespace test {

// The lower-case digits of `bytes`.
std::string hexOf(const std::string& bytes);
std::string hexOf(const unsigned char* bytes, size_t count);

// The bytes of `hex`, whose digits may be of either case; the test fails when they are not digits.
std::string bytesOfHex(const std::string& hex);

}  // namespace test

#endif
