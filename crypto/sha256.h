#ifndef QUORVANE_CRYPTO_SHA256_H
#define QUORVANE_CRYPTO_SHA256_H

union Hash_state;

// SHA-256, the first half of the mixed hash: the system's where it can be trusted, since
// LibTomCrypt's takes four times as long where the processor has instructions for it.

// One way to make a SHA-256 digest in a hash state record, in the place of LibTomCrypt's own state.
// The functions return LibTomCrypt's codes, log nothing, and may be called on any thread, one at a
// time for each record.
struct Sha256 {
  int (*init)(Hash_state* md);
  int (*process)(Hash_state* md, const unsigned char* in, unsigned long inlen);
  int (*done)(Hash_state* md, unsigned char* out);  // 32 bytes
};

// The system's library. It never fails.
extern const Sha256 systemSha256;

// LibTomCrypt, which every digest has to agree with. It refuses data beyond 2^61 bytes, and a
// record that is none of its own.
extern const Sha256 libTomCryptSha256;

// Returns `way` when the digests that it makes of a few messages, whole and in pieces, are those
// that LibTomCrypt makes; else LibTomCrypt's. Any thread.
[[nodiscard]] const Sha256* checkedSha256(const Sha256* way);

// Returns the system's way, or LibTomCrypt's where the system's failed the check, which is made at
// the first call. Any thread.
[[nodiscard]] const Sha256* fastestSha256();

#endif
