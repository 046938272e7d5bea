#include "tools/keys/signing.h"

#include <cstdlib>
#include <stdexcept>

#include "crypto/mixed_hash.h"
#include "crypto/tomcrypt.h"
#include "tools/keys/key_file.h"
#include "tools/keys/pem.h"
#include "tools/system/hex_digits.h"
#include "tools/system/input_error.h"

namespace tools {

static const long kPublicExponent = 65537;
static const unsigned long kSaltSize = 64;
static const unsigned long kSha256Size = 32;

// LibTomCrypt failures here are caused by the library or the machine, not by the input.
static void check(int error, const char* what) {
  if (error != CRYPT_OK) {
    throw std::runtime_error(std::string(what) + ": " + error_to_string(error));
  }
}

// Prepares LibTomCrypt: the big numbers, the hashes and the random generators used below.
static void prepareLibrary() {
  ltc_mp = ltm_desc;
  const std::unique_ptr<Hash_state, decltype(&free)> scratch(allocHashState(), free);
  const bool prepared = initHash(scratch.get()) && register_prng(&sprng_desc) != -1 &&
                        register_prng(&chacha20_prng_desc) != -1;
  check(prepared ? CRYPT_OK : CRYPT_ERROR, "preparing the cryptographic library");
}

static const unsigned char* bytesOf(const std::string& text) {
  return reinterpret_cast<const unsigned char*>(text.data());
}

void SigningKey::Release::operator()(Rsa_key* key) const {
  rsa_free(key);
  delete key;
}

SigningKey::SigningKey(Key key) : key_(std::move(key)) {}

std::string faultOfKeySize(int bits) {
  if (bits >= LEAST_KEY_BITS && bits <= MOST_KEY_BITS && bits % 16 == 0) {
    return "";
  }
  return "a key of " + std::to_string(bits) + " bits cannot be made; choose from " +
         std::to_string(LEAST_KEY_BITS) + " to " + std::to_string(MOST_KEY_BITS) +
         " bits, a multiple of 16";
}

SigningKey SigningKey::generate(int bits) {
  const std::string fault = faultOfKeySize(bits);
  if (!fault.empty()) {
    throw InputError(fault);
  }
  prepareLibrary();
  auto record = std::make_unique<Rsa_key>();
  check(rsa_make_key(nullptr, find_prng("sprng"), bits / 8, kPublicExponent, record.get()),
        "making a key");
  return SigningKey(Key(record.release()));
}

// Imports PKCS #1 or PKCS #8; rsa_import() also takes public keys.
static bool import(const std::string& der, Rsa_key* key) {
  return !der.empty() && (rsa_import(bytesOf(der), der.size(), key) == CRYPT_OK ||
                          rsa_import_pkcs8(bytesOf(der), der.size(), nullptr, 0, key) == CRYPT_OK);
}

SigningKey SigningKey::parse(const std::string& content, const std::string& source) {
  prepareLibrary();
  const std::string der = isPem(content) ? privateKeyFromPem(content, source) : content;
  auto record = std::make_unique<Rsa_key>();
  if (!import(der, record.get())) {
    throw InputError(source +
                     " contains no readable RSA key; expected a private key in PEM "
                     "or DER form, as 'quorvane-pack key new' writes it");
  }
  SigningKey key(Key(record.release()));
  if (key.key_->type != PK_PRIVATE) {
    throw InputError(source + " contains a public key; signing needs the private one");
  }
  if (key.bits() < LEAST_KEY_BITS) {
    throw InputError(source + " contains a key of " + std::to_string(key.bits()) +
                     " bits; at least " + std::to_string(LEAST_KEY_BITS) + " are needed");
  }
  return key;
}

SigningKey SigningKey::read(const std::string& path) {
  return parse(readKeyText(path), path == "-" ? "standard input" : path);
}

int SigningKey::bits() const {
  return ltc_mp.count_bits(key_->N);
}

static std::string exported(Rsa_key* key, int type) {
  unsigned long size = 16 * 1024;
  std::string der(size, '\0');
  check(rsa_export(reinterpret_cast<unsigned char*>(der.data()), &size, type, key),
        "writing a key");
  std::string exact = der.substr(0, size);
  zeromem(der.data(), der.size());
  return exact;
}

std::string SigningKey::publicKeyDer() const {
  return exported(key_.get(), PK_PUBLIC | PK_STD);
}

std::string SigningKey::publicKeyHex() const {
  return hexOf(publicKeyDer());
}

std::string SigningKey::privateKeyPem() const {
  return pemOf("RSA PRIVATE KEY", exported(key_.get(), PK_PRIVATE));
}

// Starts a generator whose output depends only on the private key and the digest, and cannot be
// predicted without the private key.
static void startSaltGenerator(Rsa_key* key, const unsigned char* digest, prng_state* generator) {
  std::string secret = exported(key, PK_PRIVATE);
  unsigned char seed[kSha256Size];
  unsigned long seedSize = sizeof seed;
  const int error = hmac_memory(find_hash("sha256"), bytesOf(secret), secret.size(), digest,
                                MIXED_DIGEST_SIZE, seed, &seedSize);
  zeromem(secret.data(), secret.size());
  check(error, "deriving the salt");
  check(chacha20_prng_start(generator), "starting the salt generator");
  check(chacha20_prng_add_entropy(seed, seedSize, generator), "seeding the salt generator");
  check(chacha20_prng_ready(generator), "starting the salt generator");
  zeromem(seed, sizeof seed);
}

std::string SigningKey::sign(const unsigned char* digest) const {
  prng_state generator;
  startSaltGenerator(key_.get(), digest, &generator);
  unsigned long size = static_cast<unsigned long>(bits() + 7) / 8;
  std::string signature(size, '\0');
  const int error = rsa_sign_hash_ex(
      digest, MIXED_DIGEST_SIZE, reinterpret_cast<unsigned char*>(signature.data()), &size,
      LTC_PKCS_1_PSS, &generator, find_prng("chacha20"), find_hash("mixed"), kSaltSize, key_.get());
  chacha20_prng_done(&generator);
  check(error, "signing");
  return signature;
}

std::string SigningKey::signatureHex(const unsigned char* digest) const {
  return hexOf(sign(digest));
}

}  // namespace tools
