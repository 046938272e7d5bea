// Base64 text: only the length decides whether there is a result, and that is what another reader
// makes of the same text.

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "support/encoding/base64.h"
#include "tests/fuzz/fuzz_target.h"

// The six bits of a character; one outside the alphabet counts as 0.
static unsigned valueOf(char c) {
  static const char kAlphabet[] =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  const char* found = c == 0 ? nullptr : strchr(kAlphabet, c);
  return found == nullptr ? 0 : static_cast<unsigned>(found - kAlphabet);
}

// Reads the text bit by bit. Each pad among its last two characters takes a byte off the result.
static std::vector<unsigned char> decodedBits(const std::vector<char>& text) {
  std::vector<unsigned char> bytes(text.size() / 4 * 3, 0);
  for (size_t bit = 0; bit < text.size() * 6; ++bit) {
    const unsigned value = valueOf(text[bit / 6]) >> (5 - bit % 6) & 1;
    bytes[bit / 8] = static_cast<unsigned char>(bytes[bit / 8] | value << (7 - bit % 8));
  }
  const auto pads =
      std::count(text.end() - std::min<ptrdiff_t>(2, text.end() - text.begin()), text.end(), '=');
  bytes.resize(bytes.size() - static_cast<size_t>(pads));
  return bytes;
}

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  // A heap block of the exact size, so that a read beyond it is found.
  std::vector<char> text(data, data + size);
  text.shrink_to_fit();
  const size_t untouched = ~size_t{0};
  size_t length = untouched;
  unsigned char* bytes = base64_decode(text.data(), size, &length);
  fuzz::require((bytes == nullptr) == (size % 4 != 0), "null exactly for a partial group");
  if (bytes == nullptr) {
    fuzz::require(length == untouched, "the length is left alone on failure");
    return 0;
  }
  const std::vector<unsigned char> wanted = decodedBits(text);
  fuzz::require(length == wanted.size(), "as many bytes as another reader finds");
  fuzz::require(length == 0 || memcmp(bytes, wanted.data(), length) == 0,
                "the bytes that another reader finds");
  free(bytes);
  return 0;
}
