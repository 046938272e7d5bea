#ifndef QUORVANE_CRYPTO_HASH_FILE_H
#define QUORVANE_CRYPTO_HASH_FILE_H

#include <cstddef>
#include <cstdio>

union Hash_state;

// The bytes that hashFile() reads at a time, how many such pieces it reads ahead, and the buffer
// that takes them.
constexpr size_t HASH_PIECE_SIZE = 50000;
constexpr size_t HASH_PIECES = 4;
constexpr size_t HASH_BUFFER_SIZE = HASH_PIECE_SIZE * HASH_PIECES;

// Feeds the next `length` bytes of `file`, or those up to its end where that comes first, to the
// mixed hash in `state`, which initHash() has started. With more than one processor the SHA-256
// half runs on a thread of its own, which has ended when this returns; where none can be started,
// both halves run here. `buffer` has HASH_BUFFER_SIZE bytes, owned by the caller. `progress`,
// unless null, is called after each piece. Returns whether the hash took all bytes, as updateHash()
// does; logs nothing. Any thread, one at a time for each record.
[[nodiscard]] bool hashFile(FILE* file, long length, unsigned char* buffer, Hash_state* state,
                            void (*progress)());

#endif
