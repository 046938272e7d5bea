#include "support/encoding/base64.h"

#include <cstdint>
#include <cstdlib>

#include "support/text/strings.h"

static const char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
static unsigned char* decodingTable = nullptr;

void build_decoding_table() {
  base64_cleanup();
  decodingTable = static_cast<unsigned char*>(allocZeroed(256));
  for (unsigned char i = 0; i < 64; ++i) {
    decodingTable[static_cast<unsigned char>(kAlphabet[i])] = i;
  }
}

void base64_cleanup() {
  free(decodingTable);
  decodingTable = nullptr;
}

static size_t decodedLength(const char* data, size_t length) {
  size_t decoded = length / 4 * 3;
  for (size_t back = 1; back <= 2 && length > 0; ++back) {
    if (data[length - back] == '=') {
      --decoded;
    }
  }
  return decoded;
}

static uint32_t decodeGroup(const char* group) {
  uint32_t bits = 0;
  for (int i = 0; i < 4; ++i) {
    const unsigned char c = static_cast<unsigned char>(group[i]);
    bits = bits << 6 | (c == '=' ? 0u : decodingTable[c]);
  }
  return bits;
}

unsigned char* base64_decode(const char* data, size_t length, size_t* outLength) {
  if (decodingTable == nullptr) {
    build_decoding_table();
  }
  if (length % 4 != 0) {
    return nullptr;
  }
  const size_t decoded = decodedLength(data, length);
  // At least one byte, so that an empty result is a block and not mistaken for a failure.
  unsigned char* block = static_cast<unsigned char*>(malloc(decoded > 0 ? decoded : 1));
  if (block == nullptr) {
    return nullptr;
  }
  *outLength = decoded;
  size_t written = 0;
  for (size_t read = 0; read < length; read += 4) {
    const uint32_t bits = decodeGroup(data + read);
    for (int shift = 16; shift >= 0 && written < decoded; shift -= 8) {
      block[written++] = static_cast<unsigned char>(bits >> shift);
    }
  }
  return block;
}
