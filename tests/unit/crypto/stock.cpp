#include "tests/unit/crypto/stock.h"

#include <tomcrypt.h>

#include "tests/unit/crypto/messages.h"

std::string stockSha3256(const std::string& message) {
  hash_state state;
  unsigned char digest[32];
  sha3_256_init(&state);
  sha3_process(&state, bytesOf(message), message.size());
  sha3_done(&state, digest);
  return std::string(reinterpret_cast<char*>(digest), sizeof digest);
}

std::string stockSha3256Descriptor(const std::string& message) {
  hash_state state;
  unsigned char digest[32];
  sha3_256_desc.init(&state);
  sha3_256_desc.process(&state, bytesOf(message), message.size());
  sha3_256_desc.done(&state, digest);
  return std::string(reinterpret_cast<char*>(digest), sizeof digest);
}

int stockVerify(const std::string& signature, const std::string& digest, int padding, int hashIndex,
                unsigned long saltLength, int* status, Rsa_key* key) {
  return rsa_verify_hash_ex(bytesOf(signature), signature.size(), bytesOf(digest), digest.size(),
                            padding, hashIndex, saltLength, status, key);
}
