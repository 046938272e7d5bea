// Keccak over any number of bits, fed in pieces, against the definition, and whole bytes against
// the one-shot function.

#include <cstring>
#include <vector>

#include "crypto/keccak.h"
#include "tests/fuzz/fuzz_target.h"
#include "tests/support/reference_keccak.h"

static const size_t kLongestInput = 2048;

// Absorbs `bits` bits in pieces of `pieceBytes` bytes and finishes.
static std::vector<unsigned char> hashInPieces(const unsigned char* data, uint64_t bits,
                                               size_t pieceBytes, size_t outBytes) {
  KeccakState state;
  Init(&state);
  for (uint64_t done = 0; done < bits;) {
    const uint64_t left = bits - done;
    const uint64_t piece = left < pieceBytes * 8 ? left : pieceBytes * 8;
    fuzz::require(Update(&state, data + done / 8, piece) == 0, "a piece is taken");
    done += piece;
  }
  std::vector<unsigned char> out(outBytes);
  fuzz::require(Final(&state, out.data(), outBytes) == 0, "the hash is finished");
  fuzz::require(Update(&state, data, bits) == 1, "nothing is taken after the end");
  fuzz::require(Final(&state, out.data(), outBytes) == 1, "there is one end");
  return out;
}

// The first three bytes are the size of a piece, the bits of the last byte that do not count and
// the number of bytes to squeeze; the rest is the message.
int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 3 || size > kLongestInput) {
    return 0;
  }
  const std::vector<unsigned char> message(data + 3, data + size);
  const uint64_t unused = message.empty() ? 0 : data[1] % 8u;
  const uint64_t bits = message.size() * 8 - unused;
  const size_t outBytes = data[2] * 2u;
  const auto out = hashInPieces(message.data(), bits, data[0] + size_t{1}, outBytes);
  const auto wanted = test::referenceKeccak(test::keccakBits(message.data(), bits), outBytes);
  fuzz::require(out == wanted, "the digest of the definition");
  std::vector<unsigned char> digest(KECCAK_256_BYTES);
  crypto_hash(digest.data(), message.data(), message.size());
  fuzz::require(digest == hashInPieces(message.data(), message.size() * 8, data[0] + size_t{1},
                                       KECCAK_256_BYTES),
                "the digest of the one-shot function");
  return 0;
}
