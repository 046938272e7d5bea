#include "tests/unit/archive/signed_archive.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>

#include "crypto/mixed_hash.h"
#include "support/owned.h"
#include "tests/support/test_keys.h"
#include "tools/formats/archive_records.h"
#include "tools/keys/signing.h"

namespace test {

static const unsigned char* bytesOf(const std::string& text) {
  return reinterpret_cast<const unsigned char*>(text.data());
}

std::string signatureOver(const std::string& bytes, const std::string& key) {
  const Block<Hash_state> state(allocHashState());
  EXPECT_TRUE(initHash(state.get()));
  EXPECT_TRUE(updateHash(state.get(), bytesOf(bytes), static_cast<int>(bytes.size())));
  const Block<unsigned char> digest(doFinal(state.get()));
  return tools::SigningKey::read(keyFile(key)).signatureHex(digest.get());
}

std::string signedArchive(const std::string& entries, const std::string& key) {
  return entries +
         tools::signatureRecord(static_cast<long>(entries.size()), signatureOver(entries, key));
}

Rsa_key* publicKey(const std::string& key) {
  static std::map<std::string, std::unique_ptr<Rsa_key, decltype(&freePublicKey)>> keys;
  const auto known = keys.find(key);
  if (known != keys.end()) {
    return known->second.get();
  }
  const std::string der = tools::SigningKey::read(keyFile(key)).publicKeyDer();
  Rsa_key* loaded = loadDEREncodedPublicKey(bytesOf(der), static_cast<int>(der.size()));
  keys.emplace(key, decltype(keys)::mapped_type(loaded, freePublicKey));
  return loaded;
}

}  // namespace test
