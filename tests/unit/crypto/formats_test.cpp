// The worked examples of docs/formats.md.

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "crypto/mixed_hash.h"
#include "crypto/signature.h"
#include "support/owned.h"
#include "tests/support/format_examples.h"
#include "tests/support/test_keys.h"
#include "tests/unit/crypto/messages.h"
#include "tools/keys/signing.h"

static std::string exampleDigest() {
  const std::string message = "the bytes of an archive";
  const Block<Hash_state> state(allocHashState());
  EXPECT_TRUE(initHash(state.get()));
  EXPECT_TRUE(updateHash(state.get(), bytesOf(message), static_cast<int>(message.size())));
  const Block<unsigned char> digest(doFinal(state.get()));
  return std::string(reinterpret_cast<char*>(digest.get()), MIXED_DIGEST_SIZE);
}

TEST(FormatExample, OfTheMixedDigestIsWhatTheProductComputes) {
  EXPECT_EQ(test::formatBlock("hex", "mixed-digest"), test::hexDump(exampleDigest()));
}

TEST(FormatExample, OfThePublicKeyIsWhatTheToolWrites) {
  const auto signer = tools::SigningKey::read(test::keyFile("first"));
  EXPECT_EQ(test::formatBlock("hex", "public-key"), test::hexDump(signer.publicKeyDer()));
}

TEST(FormatExample, OfTheSignatureIsWhatTheToolWritesAndTheProductVerifies) {
  const auto signer = tools::SigningKey::read(test::keyFile("first"));
  const std::string signature = signer.sign(bytesOf(exampleDigest()));
  EXPECT_EQ(test::formatBlock("hex", "signature"), test::hexDump(signature));
  const std::string der = signer.publicKeyDer();
  const std::unique_ptr<Rsa_key, decltype(&freePublicKey)> key(
      loadDEREncodedPublicKey(bytesOf(der), static_cast<int>(der.size())), freePublicKey);
  EXPECT_TRUE(verifySignature(bytesOf(signature), static_cast<int>(signature.size()),
                              bytesOf(exampleDigest()), key.get()));
}
