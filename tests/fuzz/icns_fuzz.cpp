// An icon file and the pictures in it: what is read is whole, and what is damaged gives nothing.

#include "tools/images/icns.h"

#include <string>

#include "tests/fuzz/fuzz_target.h"

static void readIcon(const std::string& bytes) {
  const std::string fault = tools::faultOfIcns(bytes);
  const auto picture = tools::largestIn(bytes);
  fuzz::require(fault.empty() || !picture, "no picture of a file with a fault");
  if (!picture) {
    return;
  }
  const size_t pixels = static_cast<size_t>(picture->width) * picture->height;
  fuzz::require(picture->width > 0 && picture->height > 0, "a picture has a size");
  fuzz::require(picture->width <= tools::LONGEST_SIDE && picture->height <= tools::LONGEST_SIDE,
                "sides are bounded");
  fuzz::require(picture->pixels.size() == pixels * 4, "four bytes for each pixel");
}

// The same pixels come back from what is written of them.
static void writeAndReadBack(const uint8_t* data, size_t size) {
  const int height = static_cast<int>(size / 4);
  const std::string pixels(reinterpret_cast<const char*>(data), static_cast<size_t>(height) * 4);
  const auto read = tools::decodePng(tools::encodePng({1, height, pixels}));
  fuzz::require(read && read->pixels == pixels, "the same picture");
}

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  constexpr size_t kLongest = 8192;
  if (size > kLongest) {
    return 0;
  }
  readIcon(std::string(reinterpret_cast<const char*>(data), size));
  if (size >= 4) {
    writeAndReadBack(data, size);
  }
  return 0;
}
