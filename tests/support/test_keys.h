#ifndef QUORVANE_TESTS_SUPPORT_TEST_KEYS_H
#define QUORVANE_TESTS_SUPPORT_TEST_KEYS_H

#include <string>

// The keys for tests alone, in tests/data/keys. Reading one costs far less than making one.

namespace test {

// The path of a private key: "first" and "second" have 2048 bits, "modulus_1032", "modulus_1040"
// and "modulus_1041" as many as their names say.
inline std::string keyFile(const std::string& name) {
  return std::string(QUORVANE_SOURCE "/tests/data/keys/") + name + ".pem";
}

}  // namespace test

#endif
