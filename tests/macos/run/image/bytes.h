#ifndef QUORVANE_TESTS_MACOS_RUN_IMAGE_BYTES_H
#define QUORVANE_TESTS_MACOS_RUN_IMAGE_BYTES_H

#include <cstdint>
#include <cstring>
#include <type_traits>

namespace macrun {

// A range of a file or of the loaded image that is read from front to end. The take functions
// advance it and refuse the executable where it ends too early; `what` names it in that message.
struct Bytes {
  const uint8_t* at;
  const uint8_t* end;
  const char* what;
};

// Returns the `size` bytes that start `offset` bytes after the range's first one.
Bytes part(const Bytes& bytes, uint64_t offset, uint64_t size);

// Returns what follows the range's first `offset` bytes.
Bytes after(const Bytes& bytes, uint64_t offset);

// Advances the range by `size` bytes and returns the place of the first of them.
const uint8_t* takeBytes(Bytes& bytes, uint64_t size);

uint64_t takeUleb(Bytes& bytes);
int64_t takeSleb(Bytes& bytes);

// A text and its terminating zero byte.
const char* takeText(Bytes& bytes);

// A record or number as it lies there, in this processor's byte order.
template <class T>
T take(Bytes& bytes) {
  static_assert(std::is_trivially_copyable_v<T>);
  T value;
  memcpy(&value, takeBytes(bytes, sizeof value), sizeof value);
  return value;
}

template <class T>
T read(const Bytes& bytes, uint64_t offset) {
  Bytes there = part(bytes, offset, sizeof(T));
  return take<T>(there);
}

}  // namespace macrun

#endif
