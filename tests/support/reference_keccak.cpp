#include "tests/support/reference_keccak.h"

#include <cstring>

namespace test {

static const int kSide = 5;
static const int kLanes = kSide * kSide;
static const int kRounds = 24;
static const size_t kRateBits = 1088;

static int at(int x, int y) {
  return x % kSide + kSide * (y % kSide);
}

static uint64_t rotated(uint64_t lane, int bits) {
  return bits % 64 == 0 ? lane : lane << bits % 64 | lane >> (64 - bits % 64);
}

static void theta(uint64_t* a) {
  uint64_t parity[kSide] = {};
  for (int i = 0; i < kLanes; ++i) {
    parity[i % kSide] ^= a[i];
  }
  for (int i = 0; i < kLanes; ++i) {
    const int x = i % kSide;
    a[i] ^= parity[(x + 4) % kSide] ^ rotated(parity[(x + 1) % kSide], 1);
  }
}

// The offset of lane (x, y) is the triangular number of the step at which the walk
// (x, y) -> (y, 2x + 3y) from (1, 0) comes to it.
static void rho(uint64_t* a) {
  int x = 1;
  int y = 0;
  for (int step = 0; step < kLanes - 1; ++step) {
    a[at(x, y)] = rotated(a[at(x, y)], (step + 1) * (step + 2) / 2);
    const int nextY = (2 * x + 3 * y) % kSide;
    x = y;
    y = nextY;
  }
}

static void pi(uint64_t* a) {
  uint64_t moved[kLanes];
  for (int x = 0; x < kSide; ++x) {
    for (int y = 0; y < kSide; ++y) {
      moved[at(y, 2 * x + 3 * y)] = a[at(x, y)];
    }
  }
  memcpy(a, moved, sizeof moved);
}

static void chi(uint64_t* a) {
  uint64_t out[kLanes];
  for (int x = 0; x < kSide; ++x) {
    for (int y = 0; y < kSide; ++y) {
      out[at(x, y)] = a[at(x, y)] ^ (~a[at(x + 1, y)] & a[at(x + 2, y)]);
    }
  }
  memcpy(a, out, sizeof out);
}

// One output bit of the linear feedback shift register x^8 + x^6 + x^5 + x^4 + 1 after `t` steps.
static bool registerBit(int t) {
  unsigned value = 1;
  for (int i = 0; i < t % 255; ++i) {
    value <<= 1;
    value ^= (value & 0x100) != 0 ? 0x171u : 0u;
  }
  return (value & 1) != 0;
}

static uint64_t roundConstant(int round) {
  uint64_t constant = 0;
  for (int j = 0; j <= 6; ++j) {
    constant |= static_cast<uint64_t>(registerBit(j + 7 * round)) << ((1 << j) - 1);
  }
  return constant;
}

void referenceKeccakF(uint64_t* lanes) {
  for (int round = 0; round < kRounds; ++round) {
    theta(lanes);
    rho(lanes);
    pi(lanes);
    chi(lanes);
    lanes[0] ^= roundConstant(round);
  }
}

std::vector<bool> keccakBits(const unsigned char* data, uint64_t bitLength) {
  std::vector<bool> bits;
  for (uint64_t i = 0; i < bitLength / 8; ++i) {
    for (int bit = 0; bit < 8; ++bit) {
      bits.push_back((data[i] >> bit & 1) != 0);
    }
  }
  const int rest = static_cast<int>(bitLength % 8);
  for (int bit = 8 - rest; bit < 8; ++bit) {
    bits.push_back((data[bitLength / 8] >> bit & 1) != 0);
  }
  return bits;
}

std::vector<unsigned char> referenceKeccak(const std::vector<bool>& message, size_t outBytes) {
  std::vector<bool> padded = message;
  padded.push_back(true);
  while (padded.size() % kRateBits != kRateBits - 1) {
    padded.push_back(false);
  }
  padded.push_back(true);
  uint64_t lanes[kLanes] = {};
  for (size_t i = 0; i < padded.size(); ++i) {
    const size_t bit = i % kRateBits;
    lanes[bit / 64] ^= static_cast<uint64_t>(padded[i]) << bit % 64;
    if (bit == kRateBits - 1) {
      referenceKeccakF(lanes);
    }
  }
  std::vector<unsigned char> out;
  while (out.size() < outBytes) {
    const size_t byte = out.size() % (kRateBits / 8);
    if (!out.empty() && byte == 0) {
      referenceKeccakF(lanes);
    }
    out.push_back(static_cast<unsigned char>(lanes[byte / 8] >> byte % 8 * 8));
  }
  return out;
}

}  // namespace test
