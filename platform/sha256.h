#ifndef QUORVANE_PLATFORM_SHA256_H
#define QUORVANE_PLATFORM_SHA256_H

#include <cstddef>

// SHA-256 (FIPS 180-4) by a system library that uses the processor's own instructions: Common
// Crypto on macOS, elsewhere Nettle, which the toolkit loads anyway. None of the functions fails or
// logs; any thread may call them, one at a time for each state.

// Minimum size of a state in bytes; it is aligned to 8 bytes and owned by the caller.
constexpr size_t SYSTEM_SHA256_STATE_SIZE = 112;
constexpr size_t SYSTEM_SHA256_DIGEST_SIZE = 32;

// Starts a hash in `state`.
void startSystemSha256(void* state);

// Hashes `size` more bytes, any number of them.
void updateSystemSha256(void* state, const unsigned char* data, size_t size);

// Writes the digest's SYSTEM_SHA256_DIGEST_SIZE bytes. The state must be started again before it
// accepts more.
void finishSystemSha256(void* state, unsigned char* digest);

#endif
