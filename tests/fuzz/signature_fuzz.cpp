// The text of a signature record, converted and verified as an archive's is. The key is one whose
// private half is used for tests alone, and the corpus holds the one right signature.

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "crypto/mixed_hash.h"
#include "crypto/signature.h"
#include "support/encoding/hex.h"
#include "tests/fuzz/fuzz_target.h"

static const size_t kLongestInput = 1024;
static const char kMessage[] = "the bytes of an archive";
static const char kPublicKey[] =
    "30820122300d06092a864886f70d01010105000382010f003082010a0282010100a898130ef01d98f2f64fc3"
    "2308e15899da1bc9d6c976364cd41171786e8ec3e7ea4e7110e5cc20a3fa39ebd497326f7aa9eba30eebfe94"
    "5d5384b8a382547bc0f4784ece4d793f5ac60c76cd1c6bbe6c8281e8cc9dc6f134eec4c12ee42c07147b4141"
    "e822c30ba6a40d3cbc6789c22d69ffa352775a84460ee139e5634967a774b351174d23864554bf46d5ea76c6"
    "e61a94b064a973b245020d2685e4cf16b92c7099aad7ddba6f73fdbc7e708ae1a5f3830f09826aeb0b95d00c"
    "314563848e6d93d8b175e528eeca48593ea646b8e073f355bd409c8591df45ab2e0b0f342bbcf71320567780"
    "e0d2a128350894fc32410124d6df19d1466938c2446dddb6a70203010001";
static const char kSignature[] =
    "9c06ee20d3b50c0468a85e894191387a5f818946a6a406f9d0d0ad26422f2cd7414f9293e5d4772659fa7ddf"
    "7139be6ca2d71134d129a90bedefb4b18de08db3dc175e2c844f40f67b6a8b677c89cfb7705c4f431a220923"
    "b71b4dfa565ec7255a0d728dd1ba0a0b3e197558d4b54a0238d41fbdff84dacd4bebc1f8172c67b53f3221b8"
    "94d713a4fee509c126330e6d207e91f3c3d9c0550223a1492fc41e97227510e7425e1a14c371a39f747d01a6"
    "919628d08eeaeb41c527c1a1a5391bf121ebe516477dd42e3fdbc2a60b9ea9aa1e072ce460e210886ae36502"
    "1598f3e2595b101b8f6ffd7ed2225106e70b2796a858bcb1ba26830ffc3a5c2b529894c8";

// Converts hexadecimal text as the extraction does, into a block just large enough.
static std::string bytesOfHex(const std::string& hex) {
  const size_t capacity = hex.size() / 2 + 2;
  const std::unique_ptr<unsigned char[]> bytes(new unsigned char[capacity]);
  const int stored = hexToBytes(bytes.get(), static_cast<int>(capacity), hex.c_str());
  return std::string(reinterpret_cast<char*>(bytes.get()), static_cast<size_t>(stored));
}

static const unsigned char* bytesOf(const std::string& text) {
  return reinterpret_cast<const unsigned char*>(text.data());
}

static unsigned char* digestOfMessage() {
  Hash_state* state = allocHashState();
  fuzz::require(initHash(state), "the hashes are registered");
  fuzz::require(updateHash(state, reinterpret_cast<const unsigned char*>(kMessage),
                           static_cast<int>(strlen(kMessage))),
                "the message is hashed");
  unsigned char* digest = doFinal(state);
  free(state);
  return digest;
}

static Rsa_key* importKey() {
  const std::string der = bytesOfHex(kPublicKey);
  return loadDEREncodedPublicKey(bytesOf(der), static_cast<int>(der.size()));
}

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static unsigned char* const digest = digestOfMessage();
  static Rsa_key* const key = importKey();
  static const std::string right = bytesOfHex(kSignature);
  if (size > kLongestInput) {
    return 0;
  }
  const std::string signature =
      bytesOfHex(std::string(reinterpret_cast<const char*>(data), size).c_str());
  const bool verified =
      verifySignature(bytesOf(signature), static_cast<int>(signature.size()), digest, key);
  fuzz::require(verified == (signature == right),
                "verified exactly when it is the right signature");
  return 0;
}
