#ifndef QUORVANE_CRYPTO_MIXED_HASH_H
#define QUORVANE_CRYPTO_MIXED_HASH_H

// LibTomCrypt's hash state record, which holds both halves of the mixed hash. Files that need its
// members or its size include "crypto/tomcrypt.h"; others take a record from allocHashState().
union Hash_state;
struct ltc_hash_descriptor;

// The mixed hash that archives are signed over: the SHA-256 digest followed by the Keccak-256
// digest of the same data, made in one pass. Registration is process-wide: one thread at a time for
// initHash(), any thread for the rest, one thread per record.

constexpr int MIXED_DIGEST_SIZE = 64;

// Returns a new, uninitialised hash state record, owned by the caller and freed with free().
[[nodiscard]] Hash_state* allocHashState();

// Registers the hashes "mixed", "sha256" and "sha3_256" with LibTomCrypt (again without harm) and
// starts a mixed hash in `state`. Returns false, with a warning on standard output, when the
// registration fails; `state` is then left as it was.
[[nodiscard]] bool initHash(Hash_state* state);

// Hashes `length` more bytes. Returns whether the hash took them all; nothing is printed.
[[nodiscard]] bool updateHash(Hash_state* state, const unsigned char* data, int length);

// Finishes the hash. Returns the digest as a new block of MIXED_DIGEST_SIZE bytes, owned by the
// caller, or null on failure; nothing is printed.
[[nodiscard]] unsigned char* doFinal(Hash_state* state);

// The descriptor that initHash() registers, and its functions, which LibTomCrypt calls.
extern const ltc_hash_descriptor mixedDescriptor;

// Starts both halves in `md`. Returns CRYPT_OK. Without `md` LibTomCrypt's argument check prints a
// line to standard error and aborts the process.
int mixed_init(Hash_state* md);

// Hashes `inlen` bytes with both halves. Returns SHA-256's error if there is one, else Keccak's
// result.
int mixed_process(Hash_state* md, const unsigned char* in, unsigned long inlen);

// Writes the SHA-256 digest to out[0..31] and the Keccak-256 digest to out[32..63]. Returns
// CRYPT_OK.
int mixed_done(Hash_state* md, unsigned char* out);

#endif
