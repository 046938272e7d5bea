// Base64 text: the result has the announced size, and only the length decides whether there is one.

#include <cstdlib>
#include <vector>

#include "support/base64.h"
#include "tests/fuzz/fuzz_target.h"

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
  fuzz::require(length <= size / 4 * 3 && length + 2 >= size / 4 * 3, "three bytes for each group");
  unsigned sum = 0;
  for (size_t i = 0; i < length; ++i) {
    sum += bytes[i];
  }
  fuzz::require(sum <= 255u * length, "every byte of the result can be read");
  free(bytes);
  return 0;
}
