// Hexadecimal text: what is read never leaves its buffer, and what is written is read back.

#include <cstring>
#include <string>
#include <vector>

#include "support/encoding/hex.h"
#include "tests/fuzz/fuzz_target.h"

// Reads `text` into a heap block of exactly `capacity` bytes, so that a write beyond it is found.
static std::vector<unsigned char> readHex(const char* text, int capacity) {
  std::vector<unsigned char> bytes(static_cast<size_t>(capacity));
  bytes.shrink_to_fit();
  const int stored = hexToBytes(bytes.data(), capacity, text);
  fuzz::require(stored >= 0 && stored <= capacity, "more bytes stored than there is room for");
  bytes.resize(static_cast<size_t>(stored));
  return bytes;
}

// The first byte is the capacity, the rest the text.
static void readWithCapacity(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data + 1), size - 1);
  readHex(text.c_str(), data[0]);
}

static void writeAndReadBack(const uint8_t* data, size_t size) {
  std::string hex(2 * size + 1, '\0');
  const int length = bytesToHex(hex.data(), data, static_cast<int>(size));
  fuzz::require(length == static_cast<int>(2 * size), "two digits for each byte");
  const std::vector<unsigned char> bytes = readHex(hex.c_str(), static_cast<int>(size) + 1);
  fuzz::require(bytes.size() == size, "as many bytes read as were written");
  fuzz::require(size == 0 || memcmp(bytes.data(), data, size) == 0, "the same bytes");
}

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size > 0) {
    readWithCapacity(data, size);
  }
  writeAndReadBack(data, size);
  return 0;
}
