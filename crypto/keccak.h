#ifndef QUORVANE_CRYPTO_KECCAK_H
#define QUORVANE_CRYPTO_KECCAK_H

#include <cstdint>

// Keccak with 256 bits of output, a rate of 1088 bits and the padding of the original submission: a
// single 1 bit directly after the message, without the domain bits that FIPS 202 adds. Every
// archive signature depends on that padding. Nothing here logs. Any thread; one thread per state.

constexpr int KECCAK_LANES = 25;
constexpr int KECCAK_RATE_LANES = 17;
constexpr int KECCAK_RATE_BYTES = 136;
constexpr int KECCAK_RATE_BITS = 1088;
constexpr int KECCAK_256_BYTES = 32;

struct KeccakState {
  uint64_t lanes[KECCAK_LANES];  // lane i holds state bytes 8i to 8i + 7, lowest first
  int32_t bitsInQueue;           // bits of the current block not yet permuted; -1 once finished
};

// Empties `state`. Returns 0.
int Init(KeccakState* state);

// Absorbs the first `bitLength` bits of `data`. Of a last, partial byte the high bits count; after
// it the message can only be finished. Returns 0, or 1 with the state untouched when the state is
// finished or an earlier call ended inside a byte.
int Update(KeccakState* state, const unsigned char* data, uint64_t bitLength);

// Pads, permutes, writes `outBytes` bytes (any number) to `out` and marks the state as finished.
// Returns 0, or 1 with nothing written when it was finished already.
int Final(KeccakState* state, unsigned char* out, uint64_t outBytes);

// XORs the `laneCount` lanes at `in` (8 bytes each, lowest first) into the first lanes and applies
// the permutation Keccak-f[1600]. With a `laneCount` of 0 `in` is not looked at.
void KeccakF(KeccakState* state, const unsigned char* in, int laneCount);

// Writes the Keccak-256 digest of the `inlen` bytes at `in` to the 32 bytes at `out`. Returns 0. A
// second path to the same hash that shares only the permutation with the functions above.
int crypto_hash(unsigned char* out, const unsigned char* in, uint64_t inlen);

#endif
