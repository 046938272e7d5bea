#ifndef QUORVANE_TOOLS_KEYS_SIGNING_H
#define QUORVANE_TOOLS_KEYS_SIGNING_H

#include <memory>
#include <string>

struct Rsa_key;

// The packager's RSA key and its signatures, which crypto/signature.h checks.

namespace tools {

constexpr int LEAST_KEY_BITS = 2048;
constexpr int MOST_KEY_BITS = 4096;
constexpr int DEFAULT_KEY_BITS = 3072;

// Returns why a key of that size cannot be made, or an empty text.
[[nodiscard]] std::string faultOfKeySize(int bits);

// A private RSA key with a modulus of LEAST_KEY_BITS or more.
class SigningKey {
 public:
  // Makes a new key from the system's random source. Throws InputError if `bits` is outside the
  // limits above or not a multiple of 16.
  static SigningKey generate(int bits);

  // Reads a key from a file's content, PEM or DER, PKCS #1 or PKCS #8, without a passphrase. Throws
  // InputError, naming `source`, if it contains no such key.
  static SigningKey parse(const std::string& content, const std::string& source);

  // Reads a key from the file `path`, or from standard input if `path` is "-". Throws InputError.
  static SigningKey read(const std::string& path);

  int bits() const;

  // The public key in the form of an installer's "Signature Public Key" field: the hexadecimal text
  // of its DER form, a SubjectPublicKeyInfo.
  std::string publicKeyHex() const;
  std::string publicKeyDer() const;

  // The private key in PKCS #1 form, as PEM text.
  std::string privateKeyPem() const;

  // Signs a mixed digest of MIXED_DIGEST_SIZE bytes with RSA-PSS. Returns the signature's bytes, as
  // many as the modulus has. The salt is derived from the key and the digest, so that the same key
  // and the same digest always give the same signature, and an archive the same bytes.
  std::string sign(const unsigned char* digest) const;

  // sign() as the lower-case hexadecimal text that a signature record carries.
  std::string signatureHex(const unsigned char* digest) const;

 private:
  struct Release {
    void operator()(Rsa_key* key) const;
  };
  using Key = std::unique_ptr<Rsa_key, Release>;

  explicit SigningKey(Key key);

  Key key_;
};

}  // namespace tools

#endif
