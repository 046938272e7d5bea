#include "crypto/rsa_verify_hash_ex.h"

#include <cstdio>
#include <memory>
#include <new>

#include "crypto/tomcrypt.h"

// The facts of one verification that its steps share.
namespace {
struct Verification {
  const unsigned char* hash;
  unsigned long hashLength;
  int hashIndex;
  unsigned long saltLength;
  unsigned long modulusBits;
  unsigned char* message;  // what the public-key operation made of the signature
  unsigned long messageLength;
  int* stat;
};
}  // namespace

static void checkArgument(const void* pointer, const char* condition, int line) {
  if (pointer == nullptr) {
    crypt_argchk(condition, "crypto/rsa_verify_hash_ex.cpp", line);
  }
}

using Bytes = std::unique_ptr<unsigned char[]>;

static Bytes allocBytes(unsigned long size) {
  return Bytes(new (std::nothrow) unsigned char[size]);
}

// Applies the public-key operation to the signature. The result has the signature's length.
static int applyPublicKey(const unsigned char* sig, unsigned long siglen, unsigned char* message,
                          Rsa_key* key) {
  unsigned long length = siglen;
  const int error = ltc_mp.rsa_me(sig, siglen, message, &length, PK_PUBLIC, key);
  if (error != CRYPT_OK) {
    printf("1) RSA Decode failed\n");
    return error;
  }
  if (length != siglen) {
    printf("2) RSA Decode failed\n");
    return CRYPT_INVALID_PACKET;
  }
  return CRYPT_OK;
}

static int decodePss(const Verification& v) {
  printf("Doing PSS decode\n");
  // With a modulus of 8n + 1 bits the encoded message is a byte shorter than the modulus.
  const unsigned long skipped = v.modulusBits % 8 == 1 ? 1 : 0;
  return pkcs_1_pss_decode(v.hash, v.hashLength, v.message + skipped, v.messageLength - skipped,
                           v.saltLength, v.hashIndex, v.modulusBits, v.stat);
}

int rsa_verify_hash_ex(const unsigned char* sig, unsigned long siglen, const unsigned char* hash,
                       unsigned long hashlen, int padding, int hash_idx, unsigned long saltlen,
                       int* stat, Rsa_key* key) {
  checkArgument(hash, "hash != NULL", __LINE__);
  checkArgument(sig, "sig != NULL", __LINE__);
  checkArgument(stat, "stat != NULL", __LINE__);
  checkArgument(key, "key != NULL", __LINE__);
  *stat = 0;
  if (padding != LTC_PKCS_1_PSS) {
    return CRYPT_PK_INVALID_PADDING;
  }
  const int hashError = hash_is_valid(hash_idx);
  if (hashError != CRYPT_OK) {
    return hashError;
  }
  if (ltc_mp.unsigned_size(key->N) != siglen) {
    return CRYPT_INVALID_PACKET;
  }
  Bytes message = allocBytes(siglen);
  if (message == nullptr) {
    return CRYPT_MEM;
  }
  const int error = applyPublicKey(sig, siglen, message.get(), key);
  if (error != CRYPT_OK) {
    return error;
  }
  const auto modulusBits = static_cast<unsigned long>(ltc_mp.count_bits(key->N));
  const Verification v = {hash,        hashlen,       hash_idx, saltlen,
                          modulusBits, message.get(), siglen,   stat};
  return decodePss(v);
}
