#ifndef QUORVANE_TESTS_UNIT_ARCHIVE_SIGNED_ARCHIVE_H
#define QUORVANE_TESTS_UNIT_ARCHIVE_SIGNED_ARCHIVE_H

#include <string>

#include "crypto/signature.h"

namespace test {

// The signature of the test key `key` over `bytes`, as hexadecimal text.
std::string signatureOver(const std::string& bytes, const std::string& key = "first");

// `entries` with the signature record that the writer makes for them.
std::string signedArchive(const std::string& entries, const std::string& key = "first");

// The public half of a test key, which stays until the process ends.
Rsa_key* publicKey(const std::string& key = "first");

}  // namespace test

#endif
