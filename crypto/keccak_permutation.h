#ifndef QUORVANE_CRYPTO_KECCAK_PERMUTATION_H
#define QUORVANE_CRYPTO_KECCAK_PERMUTATION_H

#include <cstdint>

// The permutation Keccak-f[1600] on 25 lanes, in the order of KeccakState. Any thread.

// Applies the permutation by the fastest way that this processor has.
void permuteKeccak(uint64_t* lanes);

// Applies the permutation in plain C++, which every processor runs.
void permuteKeccakPlain(uint64_t* lanes);

#endif
