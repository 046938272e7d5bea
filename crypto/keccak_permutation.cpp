#include "crypto/keccak_permutation.h"

#if defined(__x86_64__)
#include <cpuid.h>
#endif

static const int kRounds = 24;

static const uint64_t kRoundConstants[kRounds] = {
    0x0000000000000001, 0x0000000000008082, 0x800000000000808a, 0x8000000080008000,
    0x000000000000808b, 0x0000000080000001, 0x8000000080008081, 0x8000000000008009,
    0x000000000000008a, 0x0000000000000088, 0x0000000080008009, 0x000000008000000a,
    0x000000008000808b, 0x800000000000008b, 0x8000000000008089, 0x8000000000008003,
    0x8000000000008002, 0x8000000000000080, 0x000000000000800a, 0x800000008000000a,
    0x8000000080008081, 0x8000000000008080, 0x0000000080000001, 0x8000000080008008,
};

#define ALWAYS_INLINE __attribute__((always_inline)) static inline

ALWAYS_INLINE uint64_t rotateLeft(uint64_t lane, int bits) {
  return lane << bits | lane >> (64 - bits);
}

ALWAYS_INLINE uint64_t columnParity(const uint64_t* a, int x) {
  return a[x] ^ a[x + 5] ^ a[x + 10] ^ a[x + 15] ^ a[x + 20];
}

ALWAYS_INLINE void chiRow(uint64_t* row, uint64_t b0, uint64_t b1, uint64_t b2, uint64_t b3,
                          uint64_t b4) {
  row[0] = b0 ^ (~b1 & b2);
  row[1] = b1 ^ (~b2 & b3);
  row[2] = b2 ^ (~b3 & b4);
  row[3] = b3 ^ (~b4 & b0);
  row[4] = b4 ^ (~b0 & b1);
}

// One round from `a` into `out`, which do not overlap. Written out lane by lane so that compilers
// keep the lanes in registers.
ALWAYS_INLINE void roundInto(uint64_t* out, const uint64_t* a, uint64_t roundConstant) {
  const uint64_t c0 = columnParity(a, 0);
  const uint64_t c1 = columnParity(a, 1);
  const uint64_t c2 = columnParity(a, 2);
  const uint64_t c3 = columnParity(a, 3);
  const uint64_t c4 = columnParity(a, 4);
  const uint64_t d0 = c4 ^ rotateLeft(c1, 1);
  const uint64_t d1 = c0 ^ rotateLeft(c2, 1);
  const uint64_t d2 = c1 ^ rotateLeft(c3, 1);
  const uint64_t d3 = c2 ^ rotateLeft(c4, 1);
  const uint64_t d4 = c3 ^ rotateLeft(c0, 1);
  chiRow(out, a[0] ^ d0, rotateLeft(a[6] ^ d1, 44), rotateLeft(a[12] ^ d2, 43),
         rotateLeft(a[18] ^ d3, 21), rotateLeft(a[24] ^ d4, 14));
  out[0] ^= roundConstant;
  chiRow(out + 5, rotateLeft(a[3] ^ d3, 28), rotateLeft(a[9] ^ d4, 20), rotateLeft(a[10] ^ d0, 3),
         rotateLeft(a[16] ^ d1, 45), rotateLeft(a[22] ^ d2, 61));
  chiRow(out + 10, rotateLeft(a[1] ^ d1, 1), rotateLeft(a[7] ^ d2, 6), rotateLeft(a[13] ^ d3, 25),
         rotateLeft(a[19] ^ d4, 8), rotateLeft(a[20] ^ d0, 18));
  chiRow(out + 15, rotateLeft(a[4] ^ d4, 27), rotateLeft(a[5] ^ d0, 36), rotateLeft(a[11] ^ d1, 10),
         rotateLeft(a[17] ^ d2, 15), rotateLeft(a[23] ^ d3, 56));
  chiRow(out + 20, rotateLeft(a[2] ^ d2, 62), rotateLeft(a[8] ^ d3, 55), rotateLeft(a[14] ^ d4, 39),
         rotateLeft(a[15] ^ d0, 41), rotateLeft(a[21] ^ d1, 2));
}

ALWAYS_INLINE void permute(uint64_t* lanes) {
  uint64_t between[25];
  for (int round = 0; round < kRounds; round += 2) {
    roundInto(between, lanes, kRoundConstants[round]);
    roundInto(lanes, between, kRoundConstants[round + 1]);
  }
}

void permuteKeccakPlain(uint64_t* lanes) {
  permute(lanes);
}

#if defined(__x86_64__)

// The same code with the and-not and three-operand rotate instructions of later processors.
__attribute__((target("bmi,bmi2"))) static void permuteWithBmi(uint64_t* lanes) {
  permute(lanes);
}

// Asks the processor itself: the compiler's own query needs a runtime library that not every
// toolchain brings. These instructions need no support from the system.
static bool processorHasBmi() {
  unsigned int eax = 0;
  unsigned int ebx = 0;
  unsigned int ecx = 0;
  unsigned int edx = 0;
  const unsigned int bmi = 1u << 3;
  const unsigned int bmi2 = 1u << 8;
  return __get_cpuid_count(7, 0, &eax, &ebx, &ecx, &edx) != 0 && (ebx & bmi) != 0 &&
         (ebx & bmi2) != 0;
}

void permuteKeccak(uint64_t* lanes) {
  static const bool hasBmi = processorHasBmi();
  if (hasBmi) {
    permuteWithBmi(lanes);
  } else {
    permuteKeccakPlain(lanes);
  }
}

#else

void permuteKeccak(uint64_t* lanes) {
  permuteKeccakPlain(lanes);
}

#endif
