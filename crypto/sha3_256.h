#ifndef QUORVANE_CRYPTO_SHA3_256_H
#define QUORVANE_CRYPTO_SHA3_256_H

union Hash_state;
struct ltc_hash_descriptor;

// Keccak-256 as a hash of LibTomCrypt, under the name "sha3_256". Despite the name it is not the
// FIPS 202 function. The Keccak state follows LibTomCrypt's SHA-256 state in the record, so
// that the mixed hash keeps both in one record. Any thread; one thread per record.

// The descriptor that initHash() registers.
extern const ltc_hash_descriptor sha3256Descriptor;

// Starts a hash in `md`. Returns CRYPT_OK, or -1. Without `md` LibTomCrypt's argument check prints
// a line to standard error and aborts the process.
int sha3_256_init(Hash_state* md);

// Hashes `inlen` bytes. Returns CRYPT_OK, or -1 when the hash is finished.
int sha3_256_process(Hash_state* md, const unsigned char* in, unsigned long inlen);

// Writes the 32 bytes of the digest to `out`. Returns CRYPT_OK, or -1 when the hash was finished.
int sha3_256_done(Hash_state* md, unsigned char* out);

#endif
