#include "tests/macos/run/image/bytes.h"

#include "tests/macos/run/stop.h"

namespace macrun {

static uint64_t sizeOf(const Bytes& bytes) {
  return static_cast<uint64_t>(bytes.end - bytes.at);
}

Bytes part(const Bytes& bytes, uint64_t offset, uint64_t size) {
  if (offset > sizeOf(bytes) || size > sizeOf(bytes) - offset) {
    refuse("%s: bytes %#llx to %#llx lie outside", bytes.what,
           static_cast<unsigned long long>(offset), static_cast<unsigned long long>(offset + size));
  }
  return {bytes.at + offset, bytes.at + offset + size, bytes.what};
}

Bytes after(const Bytes& bytes, uint64_t offset) {
  return part(bytes, offset, offset > sizeOf(bytes) ? 0 : sizeOf(bytes) - offset);
}

const uint8_t* takeBytes(Bytes& bytes, uint64_t size) {
  if (size > sizeOf(bytes)) {
    refuse("%s: ends too early", bytes.what);
  }
  const uint8_t* first = bytes.at;
  bytes.at += size;
  return first;
}

uint64_t takeUleb(Bytes& bytes) {
  uint64_t value = 0;
  for (int shift = 0;; shift += 7) {
    const uint8_t byte = *takeBytes(bytes, 1);
    if (shift > 63) {
      refuse("%s: a number has more than 64 bits", bytes.what);
    }
    value |= static_cast<uint64_t>(byte & 0x7F) << shift;
    if ((byte & 0x80) == 0) {
      return value;
    }
  }
}

int64_t takeSleb(Bytes& bytes) {
  uint64_t value = 0;
  for (int shift = 0;;) {
    const uint8_t byte = *takeBytes(bytes, 1);
    if (shift > 63) {
      refuse("%s: a number has more than 64 bits", bytes.what);
    }
    value |= static_cast<uint64_t>(byte & 0x7F) << shift;
    shift += 7;
    if ((byte & 0x80) == 0) {
      const bool isNegative = shift < 64 && (byte & 0x40) != 0;
      return static_cast<int64_t>(isNegative ? value | (~uint64_t{0} << shift) : value);
    }
  }
}

const char* takeText(Bytes& bytes) {
  const void* end = memchr(bytes.at, 0, sizeOf(bytes));
  if (end == nullptr) {
    refuse("%s: a text has no end", bytes.what);
  }
  const char* text = reinterpret_cast<const char*>(bytes.at);
  bytes.at = static_cast<const uint8_t*>(end) + 1;
  return text;
}

}  // namespace macrun
