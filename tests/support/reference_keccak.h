#ifndef QUORVANE_TESTS_SUPPORT_REFERENCE_KECCAK_H
#define QUORVANE_TESTS_SUPPORT_REFERENCE_KECCAK_H

#include <cstddef>
#include <cstdint>
#include <vector>

namespace test {

// The first `bitLength` bits of `data` in the order in which Keccak takes them: of a whole byte the
// lowest bit first; of a last, partial byte its high bits count, the lowest of them first.
std::vector<bool> keccakBits(const unsigned char* data, uint64_t bitLength);

// Keccak with a rate of 1088 bits and the original padding, written from its definition step by
// step, with computed rotation offsets and round constants. It shares nothing with the product.
std::vector<unsigned char> referenceKeccak(const std::vector<bool>& message, size_t outBytes);

// The permutation Keccak-f[1600] of 25 lanes, from the same definition.
void referenceKeccakF(uint64_t* lanes);

}  // namespace test

#endif
