#include "crypto/keccak.h"

#include <cstring>

#include "crypto/keccak_permutation.h"

static const int kFinished = -1;

static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__,
              "a lane is read as it lies in memory, its lowest byte first");

static uint64_t readLane(const unsigned char* bytes) {
  uint64_t lane;
  memcpy(&lane, bytes, sizeof lane);
  return lane;
}

static void xorByte(KeccakState* state, int index, unsigned value) {
  state->lanes[index / 8] ^= static_cast<uint64_t>(value) << (index % 8 * 8);
}

static unsigned char byteAt(const KeccakState* state, uint64_t index) {
  return static_cast<unsigned char>(state->lanes[index / 8] >> (index % 8 * 8));
}

void KeccakF(KeccakState* state, const unsigned char* in, int laneCount) {
  for (int i = 0; i < laneCount; ++i) {
    state->lanes[i] ^= readLane(in);
    in += 8;
  }
  permuteKeccak(state->lanes);
}

int Init(KeccakState* state) {
  memset(state->lanes, 0, sizeof state->lanes);
  state->bitsInQueue = 0;
  return 0;
}

static void absorbByte(KeccakState* state, unsigned char byte) {
  xorByte(state, state->bitsInQueue / 8, byte);
  state->bitsInQueue += 8;
  if (state->bitsInQueue == KECCAK_RATE_BITS) {
    KeccakF(state, nullptr, 0);
    state->bitsInQueue = 0;
  }
}

int Update(KeccakState* state, const unsigned char* data, uint64_t bitLength) {
  if (state->bitsInQueue < 0 || state->bitsInQueue % 8 != 0) {
    return 1;
  }
  uint64_t bytes = bitLength / 8;
  const int partialBits = static_cast<int>(bitLength % 8);
  for (; bytes > 0 && state->bitsInQueue != 0; --bytes) {
    absorbByte(state, *data++);
  }
  for (; bytes >= KECCAK_RATE_BYTES; bytes -= KECCAK_RATE_BYTES) {
    KeccakF(state, data, KECCAK_RATE_LANES);
    data += KECCAK_RATE_BYTES;
  }
  for (; bytes > 0; --bytes) {
    absorbByte(state, *data++);
  }
  if (partialBits > 0) {
    xorByte(state, state->bitsInQueue / 8, *data >> (8 - partialBits));
    state->bitsInQueue += partialBits;
  }
  return 0;
}

int Final(KeccakState* state, unsigned char* out, uint64_t outBytes) {
  if (state->bitsInQueue < 0) {
    return 1;
  }
  const int last = KECCAK_RATE_BYTES - 1;
  if (state->bitsInQueue != KECCAK_RATE_BITS - 1) {
    xorByte(state, state->bitsInQueue / 8, 1u << (state->bitsInQueue % 8));
  } else {
    // The first padding bit takes the block's last bit; the final one needs a block of its own.
    xorByte(state, last, 0x80);
    KeccakF(state, nullptr, 0);
  }
  xorByte(state, last, 0x80);
  KeccakF(state, nullptr, 0);
  for (uint64_t i = 0; i < outBytes; ++i) {
    if (i > 0 && i % KECCAK_RATE_BYTES == 0) {
      KeccakF(state, nullptr, 0);
    }
    out[i] = byteAt(state, i % KECCAK_RATE_BYTES);
  }
  state->bitsInQueue = kFinished;
  return 0;
}

int crypto_hash(unsigned char* out, const unsigned char* in, uint64_t inlen) {
  KeccakState state{};
  for (; inlen >= KECCAK_RATE_BYTES; inlen -= KECCAK_RATE_BYTES) {
    KeccakF(&state, in, KECCAK_RATE_LANES);
    in += KECCAK_RATE_BYTES;
  }
  unsigned char block[KECCAK_RATE_BYTES] = {};
  if (inlen > 0) {
    memcpy(block, in, inlen);
  }
  block[inlen] = 0x01;
  block[KECCAK_RATE_BYTES - 1] |= 0x80;
  KeccakF(&state, block, KECCAK_RATE_LANES);
  for (int i = 0; i < KECCAK_256_BYTES; ++i) {
    out[i] = byteAt(&state, static_cast<uint64_t>(i));
  }
  return 0;
}
