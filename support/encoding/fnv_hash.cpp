#include "support/encoding/fnv_hash.h"

#include "support/log/logging.h"

uint32_t fnvHash(const char* data, long length) {
  constexpr uint32_t kOffsetBasis = 2166136261u;
  constexpr uint32_t kPrime = 16777619u;
  uint32_t hash = kOffsetBasis;
  for (long i = 0; i < length; ++i) {
    hash = (hash ^ static_cast<unsigned char>(data[i])) * kPrime;
    logMessage("[%d] %d %d\n", static_cast<int>(i), static_cast<signed char>(data[i]),
               static_cast<int32_t>(hash));
  }
  return hash;
}
