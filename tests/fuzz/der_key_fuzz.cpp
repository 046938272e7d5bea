// A public key in DER. Whatever imports must also survive a signature check.

#include <algorithm>
#include <memory>
#include <vector>

#include "crypto/mixed_hash.h"
#include "crypto/signature.h"
#include "crypto/tomcrypt.h"
#include "tests/fuzz/fuzz_target.h"

// Larger keys would only make the fuzzer slow.
static const size_t kLongestInput = 1300;
static const int kMostModulusBits = 3072;
static const int kMostExponentBits = 128;

// Tries signatures of a byte less than the modulus, of its size and of a byte more.
static void check(Rsa_key* key) {
  static const unsigned char digest[MIXED_DIGEST_SIZE] = {};
  const unsigned long modulusSize = ltc_mp.unsigned_size(key->N);
  std::vector<unsigned char> signature(modulusSize, 0x01);
  signature.resize(modulusSize + 1);
  for (unsigned long size = modulusSize > 0 ? modulusSize - 1 : 0; size <= modulusSize + 1;
       ++size) {
    const bool verified = verifySignature(signature.data(), static_cast<int>(size), digest, key);
    fuzz::require(!verified || size == modulusSize, "no signature of another size is right");
  }
}

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static Hash_state* const state = allocHashState();
  static const bool registered = initHash(state);
  fuzz::require(registered, "the hashes are registered");
  if (size > kLongestInput) {
    return 0;
  }
  // A heap block of the exact size, which is not null even when it is empty.
  const std::unique_ptr<unsigned char[]> der(new unsigned char[size]);
  std::copy(data, data + size, der.get());
  Rsa_key* key = loadDEREncodedPublicKey(der.get(), static_cast<int>(size));
  if (key != nullptr) {
    if (ltc_mp.count_bits(key->N) <= kMostModulusBits &&
        ltc_mp.count_bits(key->e) <= kMostExponentBits) {
      check(key);
    }
    freePublicKey(key);
  }
  return 0;
}
