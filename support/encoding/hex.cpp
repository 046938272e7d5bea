#include "support/encoding/hex.h"

#include <cstdio>

int bytesToHex(char* dst, const unsigned char* bytes, int count) {
  for (int i = 0; i < count; ++i) {
    snprintf(dst, 3, "%02x", bytes[i]);
    dst += 2;
  }
  return count * 2;
}

int hexToBytes(unsigned char* dst, int capacity, const char* hex) {
  int count = 0;
  int stored = 0;
  while (hex[0] != 0) {
    const char pair[3] = {hex[0], hex[1], 0};
    unsigned int value = 0;
    if (sscanf(pair, "%2x", &value) != 1) {
      break;
    }
    if (stored < capacity) {
      dst[stored++] = static_cast<unsigned char>(value);
    }
    ++count;
    hex += hex[1] == 0 ? 1 : 2;
  }
  if (stored < capacity) {
    dst[stored] = 0;
  }
  if (count >= capacity) {
    printf("[Utils] ERROR - HexToBytes is writing too far! %d %d\n", count, capacity);
  }
  return stored;
}
