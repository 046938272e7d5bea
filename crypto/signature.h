#ifndef QUORVANE_CRYPTO_SIGNATURE_H
#define QUORVANE_CRYPTO_SIGNATURE_H

// RSA-PSS signatures over the mixed digest. What is printed here goes straight to standard output,
// not to the log. One thread at a time.

// LibTomCrypt's RSA key record.
struct Rsa_key;

// Imports the RSA public key in the `length` bytes of DER at `der`. Returns the key as a new
// record, owned by the caller, who keeps it until the process ends or gives it to freePublicKey();
// or null, with a line on standard output, when it cannot be imported. Installs LibTomCrypt's
// big-number back end, without which no other RSA function works.
[[nodiscard]] Rsa_key* loadDEREncodedPublicKey(const unsigned char* der, int length);

// Frees a key; null is allowed.
void freePublicKey(Rsa_key* key);

// Returns whether the `sigLength` bytes at `sig` are the signature of `digest`, which is always
// taken as MIXED_DIGEST_SIZE bytes, under `key`. A signature that cannot be checked (for instance
// one that is not as long as the key's modulus) is reported on standard output; one that is well
// formed and wrong is not. Needs an earlier initHash(). Without a key, LibTomCrypt's argument check
// prints a line to standard error and aborts the process.
[[nodiscard]] bool verifySignature(const unsigned char* sig, int sigLength,
                                   const unsigned char* digest, Rsa_key* key);

#endif
