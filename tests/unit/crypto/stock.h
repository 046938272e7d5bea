#ifndef QUORVANE_TESTS_UNIT_CRYPTO_STOCK_H
#define QUORVANE_TESTS_UNIT_CRYPTO_STOCK_H

#include <string>

struct Rsa_key;

// LibTomCrypt's own functions of names that the program gives to functions of its own.

// The FIPS 202 digest of `message`, 32 bytes.
std::string stockSha3256(const std::string& message);

// The digest of the library's own "sha3_256" descriptor.
std::string stockSha3256Descriptor(const std::string& message);

int stockVerify(const std::string& signature, const std::string& digest, int padding, int hashIndex,
                unsigned long saltLength, int* status, Rsa_key* key);

#endif
