#include "crypto/rsa_verify_hash_ex.h"

#include <cstdio>
#include <cstring>
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

// Compares a DigestInfo, SEQUENCE { SEQUENCE { OID, NULL }, OCTET STRING }, with the digest.
static int compareDigestInfo(const Verification& v, unsigned char* info, unsigned long infoLength) {
  const ltc_hash_descriptor& descriptor = hash_descriptor[v.hashIndex];
  unsigned long oid[16] = {};
  Bytes digest = allocBytes(infoLength);
  if (digest == nullptr) {
    return CRYPT_MEM;
  }
  ltc_asn1_list algorithm[2] = {};
  LTC_SET_ASN1(algorithm, 0, LTC_ASN1_OBJECT_IDENTIFIER, oid, sizeof oid / sizeof oid[0]);
  LTC_SET_ASN1(algorithm, 1, LTC_ASN1_NULL, nullptr, 0);
  ltc_asn1_list fields[2] = {};
  LTC_SET_ASN1(fields, 0, LTC_ASN1_SEQUENCE, algorithm, 2);
  LTC_SET_ASN1(fields, 1, LTC_ASN1_OCTET_STRING, digest.get(), infoLength);
  int error = der_decode_sequence(info, infoLength, fields, 2);
  unsigned long exactLength = 0;
  if (error == CRYPT_OK) {
    error = der_length_sequence(fields, 2, &exactLength);
  }
  if (error != CRYPT_OK) {
    return error;
  }
  const bool same = exactLength == infoLength && algorithm[0].size == descriptor.OIDlen &&
                    memcmp(oid, descriptor.OID, sizeof oid[0] * descriptor.OIDlen) == 0 &&
                    fields[1].size == v.hashLength &&
                    memcmp(digest.get(), v.hash, v.hashLength) == 0;
  *v.stat = same ? 1 : 0;
  return CRYPT_OK;
}

static int decodeV15(const Verification& v) {
  if (hash_descriptor[v.hashIndex].OIDlen == 0) {
    return CRYPT_INVALID_ARG;
  }
  unsigned long infoLength = v.messageLength;
  Bytes info = allocBytes(infoLength);
  if (info == nullptr) {
    return CRYPT_MEM;
  }
  int wellFormed = 0;
  const int error = pkcs_1_v1_5_decode(v.message, v.messageLength, LTC_PKCS_1_EMSA, v.modulusBits,
                                       info.get(), &infoLength, &wellFormed);
  return error != CRYPT_OK ? error : compareDigestInfo(v, info.get(), infoLength);
}

int rsa_verify_hash_ex(const unsigned char* sig, unsigned long siglen, const unsigned char* hash,
                       unsigned long hashlen, int padding, int hash_idx, unsigned long saltlen,
                       int* stat, Rsa_key* key) {
  checkArgument(hash, "hash != NULL", __LINE__);
  checkArgument(sig, "sig != NULL", __LINE__);
  checkArgument(stat, "stat != NULL", __LINE__);
  checkArgument(key, "key != NULL", __LINE__);
  *stat = 0;
  if (padding != LTC_PKCS_1_V1_5 && padding != LTC_PKCS_1_PSS) {
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
  return padding == LTC_PKCS_1_PSS ? decodePss(v) : decodeV15(v);
}
