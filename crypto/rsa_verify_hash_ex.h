#ifndef QUORVANE_CRYPTO_RSA_VERIFY_HASH_EX_H
#define QUORVANE_CRYPTO_RSA_VERIFY_HASH_EX_H

struct Rsa_key;

// Verifies an RSA-PSS signature over a digest, as LibTomCrypt's function of this name does, and
// says on standard output how far it came: "1) RSA Decode failed" when the public-key operation
// fails, "2) RSA Decode failed" when its result is not as long as the signature, and "Doing PSS
// decode" before the PSS decoding.
//
// Any `padding` but LTC_PKCS_1_PSS is CRYPT_PK_INVALID_PADDING, since no archive is signed with
// another. `hash_idx` is the registered hash of the digest and of the mask; `saltlen` counts bytes.
// *stat becomes 1 when the signature is right, else 0. Returns CRYPT_OK when the signature could be
// checked, else LibTomCrypt's error. A null pointer is caught by LibTomCrypt's argument check,
// which prints a line to standard error and aborts the process. Any thread.
[[nodiscard]] int rsa_verify_hash_ex(const unsigned char* sig, unsigned long siglen,
                                     const unsigned char* hash, unsigned long hashlen, int padding,
                                     int hash_idx, unsigned long saltlen, int* stat, Rsa_key* key);

#endif
