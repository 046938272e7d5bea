#ifndef QUORVANE_SUPPORT_ENCODING_FNV_HASH_H
#define QUORVANE_SUPPORT_ENCODING_FNV_HASH_H

#include <cstdint>

// Returns the 32-bit FNV-1a hash of `length` bytes; the offset basis when `length` is below 1.
// Logs a trace line for every byte. Any thread.
uint32_t fnvHash(const char* data, long length);

#endif
